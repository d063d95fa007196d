#include "wording.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "console.h"

namespace host {

std::wstring NameOf(const vh::engine::Removal& removal)
{
    using vh::engine::RemovalOutcome;
    static constexpr std::pair<RemovalOutcome, const wchar_t*> words[] = {
        {RemovalOutcome::removed, L"removed"},
        {RemovalOutcome::restored, L"restored"},
        {RemovalOutcome::absent, L"gone already"},
        {RemovalOutcome::kept_changed, L"kept, changed since"},
        {RemovalOutcome::kept_not_empty, L"kept, not empty"},
        {RemovalOutcome::kept_permanent, L"kept, permanent"},
        {RemovalOutcome::kept_found, L"kept, was there before"},
        {RemovalOutcome::kept_shared, L"kept, another product has it"},
        {RemovalOutcome::unreadable, L"unreadable in the log"},
        {RemovalOutcome::failed, L"FAILED"},
    };
    for (const auto& [outcome, word] : words)
        if (outcome == removal.outcome)
            return word;
    return {};
}

std::wstring LineOf(const vh::engine::Removal& removal)
{
    return NameOf(removal) + L": " + removal.kind + L" " + removal.what +
           (removal.reason.empty() ? L"" : L": " + removal.reason);
}

std::wstring LineOf(const vh::engine::Decision& decision)
{
    std::wstring line =
        WordOf(decision.act) + std::wstring(L" ") + decision.kind + L" " + decision.what + L": " + ReasonOf(decision);
    return decision.feature.empty() ? line : line + L" (" + decision.feature + L")";
}

std::wstring Counted(std::size_t count, const std::wstring& thing)
{
    return std::to_wstring(count) + L" " + thing + (count == 1 ? L"" : L"s");
}

std::wstring Joined(const std::vector<std::wstring>& texts)
{
    std::wstring line;
    for (const std::wstring& text : texts)
        line += (line.empty() ? L"" : L", ") + text;
    return line;
}

std::wstring KindWords(const vh::engine::Engine& engine)
{
    using vh::engine::RunKind;
    switch (engine.Kind()) {
    case RunKind::install:
        return {};
    case RunKind::repair:
        return L", repair";
    case RunKind::upgrade:
        return L", upgrade of " + engine.InstalledVersion();
    case RunKind::downgrade:
        return L", in place of " + engine.InstalledVersion();
    default:
        return L", maintenance";
    }
}

std::wstring RunKindText(const vh::engine::Engine& engine)
{
    // In the order of the kinds.
    constexpr const wchar_t* words[] = {L"install", L"modify", L"repair", L"upgrade from ", L"downgrade from "};
    const bool other = engine.Kind() >= vh::engine::RunKind::upgrade;
    return words[static_cast<int>(engine.Kind())] + (other ? engine.InstalledVersion() : std::wstring());
}

void MentionExit(ExitCode code)
{
    struct Ending {
        ExitCode code;
        const wchar_t* words;
    };
    static constexpr Ending endings[] = {
        {exit_done, L"done"},
        {exit_failed, L"failed"},
        {exit_setup, L"wrong setup, product or payload"},
        {exit_cancelled, L"stopped by the user"},
        {exit_library, L"the library or a script can't be loaded"},
        {exit_removal, L"something could not be removed"},
        {exit_rollback, L"rolled back in part"},
        {exit_rights,
         L"the rights of an administrator are missing, or others could have changed what is the machine's"},
    };
    const auto* ending = std::ranges::find(endings, code, &Ending::code);
    Mention(L"exit code " + std::to_wstring(code) +
                (ending == std::end(endings) ? L"" : std::wstring(L": ") + ending->words),
            code == exit_done ? Level::info : Level::error);
}

} // namespace host
