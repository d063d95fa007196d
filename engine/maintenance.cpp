#include "maintenance.h"

#include <algorithm>

#include "program_entry.h"
#include "services/registry_access.h"
#include "transfer/take_away.h"

namespace vh::engine {

namespace {

// Names of the texts that a selection record holds.
constexpr const wchar_t* target_text = L"TARGETDIR";
constexpr const wchar_t* name_text = L"PRODUCT_NAME";
constexpr const wchar_t* version_text = L"PRODUCT_VERSION";
constexpr const wchar_t* source_text = L"SOURCE";
constexpr const wchar_t* language_text = L"LANGUAGE";

// Values of MAINTENANCE_MODE, in the order of RunKind.
constexpr const wchar_t* mode_names[] = {L"", L"modify", L"repair", L"upgrade", L"downgrade"};

std::wstring TextIn(const LogRecord* selection, const wchar_t* name)
{
    if (!selection)
        return {};
    const auto found = selection->texts.find(name);
    return found == selection->texts.end() ? std::wstring() : found->second;
}

std::set<std::wstring> UpperSet(const std::vector<std::wstring>& paths)
{
    std::set<std::wstring> upper;
    for (const std::wstring& path : paths)
        upper.insert(Upper(path));
    return upper;
}

// Paths of the features that the last run left selected, in upper case. Where that record is lost, those that have
// files in place.
std::set<std::wstring> SelectedByLog(const InstallLog& log, const LogRecord* selection)
{
    if (selection)
        return UpperSet(selection->list);
    std::set<std::wstring> selected;
    for (const LogRecord* file : log.Standing(LogKind::file))
        for (std::wstring path = Upper(file->feature); !path.empty(); path = FolderOf(path))
            selected.insert(path);
    return selected;
}

RunKind KindOf(const Core& core)
{
    if (!core.installedVersion.empty())
        if (const int step = CompareVersions(core.product->product->version, core.installedVersion); step != 0)
            return step > 0 ? RunKind::upgrade : RunKind::downgrade;
    return core.options.repair ? RunKind::repair : RunKind::modify;
}

template <class Visit>
void ForEachFeature(const Core& core, Visit&& visit)
{
    for (const auto& child : core.product->product->data.children)
        if (!child->pseudo)
            ForEachItem(*child, visit);
}

// What the version before did not know is selected as the product says.
void TakeOverSelection(Core& core, const LogRecord* selection)
{
    const std::set<std::wstring> selected = SelectedByLog(*core.log, selection);
    const std::set<std::wstring> others = selection ? UpperSet(selection->others) : std::set<std::wstring>();
    const bool news = core.IsOtherVersion() && selection;
    ForEachFeature(core, [&](Item& item) {
        const std::wstring path = Upper(item.Path());
        const bool fresh = news && !others.contains(path) && !selected.contains(path);
        item.selected =
            fresh ? item.selected && (!item.parent->parent || item.parent->selected) : selected.contains(path);
        if (item.required && news)
            for (Item* above = &item; above->parent; above = above->parent)
                above->selected = true;
        item.installed = item.selected && core.kind == RunKind::modify;
    });
}

void TakeOverTarget(Core& core)
{
    if (core.installedTarget.empty())
        return;
    const auto& given = core.options.variables;
    const bool said = !core.options.targetDir.empty() || std::any_of(given.begin(), given.end(), [](const auto& one) {
        return SameText(one.first, target_text);
    });
    if (!said)
        core.globalTexts.Set(target_text, core.installedTarget);
    CheckTargetStays(core);
}

} // namespace

void TakeOver(Core& core)
{
    if (core.log->AnythingStands()) {
        core.product->maintenance = true;
        const LogRecord* selection = core.log->Newest(LogKind::features, {});
        core.installedVersion = TextIn(selection, version_text);
        core.installedTarget = TextIn(selection, target_text);
        core.kind = KindOf(core);
        if (core.IsOtherVersion())
            core.log->RememberWishes();
        if (core.kind == RunKind::downgrade && !core.options.allowDowngrade)
            throw engine_error(HRESULT_FROM_WIN32(ERROR_PRODUCT_VERSION), core.product->product->file,
                               L"version " + core.installedVersion + L" is installed, which is higher than " +
                                   core.product->product->version);
        TakeOverTarget(core);
        TakeOverSelection(core, selection);
    }
    core.globalTexts.Set(L"INSTALLED_VERSION", core.installedVersion);
    core.globalTexts.Set(L"MAINTENANCE_MODE", mode_names[static_cast<int>(core.kind)]);
}

int LanguageOf(const InstallLog& log)
{
    return wcstol(TextIn(log.Newest(LogKind::features, {}), language_text).c_str(), nullptr, 10);
}

void CheckTargetStays(const Core& core)
{
    const std::wstring target = core.Substitute(std::wstring(L"<") + target_text + L'>');
    if (!core.installedTarget.empty() && !SameText(target, core.installedTarget))
        throw engine_error(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), target,
                           core.product->product->name + L" is installed in " + core.installedTarget +
                               L"; remove it there before you install it elsewhere");
}

