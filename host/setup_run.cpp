#include "setup_run.h"

#include <optional>
#include <utility>

#include "answer_file.h"
#include "console.h"
#include "engine/engine.h"
#include "kept_host.h"
#include "library.h"
#include "rights.h"
#include "run_end.h"
#include "script_run.h"
#include "scriptdata/facts.h"
#include "stop_signal.h"
#include "system_density.h"
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
    // Dialogs are made, so that they can be answered.
    if (AnswersDialogs(options))
        engine.facts[vh::fact_silent_ex] = vh::variant(false);
    if (options.silent)
        engine.onProgress = [](const vh::engine::Progress&) { return !cancelled; };
    else
        engine.onProgress = ProgressLine();
    return engine;
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

// Answers are for one product.
void CheckAnswers(const RunOptions& options, const vh::engine::Engine& engine)
{
    if (options.answers && _wcsicmp(options.answers->guid.c_str(), engine.InstallGuid().c_str()) != 0)
        throw std::runtime_error(Utf8(options.answers_file + L": the answers are for another product, " +
                                      options.answers->guid + L" " + options.answers->name));
}

ExitCode RunIn(const RunOptions& options, std::wstring& data_folder, Plan& plan, Answers& given)
{
    const SystemDensity density;
    StopSignal signal(L"the next run undoes this one");
    auto engine = vh::engine::Engine::Open(EngineOptions(options, plan));
    data_folder = engine->DataDir();
    Say(engine->ProductName() + L" " + engine->ProductVersion() + KindWords(*engine) + L", target " +
        engine->TargetDir());
    Mention(L"kind of run: " + RunKindText(*engine), Level::info);
    CheckAnswers(options, *engine);

    SpeakLanguage(static_cast<LANGID>(engine->Language()));
    std::wstring failure;
    try {
        const Library library = LoadLibraryWithTrace(options);
        failure = RunScripts(library, *engine, options, signal, plan, given);
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

std::optional<ExitCode> SeeToRights(bool for_machine, bool silent)
{
    if (!for_machine || vh::engine::HasMachineRights())
        return std::nullopt;
    if (!silent)
        return RunWithMachineRights(GetCommandLineW());
    Complain(L"the product is one for all users: a silent run of it wants the rights of an administrator");
    return exit_rights;
}

ExitCode RunSetup(const RunOptions& options)
{
    const bool rights = options.plan == PlanForm::none && vh::engine::IsForMachine(options.setup_folder);
    if (const auto code = SeeToRights(rights, options.silent))
        return *code;
    std::optional<AnswerFile> file;
    if (!options.save_answers.empty())
        file.emplace(options.save_answers);
    std::wstring data_folder;
    Plan plan;
    Answers given;
    const ExitCode code = RunIn(options, data_folder, plan, given);
    if (file && (code == exit_done || code == exit_restart))
        file->Keep(given);
    if (options.plan != PlanForm::none)
        plan.Show(options.plan, code);
    else
        SweepHost(data_folder);
    return code;
}

} // namespace host
