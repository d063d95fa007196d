// The removal of what is installed.
#include <map>
#include <optional>

#include "console.h"
#include "engine/engine.h"
#include "engine/files.h"
#include "kept_host.h"
#include "products.h"
#include "setup_run.h"
#include "stop_signal.h"
#include "text.h"
#include "wording.h"

namespace host {

namespace {

// The product that a removal is for.
vh::engine::InstalledProduct ProductOf(const RunOptions& options)
{
    if (options.guid.empty()) {
        vh::engine::InstalledProduct product;
        product.logFile = vh::engine::LogFileOf(options.setup_folder, options.data_folder);
        product.forMachine = vh::engine::IsForMachine(options.setup_folder);
        return product;
    }
    auto product = FindProduct(options.guid, options.data_folder);
    if (product)
        return *product;
    // It may have gone but for files in use, or for the host, when its removal was killed near the end.
    for (const std::wstring& folder : DataFolders(options.data_folder)) {
        if (const auto damage = vh::engine::CarryOutPutOff(folder))
            Complain(damage->Text());
        SweepHost(folder);
    }
    throw std::runtime_error(Utf8(options.guid) + ": no such product is installed");
}

std::wstring DataFolderOfLog(const std::wstring& log) { return vh::engine::FolderOf(vh::engine::FolderOf(log)); }

// Ends a removal between two records.
struct removal_stopped {};

ExitCode ShowRemovalPlan(const std::wstring& log, PlanForm form)
{
    Plan plan;
    for (const vh::engine::Removal& removal : vh::engine::PlanRemoval(log)) {
        Mention(L"planned: " + LineOf(removal));
        plan.Take(removal);
    }
    plan.Show(form, exit_done);
    return exit_done;
}

} // namespace

ExitCode RemoveSetup(const RunOptions& options)
{
    StopSignal signal(L"the next removal goes on");
    std::wstring log;
    try {
        const vh::engine::InstalledProduct product = ProductOf(options);
        if (options.plan != PlanForm::none)
            return ShowRemovalPlan(product.logFile, options.plan);
        if (const auto code = SeeToRights(product.forMachine, options.silent))
            return *code;
        log = product.logFile;
        std::map<std::wstring, int> counts;
        bool restart = false;
        const auto removals = vh::engine::Uninstall(log, [&](const vh::engine::Removal& removal) {
            if (counts.empty())
                Say(L"removing what " + log + L" lists, newest first");
            const std::wstring word = NameOf(removal);
            ++counts[word];
            restart |= removal.later;
            if (!options.silent)
                Say(L"  " + LineOf(removal));
            else
                Mention(LineOf(removal));
            if (cancelled)
                throw removal_stopped();
        });
        std::wstring summary = L"removal: " + std::to_wstring(removals.size()) + L" records";
        for (const auto& [word, count] : counts)
            summary += L", " + std::to_wstring(count) + L" " + word;
        Say(summary);
        SweepHost(DataFolderOfLog(log));
        if (counts.contains(L"FAILED"))
            return exit_removal;
        if (!restart)
            return exit_done;
        Say(restart_words);
        return exit_restart;
    } catch (const removal_stopped&) {
        Complain(L"stopped by the user; " + std::to_wstring(vh::engine::LeftForRemoval(log)) +
                 L" records are left, and the next removal goes on with them");
        return exit_cancelled;
    }
}

} // namespace host
