#include "plan.h"

#include <algorithm>
#include <iterator>

#include <nlohmann/json.hpp>

#include "console.h"
#include "script_value.h"
#include "text.h"
#include "wording.h"

namespace host {

namespace {

using nlohmann::json;

// Calls that do something to the machine beside the engine, other than files and values that scripts write themselves,
// and what they give when all goes well.
struct HeldBack {
    std::wstring_view call;
    int32_t result;
};
constexpr HeldBack held_back[] = {
    {L"DIFxDriverPackageInstall", 0},
    {L"DIFxDriverPackagePreinstall", 0},
    {L"DIFxDriverPackageUninstall", 0},
    {L"KillProcesses", 0},
    {L"OpenInShell", 1},
    {L"PrintFile", 0},
    {L"ServiceStopDependentServices", 0},
};

// Who decided: a flag of the product file, a feature, or whoever asks without either.
std::wstring DeciderOf(const vh::engine::Decision& decision, const std::wstring& asker)
{
    if (const std::wstring flag = vh::engine::FlagOf(decision.why); !flag.empty())
        return L"flag " + flag;
    return decision.feature.empty() ? asker : L"feature " + decision.feature;
}

json Texts(const std::vector<std::wstring>& texts)
{
    json list = json::array();
    for (const std::wstring& text : texts)
        list.push_back(Utf8(text));
    return list;
}

} // namespace

void Plan::Take(const vh::engine::Decision& decision)
{
    Add({vh::engine::WordOf(decision.act), decision.kind, decision.what, vh::engine::ReasonOf(decision),
         DeciderOf(decision, m_asker), decision.size, decision.freed});
}

void Plan::Take(const vh::engine::Removal& removal)
{
    using vh::engine::RemovalOutcome;
    const bool goes = removal.outcome == RemovalOutcome::removed;
    const bool comes_back = removal.outcome == RemovalOutcome::restored;
    Add({goes         ? L"remove"
         : comes_back ? L"restore"
                      : L"keep",
         removal.kind, removal.what, NameOf(removal), L"removal", 0, removal.freed});
}

void Plan::Take(const vh::engine::Message& message)
{
    if (message.severity != vh::engine::Severity::note)
        m_messages.push_back(message.Text());
}

std::optional<vh::variant> Plan::Instead(std::wstring_view call, std::span<const VARIANT>)
{
    const auto* row = std::ranges::find(held_back, call, &HeldBack::call);
    if (row == std::end(held_back))
        return std::nullopt;
    Add({L"call", L"function", std::wstring(call), L"is not called in a plan", L"script"});
    return FromInt64(row->result);
}

void Plan::Describe(const vh::engine::Engine& engine)
{
    m_product = engine.ProductName();
    m_version = engine.ProductVersion();
    m_target = engine.TargetDir();
    m_kind = RunKindText(engine);
    m_selected = engine.Selected();
}

void Plan::Add(Step step)
{
    ++m_counts[step.act];
    if (step.size || step.freed) {
        Bytes& drive = m_drives[vh::engine::DriveOf(step.what)];
        drive.written += step.size;
        drive.freed += step.freed;
    }
    m_steps.push_back(std::move(step));
}

void Plan::Show(PlanForm form, ExitCode code) const { form == PlanForm::json ? ShowJson(code) : ShowText(); }

void Plan::ShowText() const
{
    for (const Step& step : m_steps)
        Say(L"  " + step.act + L" " + step.kind + L" " + step.what + L": " + step.reason + L" (" + step.by + L")");
    for (const auto& [drive, bytes] : m_drives)
        Say(drive + L" " + std::to_wstring(bytes.written) + L" bytes written, " + std::to_wstring(bytes.freed) +
            L" freed");
    std::wstring summary = L"plan:";
    for (const auto& [act, count] : m_counts)
        summary += L" " + act + L" " + std::to_wstring(count);
    Say(summary + (m_counts.empty() ? L" nothing" : L"") + L"; nothing was touched");
}

void Plan::ShowJson(ExitCode code) const
{
    json steps = json::array();
    for (const Step& step : m_steps)
        steps.push_back({{"do", Utf8(step.act)},
                         {"kind", Utf8(step.kind)},
                         {"what", Utf8(step.what)},
                         {"reason", Utf8(step.reason)},
                         {"by", Utf8(step.by)},
                         {"size", step.size},
                         {"freed", step.freed}});
    json drives = json::object();
    for (const auto& [drive, bytes] : m_drives)
        drives[Utf8(drive)] = {{"written", bytes.written}, {"freed", bytes.freed}};
    json counts = json::object();
    for (const auto& [act, count] : m_counts)
        counts[Utf8(act)] = count;
    const json plan{{"format", 1},
                    {"run", Utf8(m_kind)},
                    {"product", Utf8(m_product)},
                    {"version", Utf8(m_version)},
                    {"target", Utf8(m_target)},
                    {"selected", Texts(m_selected)},
                    {"steps", steps},
                    {"drives", drives},
                    {"counts", counts},
                    {"messages", Texts(m_messages)},
                    {"exitCode", static_cast<int>(code)}};
    Output(Wide(plan.dump(2)));
}

} // namespace host
