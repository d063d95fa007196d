#include "engine.h"

#include <algorithm>

#include "core.h"
#include "services/host.h"
#include "services/reboot_texts.h"
#include "services/services.h"
#include "services/small_services.h"
#include "transfer/removal.h"
#include "windows/screen.h"

namespace vh::engine {

namespace {

// A log that would undo nothing goes.
void DropIfIdle(InstallLog& log)
{
    if (log.IsIdle())
        log.Clear();
}

// Undoes runs that never came to their end.
void Recover(Core& core)
{
    const bool unfinished = !core.log->UnfinishedRuns().empty();
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

bool IsTargetGiven(const Options& options)
{
    return !options.targetDir.empty() ||
           std::any_of(options.variables.begin(), options.variables.end(),
                       [](const auto& variable) { return SameText(variable.first, L"TARGETDIR"); });
}

// Paths of the features that the last run left selected, in upper case. Where that record is lost, those that have
// files in place.
std::set<std::wstring> SelectedByLog(const InstallLog& log, const LogRecord* selection)
{
    std::set<std::wstring> selected;
    if (selection) {
        for (const std::wstring& path : selection->list)
            selected.insert(Upper(path));
        return selected;
    }
    for (const LogRecord* file : log.Standing(LogKind::file))
        for (std::wstring path = Upper(file->feature); !path.empty(); path = FolderOf(path))
            selected.insert(path);
    return selected;
}

// Target, selection and state as the last run left them. With another target nothing is there yet.
void TakeOver(Core& core)
{
    if (!core.log->AnythingStands())
        return;
    core.product->maintenance = true;
    const LogRecord* selection = core.log->Newest(LogKind::features, {});
    bool samePlace = true;
    if (selection) {
        const auto target = selection->texts.find(L"TARGETDIR");
        if (!IsTargetGiven(core.options) && target != selection->texts.end())
            core.globalTexts.Set(L"TARGETDIR", target->second);
        samePlace = target == selection->texts.end() || SameText(target->second, core.Substitute(L"<TARGETDIR>"));
    }
    const std::set<std::wstring> selected = SelectedByLog(*core.log, selection);
    for (const auto& child : core.product->product->data.children)
        if (!child->pseudo)
            ForEachItem(*child, [&](Item& item) {
                item.selected = selected.contains(Upper(item.Path()));
                item.installed = item.selected && samePlace;
            });
}

// What is selected now, and where it goes.
LogRecord SelectionOf(const Core& core, const std::wstring& target)
{
    LogRecord selection;
    selection.kind = LogKind::features;
    selection.texts[L"TARGETDIR"] = target;
    for (const auto& child : core.product->product->data.children)
        if (!child->pseudo)
            ForEachItem(*child, [&](const Item& item) {
                if (item.selected)
                    selection.list.push_back(item.Path());
            });
    return selection;
}

void CommitLog(Core& core, const std::wstring& target)
{
    InstallLog& log = *core.log;
    LogRecord selection = SelectionOf(core, target);
    const LogRecord* before = core.product->maintenance ? log.Newest(LogKind::features, {}) : nullptr;
    if (!log.CurrentRun() && (!before || before->list == selection.list))
        return;
    log.Commit(std::move(selection));
    TidyUp(log);
    if (core.product->maintenance || log.Standing(LogKind::texts).empty())
        DropIfIdle(log);
}

} // namespace

std::unique_ptr<Engine> Engine::Open(Options options)
{
    auto core = std::make_shared<Core>(std::move(options));
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

void Engine::Commit()
{
    CommitLog(*m_core, TargetDir());
    if (!WriteRebootTexts(LogFile(), m_core->rebootTexts))
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
bool Engine::Maintenance() const { return m_core->product->maintenance; }

std::vector<InstalledFile> Engine::Installed() const
{
    std::vector<InstalledFile> files;
    for (const LogRecord* record : m_core->log->Standing(LogKind::file))
        files.push_back({record->what, record->source, record->feature});
    return files;
}

std::vector<std::wstring> Engine::LogLines() const
{
    std::vector<std::wstring> lines;
    for (const LogRecord& record : m_core->log->Records())
        lines.push_back(Readable(record));
    return lines;
}

std::wstring LogFileOf(const std::wstring& setupFolder, const std::wstring& dataDir)
{
    const auto product = ReadProduct(JoinPath(FullPath(setupFolder), L"product.json"));
    return JoinPath(JoinPath(dataDir.empty() ? DefaultDataDir() : dataDir, product->installGuid), L"install.log");
}

} // namespace vh::engine
