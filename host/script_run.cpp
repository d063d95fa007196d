#include "script_run.h"

#include <optional>
#include <utility>
#include <vector>

#include "answer_recorder.h"
#include "answer_replay.h"
#include "console.h"
#include "host_object.h"
#include "run_end.h"
#include "run_log.h"
#include "script_site.h"
#include "text.h"
#include "wording.h"

namespace host {

namespace {

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

Answers AnswersOf(const AnswerRecorder& recorder, const vh::engine::Engine& engine, const RunOptions& options)
{
    Answers answers;
    answers.guid = engine.InstallGuid();
    answers.name = engine.ProductName();
    answers.version = engine.ProductVersion();
    answers.language = engine.Language();
    answers.target = engine.TargetDir();
    answers.selection = recorder.Selection();
    for (const auto& [name, value] : options.variables)
        answers.variables[name] = IsSecretName(name) ? std::nullopt : std::optional(value);
    if (!options.silent)
        answers.dialogs = recorder.Given();
    return answers;
}

// Who looks at the calls of a script.
struct Watches {
    Watches(const DialogCalls& dialogs, vh::engine::Engine& engine, const RunOptions& options, Plan& plan)
    {
        if (options.answers)
            all.push_back(&replay.emplace(dialogs, engine, *options.answers, options.answers_file));
        if (options.plan != PlanForm::none)
            all.push_back(&plan);
        if (!options.save_answers.empty())
            all.push_back(&recorder.emplace(dialogs, engine));
    }

    std::optional<AnswerReplay> replay;
    std::optional<AnswerRecorder> recorder;
    std::vector<CallWatch*> all;
};

// Why the script or what it asked for failed; empty when all went well.
std::wstring FaultOf(bool ran, const ScriptSite& site, const HostObject& object, const Watches& watches)
{
    if (watches.replay && !watches.replay->Fault().empty())
        return watches.replay->Fault();
    if (!ran)
        return site.Failure().Text();
    if (object.LastTransfer() < 0)
        return L"the data was not moved (result " + ResultText(object.LastTransfer()) + L")";
    return {};
}

} // namespace

std::wstring RunScripts(const Library& library, vh::engine::Engine& engine, const RunOptions& options,
                        StopSignal& signal, Plan& plan, Answers& given)
{
    const Context context(library, engine);
    // The library learns whether the run is silent when it is asked for the command line.
    library.Entry<int32_t(void*, void*, void*, void*, void*, void*, void*, void*, void*, void*, void*, void*, int32_t)>(
        "__GetCmdLineOptions")(context.Site().context, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr, 0);
    HostServices services;
    services.setup_folder = options.setup_folder;
    services.target_folder = engine.TargetDir();
    services.silent = options.silent && !AnswersDialogs(options);
    services.maintenance = engine.Maintenance();
    services.arguments = options.variables;
    services.print = [](const std::wstring& line) { Say(line); };
    services.cancel = [] { cancelled = true; };
    Watches watches(DialogCalls(library, context.Site()), engine, options, plan);
    services.watches = watches.all;
    const auto object = vh::make_object<HostObject>(library, context.Site(), services, cancelled);
    const auto site = vh::make_object<ScriptSite>(object.get());
    const StopSignal::Script running(signal, ControlOf(*site.get(), *object.get(), engine));
    const bool ran = site->Run(options.scripts.empty() ? engine.ScriptFiles() : options.scripts);
    std::wstring fault = FaultOf(ran, *site.get(), *object.get(), watches);
    if (watches.recorder)
        given = AnswersOf(*watches.recorder, engine, options);
    if (watches.replay && fault.empty() && !cancelled)
        watches.replay->WarnOfUnasked();
    return fault;
}

} // namespace host
