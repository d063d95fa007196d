#include "setup_run.h"

#include <optional>
#include <utility>

#include "console.h"
#include "engine/engine.h"
#include "host_object.h"
#include "installed_tree.h"
#include "kept_host.h"
#include "library.h"
#include "packed_setup.h"
#include "products.h"
#include "rights.h"
#include "script_site.h"
#include "stop_signal.h"
#include "text.h"
#include "trace_switch.h"
#include "wording.h"

namespace host {

namespace {

// The progress of a transfer: on a console in place, elsewhere a line for each tenth.
class ProgressLine {
public:
    bool operator()(const vh::engine::Progress& progress)
    {
        const std::wstring percent = std::to_wstring(progress.percent) + L" %";
        const bool shown = Status(percent + L"  " + progress.file);
        const int tenth = progress.percent / 10;
        if (!shown && tenth > m_tenth)
            Say(L"  moving data: " + percent);
        // A further transfer begins below the last one's end.
        m_tenth = tenth;
        if (progress.percent == 100)
            Status({});
        return !cancelled;
    }

private:
    int m_tenth = 0;
};

void ShowMessage(const vh::engine::Message& message, bool notes)
{
    using vh::engine::Severity;
    if (message.severity != Severity::note)
        return Complain(message.Text(), message.severity == Severity::error ? Level::error : Level::warning);
    if (notes)
        Say(L"note: " + message.Text());
    else
        Mention(message.Text());
}

void ShowDecision(const vh::engine::Decision& decision, bool notes)
{
    using namespace vh::engine;
    if (!notes && !Overheard())
        return;
    const std::wstring line = LineOf(decision);
    // What is as it should be is no news.
    if (notes && decision.act == Act::keep && decision.why != Why::same)
        Say(L"note: " + line);
    else
        Mention(line);
}

vh::engine::Options EngineOptions(const RunOptions& options, Plan& plan)
{
    vh::engine::Options engine;
    engine.setupFolder = options.setup_folder;
    engine.pack = options.pack;
    if (options.pack)
        engine.source = options.pack->File();
    engine.targetDir = options.target;
    engine.dataDir = options.data_folder;
    engine.registryRoot = options.registry_root;
    engine.language = options.language;
    engine.silent = options.silent;
    engine.repair = options.repair;
    engine.allowDowngrade = options.allow_downgrade;
    engine.windows = options.main_window ? vh::engine::Windows::all : vh::engine::Windows::dialogs;
    engine.commandLine = GetCommandLineW();
    engine.variables.assign(options.variables.begin(), options.variables.end());
    engine.planOnly = options.plan != PlanForm::none;
    engine.onMessage = [notes = options.notes, &plan](const vh::engine::Message& message) {
        ShowMessage(message, notes);
        plan.Take(message);
    };
    engine.onDecision = [notes = options.notes, planned = engine.planOnly, &plan](const vh::engine::Decision& made) {
        ShowDecision(made, notes);
        if (planned)
            plan.Take(made);
    };
    engine.onVariable = options.on_variable;
    if (options.silent)
        engine.onProgress = [](const vh::engine::Progress&) { return !cancelled; };
    else
        engine.onProgress = ProgressLine();
    return engine;
}

// The library's context for one script run.
class Context {
public:
    Context(const Library& library, const vh::engine::Engine& engine)
        : m_library(library), m_host(engine.Host()), m_services(engine.Services()),
          m_context(library.Entry<void*(ISetupHost*, IServiceProvider*)>("__CreateObjectContext")(m_host.get(),
                                                                                                  m_services.get()))
    {
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() { m_library.Entry<void(void*)>("__ReleaseObjectContext")(m_context); }

    CallSite Site() const { return {m_context, m_host.get(), m_services.get()}; }

private:
    const Library& m_library;
    vh::com_ptr<ISetupHost> m_host;
    vh::com_ptr<IServiceProvider> m_services;
    void* m_context;
};

ExitCode TakeBack(vh::engine::Engine& engine, ExitCode reason);

// A script that does not end is left to itself: no call of it reaches the library or the engine any more.
ScriptControl ControlOf(ScriptSite& site, const HostObject& object, vh::engine::Engine& engine)
{
    return {[&site] { site.Interrupt(); }, [&object] { return object.Busy(); },
            [&engine] {
                while (!engine.Calls().Shut())
                    SwitchToThread();
                Complain(L"stopped by the user, in the middle of the script");
                const ExitCode code = TakeBack(engine, exit_cancelled);
                MentionExit(code);
                return code;
            }};
}

// Empty when all went well.
std::wstring RunScripts(const Library& library, vh::engine::Engine& engine, const RunOptions& options,
                        StopSignal& signal, Plan& plan)
{
    const Context context(library, engine);
    // The library learns whether the run is silent when it is asked for the command line.
    library.Entry<int32_t(void*, void*, void*, void*, void*, void*, void*, void*, void*, void*, void*, void*, int32_t)>(
        "__GetCmdLineOptions")(context.Site().context, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr, 0);
    HostServices services;
    services.setup_folder = options.setup_folder;
    services.target_folder = engine.TargetDir();
    services.silent = options.silent;
    services.maintenance = engine.Maintenance();
    services.arguments = options.variables;
    services.print = [](const std::wstring& line) { Say(line); };
    services.cancel = [] { cancelled = true; };
    if (options.plan != PlanForm::none)
        services.holds_back = [&plan](std::wstring_view call) { return plan.HoldsBack(call); };
    const auto object = vh::make_object<HostObject>(library, context.Site(), services, cancelled);
    const auto site = vh::make_object<ScriptSite>(object.get());
    const StopSignal::Script running(signal, ControlOf(*site.get(), *object.get(), engine));
    if (!site->Run(options.scripts.empty() ? engine.ScriptFiles() : options.scripts))
        return site->Failure().Text();
    if (object->LastTransfer() < 0)
        return L"the data was not moved (result " + ResultText(object->LastTransfer()) + L")";
    return {};
}

void ShowRemovals(const std::vector<vh::engine::Removal>& removals)
{
    for (const vh::engine::Removal& removal : removals)
        if (removal.outcome == vh::engine::RemovalOutcome::failed)
            Complain(removal.what + L": " + removal.reason);
        else
            Mention(L"undone: " + LineOf(removal));
}

// Undoes the run. Result: `reason`, unless something could not be undone.
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

constexpr const wchar_t* restart_words = L"files are in use: the system has to start again";

// The installed tree, the log and a closing line of counts, as far as they are wanted.
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

// The library goes without a trace that it can't write; who asked for one is told.
void RequireWritable(const std::wstring& trace_file)
{
    const vh::unique_file file(CreateFileW(trace_file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD code = GetLastError();
    if (!file)
        throw std::runtime_error(Utf8(trace_file + L": the trace can't be written: " + SystemText(code)));
}

// The library reads the trace switch while it loads, and at no other time.
std::wstring LibraryFolderOf(const RunOptions& options)
{
    return options.library_folder.empty() ? ProgramFolder() : options.library_folder;
}

Library LoadLibraryWithTrace(const RunOptions& options)
{
    if (!options.trace_file.empty())
        RequireWritable(options.trace_file);
    const TraceSwitch trace(options.trace_file);
    return Library(Join(LibraryFolderOf(options), L"VHRT.dll"));
}

// Dialogs and texts come in the language of the run, whatever the user's is. Windows chooses resources by the
// language of the thread, Wine by its locale.
void SpeakLanguage(LANGID language)
{
    SetThreadUILanguage(language);
    SetThreadLocale(MAKELCID(language, SORT_DEFAULT));
}

ExitCode RunIn(const RunOptions& options, std::wstring& data_folder, Plan& plan)
{
    StopSignal signal(L"the next run undoes this one");
    auto engine = vh::engine::Engine::Open(EngineOptions(options, plan));
    data_folder = engine->DataDir();
    Say(engine->ProductName() + L" " + engine->ProductVersion() + KindWords(*engine) + L", target " +
        engine->TargetDir());
    Mention(L"kind of run: " + RunKindText(*engine), Level::info);

    SpeakLanguage(static_cast<LANGID>(engine->Language()));
    std::wstring failure;
    try {
        const Library library = LoadLibraryWithTrace(options);
        failure = RunScripts(library, *engine, options, signal, plan);
    } catch (const std::exception& error) {
        Complain(Wide(error.what()));
        return TakeBack(*engine, exit_library);
    }
    plan.EndScript();
    plan.Describe(*engine);
    if (failure.empty() && !cancelled) {
        try {
            if (options.plan == PlanForm::none)
                KeepHost(engine->DataDir(), LibraryFolderOf(options));
            engine->Commit(EntryFor(engine->DataDir(), !options.data_folder.empty(), engine->InstallGuid()));
        } catch (const std::exception& error) {
            Complain(Wide(error.what()));
            return TakeBack(*engine, exit_failed);
        }
        if (options.plan != PlanForm::none)
            return exit_done;
        Mention(L"committed, selected: " + Joined(engine->Selected()), Level::info);
        return ShowOutcome(*engine, options);
    }
    Complain(cancelled ? L"stopped by the user" : failure);
    return TakeBack(*engine, cancelled ? exit_cancelled : exit_failed);
}

} // namespace

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
        vh::engine::CarryOutPutOff(folder);
        SweepHost(folder);
    }
    throw std::runtime_error(Utf8(options.guid) + ": no such product is installed");
}

// Nothing when the run can go on as it is.
std::optional<ExitCode> SeeToRights(bool for_machine, bool silent)
{
    if (!for_machine || HasMachineRights())
        return std::nullopt;
    if (!silent)
        return RunWithMachineRights();
    Complain(L"the product is one for all users: a silent run of it wants the rights of an administrator");
    return exit_rights;
}

std::wstring DataFolderOfLog(const std::wstring& log) { return vh::engine::FolderOf(vh::engine::FolderOf(log)); }

} // namespace

ExitCode RunSetup(const RunOptions& options)
{
    try {
        const bool rights = options.plan == PlanForm::none && vh::engine::IsForMachine(options.setup_folder);
        if (const auto code = SeeToRights(rights, options.silent))
            return *code;
        std::wstring data_folder;
        Plan plan;
        const ExitCode code = RunIn(options, data_folder, plan);
        if (options.plan != PlanForm::none)
            plan.Show(options.plan, code);
        else
            SweepHost(data_folder);
        return code;
    } catch (const vh::engine::engine_error& error) {
        Complain(error.message().Text());
    } catch (const std::exception& error) {
        Complain(Wide(error.what()));
    }
    return exit_setup;
}

ExitCode ModifyProduct(RunOptions options)
{
    const auto product = FindProduct(options.guid, options.data_folder);
    if (!product) {
        Complain(options.guid + L": no such product is installed");
        return exit_setup;
    }
    if (product->source.empty()) {
        Complain(product->logFile + L": does not tell where the setup of " + options.guid + L" is; start it itself");
        return exit_setup;
    }
    const DWORD attributes = GetFileAttributesW(LongPath(product->source).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        Complain(product->source + L": the setup of " + product->name +
                 L" is not there any more; start it from where it is now");
        return exit_setup;
    }
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY))
        return RunPackedSetup(product->source, options);
    options.setup_folder = product->source;
    return RunSetup(options);
}

namespace {

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
    } catch (const vh::engine::engine_error& error) {
        Complain(error.message().Text());
    } catch (const std::exception& error) {
        Complain(Wide(error.what()));
    }
    return exit_setup;
}

} // namespace host