namespace {

// What is selected now, and where it goes.
LogRecord SelectionOf(const Core& core, const std::wstring& target)
{
    const Product& product = *core.product->product;
    LogRecord selection;
    selection.kind = LogKind::features;
    selection.texts[target_text] = target;
    selection.texts[name_text] = product.name;
    selection.texts[version_text] = product.version;
    selection.texts[source_text] = core.options.source;
    selection.texts[language_text] = Number(core.language);
    ForEachFeature(
        core, [&](const Item& item) { (item.selected ? selection.list : selection.others).push_back(item.Path()); });
    return selection;
}

// Values that the product wrote last and that read otherwise now, or are gone.
void RestoreValues(Core& core)
{
    std::vector<LogRecord> values;
    for (const LogRecord* record : core.log->Standing(LogKind::value))
        if (record->type != -1)
            values.push_back(*record);
    for (const LogRecord& value : values)
        WriteValue({core.log.get()}, PlaceOf(value.what), value.name,
                   {static_cast<DWORD>(value.type), FromHex(value.data)}, value.feature);
}

// The log's own copy of what the setup is, for a removal and for people when the setup itself is gone.
void KeepSetup(Core& core)
{
    const std::wstring folder = KeptSetupFolder(core.log->File());
    const Product& product = *core.product->product;
    std::vector<std::wstring> names{L"product.json"};
    names.insert(names.end(), product.scripts.begin(), product.scripts.end());
    for (const std::wstring& name : names) {
        const std::wstring from = JoinPath(core.options.setupFolder, name);
        const std::wstring to = JoinPath(folder, name);
        const FileFacts given = FactsOf(from);
        const FileFacts there = FactsOf(to);
        if (!given.file() || (there.size == given.size && there.time == given.time))
            continue;
        try {
            MakeFolders(FolderOf(to));
            if (!CopyFileW(LongPath(from).c_str(), LongPath(to).c_str(), FALSE))
                ThrowFileError(to, L"can't keep a copy of the setup", GetLastError());
        } catch (const engine_error& error) {
            Message message = error.message();
            message.severity = Severity::warning;
            core.Report(std::move(message));
        }
    }
}

} // namespace

