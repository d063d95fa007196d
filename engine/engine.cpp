#include "engine.h"

#include <algorithm>

#include "core.h"
#include "maintenance.h"
#include "product/selection.h"
#include "services/host.h"
#include "services/reboot_texts.h"
#include "services/services.h"
#include "services/small_services.h"
#include "transfer/removal.h"
#include "windows/screen.h"

namespace vh::engine {

namespace {

// Undoes runs that never came to their end.
void Recover(Core& core)
{
    const bool unfinished = !core.log->UnfinishedRuns().empty();
    if (core.options.planOnly) {
        if (unfinished)
            core.Report({Severity::warning, core.log->File(),
                         L"an unfinished installation will be undone first, which this plan does not foresee", S_OK});
        return;
    }
    const auto results = RecoverRuns(*core.log);
    if (unfinished)
        core.Report(
            {Severity::warning, core.log->File(),
             L"an unfinished installation was undone (" + Number(static_cast<int64_t>(CountDone(results))) + L" steps)",
             S_OK});
    for (const Removal& removal : results)
        if (removal.outcome == RemovalOutcome::failed)
            core.Report({Severity::warning, removal.what,
                         L"can't be undone yet: " + removal.reason + L"; the next setup tries again", E_FAIL});
    DropIfIdle(*core.log);
}

} // namespace

std::unique_ptr<Engine> Engine::Open(Options options)
{
    auto core = std::make_shared<Core>(std::move(options));
    if (!core->options.planOnly)
        if (auto damage = PutOffList(core->log->File()).CarryOut())
            core->Report(std::move(*damage));
    Recover(*core);
    TakeOver(*core);
    return std::unique_ptr<Engine>(new Engine(std::move(core)));
}

Engine::Engine(std::shared_ptr<Core> core) : m_core(std::move(core)) {}

Engine::~Engine()
{
    try {
        Rollback();
    } catch (const std::exception& error) {
        m_core->Report({Severity::error, {}, ToWide(error.what()), E_FAIL});
    }
    m_core->screen->Close();
    m_core->log->Close();
}

com_ptr<ISetupHost> Engine::Host() const
{
    com_ptr<ISetupHost> host;
    host.attach(make_object<HostObject>(m_core).detach());
    return host;
}

com_ptr<IServiceProvider> Engine::Services() const
{
    com_ptr<IServiceProvider> services;
    services.attach(make_object<ServicesObject>(m_core).detach());
    return services;
}

com_ptr<ISetupPropertyBag> Engine::NewPropertyBag() const
{
    com_ptr<ISetupPropertyBag> bag;
    bag.attach(make_object<PropertyBag>(m_core).detach());
    return bag;
}

Recorder& Engine::Calls() const { return m_core->calls; }
long Engine::LiveObjects() const { return m_core->live; }
const std::vector<Message>& Engine::Messages() const { return m_core->messages; }
void Engine::Cancel() { m_core->cancelled = true; }

void Engine::Commit(ProgramEntry entry)
{
    m_core->entry = std::move(entry);
    CommitRun(*m_core, TargetDir());
    if (!m_core->options.planOnly && !WriteRebootTexts(LogFile(), m_core->rebootTexts))
        m_core->Report(
            {Severity::warning, LogFile(), L"the texts for the run after a restart could not be kept", E_FAIL});
}

std::vector<Removal> Engine::Rollback()
{
    InstallLog& log = *m_core->log;
    const long run = log.CurrentRun();
    if (!run)
        return {};
    auto results = UndoRecords(log, Undo::rollback, [&](const LogRecord& record) { return record.run == run; });
    log.Leave(!AnyFailed(results));
    DropIfIdle(log);
    return results;
}

std::wstring Engine::ProductName() const { return m_core->product->product->name; }
std::wstring Engine::ProductVersion() const { return m_core->product->product->version; }
std::vector<std::wstring> Engine::ScriptFiles() const
{
    std::vector<std::wstring> files;
    for (const std::wstring& name : m_core->product->product->scripts)
        files.push_back(JoinPath(m_core->options.setupFolder, name));
    return files;
}
int Engine::Language() const { return m_core->language; }

std::wstring Engine::TargetDir() const
{
    const std::wstring* target = m_core->globalTexts.Find(L"TARGETDIR");
    return target ? m_core->Substitute(*target) : std::wstring();
}

std::wstring Engine::LogFile() const { return m_core->log->File(); }
std::wstring Engine::InstallGuid() const { return m_core->product->product->installGuid; }
std::wstring Engine::DataDir() const { return m_core->options.dataDir; }
bool Engine::IsPlan() const { return m_core->options.planOnly; }
bool Engine::Maintenance() const { return m_core->product->maintenance; }

std::vector<InstalledFile> Engine::Installed() const
{
    std::map<long, std::wstring> sources = m_core->log->Sources();
    std::vector<InstalledFile> files;
    for (const LogRecord* record : m_core->log->Standing(LogKind::file))
        files.push_back({record->what, std::move(sources[record->id]), record->feature,
                         WaitsForItsPlace(*record) ? record->temp : std::wstring()});
    return files;
}

std::vector<std::wstring> Engine::LogLines() const
{
    std::vector<std::wstring> lines;
    for (const LogRecord& record : m_core->log->Records())
        lines.push_back(Readable(record));
    return lines;
}

std::vector<std::wstring> Engine::Selected() const { return SelectedFeatures(*m_core); }

std::vector<std::wstring> Engine::Select(const std::vector<std::wstring>& paths)
{
    return SelectOnly(*m_core->product->product, paths);
}

RunKind Engine::Kind() const { return m_core->kind; }
std::wstring Engine::InstalledVersion() const { return m_core->installedVersion; }
bool Engine::NeedsRestart() const { return vh::engine::NeedsRestart(*m_core); }
RunCounts Engine::Counts() const { return m_core->log->CurrentRun() ? CountWritten(*m_core->log) : m_core->counts; }

std::wstring LogFileOf(const std::wstring& setupFolder, const std::wstring& dataDir)
{
    const ProductIdentity product = ReadIdentity(JoinPath(FullPath(setupFolder), L"product.json"));
    const std::wstring folder = dataDir.empty() ? DefaultDataDir(product.scope == Scope::machine) : dataDir;
    return JoinPath(JoinPath(folder, product.installGuid), L"install.log");
}

bool IsForMachine(const std::wstring& setupFolder)
{
    return ReadIdentity(JoinPath(FullPath(setupFolder), L"product.json")).scope == Scope::machine;
}

} // namespace vh::engine
