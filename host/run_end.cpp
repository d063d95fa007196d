#include "run_end.h"

#include "console.h"
#include "installed_tree.h"
#include "text.h"
#include "wording.h"

namespace host {

namespace {

void ShowRemovals(const std::vector<vh::engine::Removal>& removals)
{
    for (const vh::engine::Removal& removal : removals)
        if (removal.outcome == vh::engine::RemovalOutcome::failed)
            Complain(removal.what + L": " + removal.reason);
        else
            Mention(L"undone: " + LineOf(removal));
}

} // namespace

ExitCode TakeBack(vh::engine::Engine& engine, ExitCode reason)
{
    const auto removals = engine.Rollback();
    ShowRemovals(removals);
    if (engine.IsPlan())
        return reason;
    const std::wstring steps = std::to_wstring(vh::engine::CountDone(removals)) + L" steps undone";
    if (!vh::engine::AnyFailed(removals)) {
        Complain(L"rolled back, " + steps);
        return reason;
    }
    Complain(L"rolled back in part, " + steps + L"; the next run tries the others again");
    return exit_rollback;
}

namespace {

void ShowLog(const vh::engine::Engine& engine)
{
    Say(L"recorded for removal in " + engine.LogFile() + L":");
    for (const std::wstring& line : engine.LogLines())
        Say(L"  " + line);
}

void SayRepaired(const vh::engine::RunCounts& counts)
{
    Say(L"repaired: " + Counted(counts.files, L"file") + L", " + Counted(counts.values, L"registry value") + L", " +
        Counted(counts.shortcuts, L"shortcut"));
}

} // namespace

ExitCode ShowOutcome(const vh::engine::Engine& engine, const RunOptions& options)
{
    TreeCounts counts;
    if (options.verify)
        counts = ShowInstalledTree(engine.TargetDir(), engine.Installed(), options.pack.get());
    if (options.show_log)
        ShowLog(engine);
    if (options.repair)
        SayRepaired(engine.Counts());
    if (!options.verify)
        Say(std::to_wstring(engine.Installed().size()) + L" files in place, " +
            std::to_wstring(engine.LogLines().size()) + L" log records");
    else
        Say(std::to_wstring(counts.files) + L" files with " + std::to_wstring(counts.bytes) + L" bytes, " +
            std::to_wstring(counts.files - counts.different) + L" same as their source, " +
            std::to_wstring(counts.different) + L" not, " + std::to_wstring(engine.LogLines().size()) +
            L" log records");
    if (counts.different)
        return exit_failed;
    if (!engine.NeedsRestart())
        return exit_done;
    Say(restart_words);
    return exit_restart;
}

} // namespace host