void CommitRun(Core& core, const std::wstring& target)
{
    InstallLog& log = *core.log;
    const LogRecord* before = core.product->maintenance ? log.Newest(LogKind::features, {}) : nullptr;
    if (core.kind == RunKind::repair)
        RestoreValues(core);
    // An upgrade that moved nothing is none: whatever else it did, the version that is there stays.
    const bool idle = core.IsOtherVersion() && !core.moved && before;
    LogRecord selection = SelectionOf(core, target);
    if (idle) {
        selection.list = before->list;
        selection.others = before->others;
        selection.texts = before->texts;
    }
    const bool same = before && before->list == selection.list && before->texts == selection.texts;
    if (!log.CurrentRun() && (!before || (same && HasProgramEntry(core))))
        return;
    core.counts = CountWritten(log);
    RecordFilter unwanted;
    if (core.IsOtherVersion() && core.moved) {
        WantProgramEntry(core);
        unwanted = [&log, run = log.CurrentRun()](const LogRecord& record) {
            return record.run != run && !log.IsWanted(record);
        };
        TakeBack(core, Why::dropped, unwanted);
    }
    if (!idle)
        WriteProgramEntry(core, target);
    log.Commit(std::move(selection));
    for (const PutOffList::News& news : TidyUp(log, unwanted))
        core.Report({Severity::warning, news.file, news.reason, HRESULT_FROM_WIN32(ERROR_SUCCESS_REBOOT_REQUIRED)});
    if (!idle && log.AnythingStands() && !log.IsDraft())
        KeepSetup(core);
    if (core.product->maintenance || log.Standing(LogKind::texts).empty())
        DropIfIdle(log);
}

bool NeedsRestart(const Core& core)
{
    const auto& records = core.log->Records();
    return std::any_of(records.begin(), records.end(),
                       [&](const LogRecord& record) {
                           return record.waiting && record.run == core.log->CurrentRun() && !core.log->Undone(record);
                       }) ||
           PutOffList(core.log->File()).Waits();
}

std::vector<std::wstring> SelectedFeatures(const Core& core)
{
    std::vector<std::wstring> paths;
    ForEachFeature(core, [&](const Item& item) {
        if (item.selected)
            paths.push_back(item.Path());
    });
    return paths;
}

RunCounts CountWritten(const InstallLog& log)
{
    RunCounts counts;
    for (const LogRecord& record : log.Records()) {
        if (record.run != log.CurrentRun() || record.loose || record.found || log.Undone(record))
            continue;
        counts.files += record.kind == LogKind::file;
        counts.shortcuts += record.kind == LogKind::shell;
        const bool same = record.type == record.oldType && record.data == record.oldData;
        counts.values += record.kind == LogKind::value && record.type != -1 && !same;
    }
    return counts;
}

void DropIfIdle(InstallLog& log)
{
    if (!log.IsIdle() || log.IsDraft())
        return;
    log.Clear();
    RemoveTree(KeptSetupFolder(log.File()));
}

std::wstring KeptSetupFolder(const std::wstring& logFile) { return JoinPath(FolderOf(logFile), L"setup"); }

namespace {

// By the folder where nobody named another one, and by the kept product file.
bool IsForMachine(const std::wstring& logFile, const std::wstring& dataDir)
{
    if (SameText(dataDir, DefaultDataDir(true)))
        return true;
    try {
        return vh::engine::IsForMachine(KeptSetupFolder(logFile));
    } catch (const engine_error&) {
        return false;
    }
}

} // namespace

std::vector<InstalledProduct> InstalledProducts(const std::wstring& dataDir)
{
    std::vector<InstalledProduct> products;
    for (const Entry& entry : ListFolder(dataDir, L"{*}")) {
        InstalledProduct product;
        product.guid = entry.name;
        product.logFile = JoinPath(JoinPath(dataDir, entry.name), L"install.log");
        if (!FactsOf(product.logFile).file())
            continue;
        try {
            const InstallLog log(product.logFile, LogAccess::look);
            const LogRecord* selection = log.Newest(LogKind::features, {});
            product.name = TextIn(selection, name_text);
            product.version = TextIn(selection, version_text);
            product.target = TextIn(selection, target_text);
            product.source = TextIn(selection, source_text);
            product.unfinished = !log.UnfinishedRuns().empty();
            product.forMachine = IsForMachine(product.logFile, dataDir);
            products.push_back(std::move(product));
        } catch (const engine_error&) {
            // Not to be read now: nothing can be said of it.
        }
    }
    return products;
}

} // namespace vh::engine
