#include "decision.h"

namespace vh::engine {

namespace {

struct Reason {
    Why why;
    const wchar_t* text;
    const wchar_t* flag = L"";
};
constexpr Reason reasons[] = {
    {Why::fresh, L"new"},
    {Why::missing, L"was missing"},
    {Why::damaged, L"was damaged"},
    {Why::differs, L"differs from what stands there"},
    {Why::version, L"version <before> gives way to <after>"},
    {Why::same, L"the same"},
    {Why::newer, L"version <before> is newer than <after>"},
    {Why::not_older, L"is not older"},
    {Why::never_overwrite, L"is never overwritten", L"never-overwrite"},
    {Why::keep_changed, L"was changed since it was installed", L"keep-changed"},
    {Why::overridden, L"was changed since it was installed, and is replaced"},
    {Why::changed, L"was changed since it was installed"},
    {Why::permanent, L"is permanent", L"permanent"},
    {Why::found, L"was there before the product"},
    {Why::shared, L"another product has it"},
    {Why::unselected, L"its feature is not selected any more"},
    {Why::dropped, L"the new version has it no more"},
    {Why::last, L"nothing else of the product is left"},
    {Why::asked, L"the script asks for it"},
};

const Reason& Of(Why why)
{
    for (const Reason& reason : reasons)
        if (reason.why == why)
            return reason;
    return reasons[0];
}

void Put(std::wstring& text, std::wstring_view mark, const std::wstring& value)
{
    if (const std::size_t at = text.find(mark); at != std::wstring::npos)
        text.replace(at, mark.size(), value);
}

} // namespace

const wchar_t* WordOf(Act act)
{
    // In the order of the acts.
    constexpr const wchar_t* words[] = {L"add", L"replace", L"keep", L"remove", L"restore"};
    return words[static_cast<int>(act)];
}

std::wstring ReasonOf(const Decision& decision)
{
    std::wstring text = Of(decision.why).text;
    Put(text, L"<before>", decision.before);
    Put(text, L"<after>", decision.after);
    return text;
}

const wchar_t* FlagOf(Why why) { return Of(why).flag; }

} // namespace vh::engine
