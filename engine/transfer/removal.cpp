#include "removal.h"

#include <algorithm>

#include "../../scriptdata/folder_link.h"
#include "../machine_folder.h"
#include "../maintenance.h"
#include "../services/reboot_texts.h"
#include "../services/registry_access.h"
#include "undo_step.h"

namespace vh::engine {

namespace {

// Says something about a run, but there is nothing to undo on the machine.
bool IsStatement(LogKind kind)
{
    return kind == LogKind::set || kind == LogKind::texts || kind == LogKind::features || kind == LogKind::forgotten;
}

std::wstring ThingOf(const LogRecord& record) { return Upper(record.what + L'\n' + record.name); }

// A folder or key that holds one of them waits for the next attempt too.
bool HoldsOne(const std::wstring& folder, const std::vector<std::wstring>& paths)
{
    return std::any_of(paths.begin(), paths.end(), [&](const std::wstring& path) { return LiesIn(path, folder); });
}

// A rollback leaves alone what a later run has made its own.
bool IsTakenOver(const InstallLog& log, const LogRecord& record, const RecordFilter& wanted)
{
    if (!IsFile(record.kind))
        return false;
    const LogRecord* newest = log.Newest(record.kind, record.what);
    return newest && newest->id > record.id && !wanted(*newest);
}

// A file that never came to its place goes, with the copy of what is there.
bool DropWaiting(const LogRecord& record, PutOffList& list)
{
    list.Withdraw(record.what);
    for (const std::wstring& copy : {record.backup, record.waits})
        if (!copy.empty())
            RemoveFile(copy);
    return !FactsOf(record.temp).exists() || RemoveFile(record.temp);
}

// What a removal can't take away at once.
class Later {
public:
    explicit Later(InstallLog& log) : m_log(log) {}

    PutOffList& List() { return m_list ? *m_list : m_list.emplace(m_log.File()); }

    // `result` is that of a step that did not come to its end.
    UndoResult PutOff(const LogRecord& record, UndoResult result)
    {
        const std::size_t told = List().Told().size();
        if (!(IsFile(record.kind) ? RemoveFile(record, result) : List().RemoveFolder(record.what)))
            return result;
        const bool later = List().Told().size() > told;
        const bool back = result.outcome == RemovalOutcome::restored;
        return {back ? RemovalOutcome::restored : RemovalOutcome::removed,
                later ? List().Told().back().reason : std::wstring(), true, later};
    }

private:
    bool RemoveFile(const LogRecord& record, UndoResult& result)
    {
        if (!List().Remove(record.what, m_log.NewAside(record.what, L"old")))
            return false;
        // What stood there before comes back to a free place only.
        if (!FactsOf(record.what).exists())
            result = RemoveStep(record, false);
        else if (record.original || !record.oldData.empty())
            return false;
        return result.settled || FactsOf(record.what).exists();
    }

    InstallLog& m_log;
    std::optional<PutOffList> m_list;
};

bool CanBePutOff(const LogRecord& record, const UndoResult& result)
{
    return !result.settled && (record.kind == LogKind::folder || IsFile(record.kind));
}

// What another product has too stays for it; what was made in its place comes back all the same.
bool StaysForOthers(InstallLog& log, Undo how, const LogRecord& record)
{
    if (record.kind == LogKind::key)
        return log.OthersHave(record) && KeyThere(PlaceOf(record.what));
    if (record.kind == LogKind::value) {
        const auto present = how == Undo::removal && log.OthersHave(record)
                                 ? ReadValue(PlaceOf(record.what), record.name)
                                 : std::nullopt;
        return present && log.Others().Wrote(record, static_cast<long>(present->type), ToHex(present->bytes));
    }
    if (record.kind == LogKind::shell && how == Undo::removal && !record.oldData.empty())
        return false;
    return record.backup.empty() && !record.original && (how == Undo::removal || record.temp.empty()) &&
           FactsOf(record.what).exists() && log.OthersHave(record);
}

// Another product's file that waits to come back, when that has gone, or has put another in its place.
bool IsNobodys(InstallLog& log, const LogRecord& record)
{
    return record.shared && (!log.OthersHave(record) || ReasonToKeep(record, FactsOf(record.what)));
}

UndoResult Removed(InstallLog& log, const LogRecord& record, bool superseded)
{
    UndoResult result = RemoveStep(record, superseded);
    if (result.outcome == RemovalOutcome::restored)
        log.Others().SettleTime(record);
    return result;
}

// A draft has nothing to roll back.
UndoResult StepOf(InstallLog& log, Undo how, const LogRecord& record, bool superseded)
{
    if (StaysForOthers(log, how, record))
        return {how == Undo::rollback ? RemovalOutcome::absent : RemovalOutcome::kept_shared};
    if (!log.IsDraft())
        return how == Undo::rollback ? RollBackStep(record) : Removed(log, record, superseded);
    if (how == Undo::rollback)
        return {RemovalOutcome::absent};
    UndoResult result = PlannedStep(log, record, superseded);
    if (result.outcome == RemovalOutcome::removed)
        log.Take(NameOf(record));
    else if (result.outcome == RemovalOutcome::restored)
        log.GiveBack(NameOf(record), record);
    return result;
}

} // namespace

std::vector<Removal> UndoRecords(InstallLog& log, Undo how, const RecordFilter& wanted, const RemovalNews& onRemoval)
{
    std::vector<Removal> results;
    std::set<std::wstring> seen;
    std::vector<std::wstring> failed;
    Later later(log);
    for (std::size_t i = log.Records().size(); i-- > 0;) {
        const LogRecord& recorded = log.Records()[i];
        if (log.Undone(recorded) || !wanted(recorded))
            continue;
        LogRecord record = recorded;
        // Behind the commit nothing comes back from a backup that is only waiting to go.
        if (!record.original && how == Undo::removal && !log.UnfinishedRuns().contains(record.run))
            record.backup.clear();
        if (how == Undo::removal ? !IsForRemoval(record) : !IsUndoable(record.kind)) {
            if (how == Undo::rollback && IsStatement(record.kind))
                log.MarkUndone(record.id);
            continue;
        }
        if (how == Undo::rollback && IsTakenOver(log, record, wanted))
            continue;
        if (how == Undo::removal && WaitsForItsPlace(record)) {
            if (log.IsDraft() || DropWaiting(record, later.List()))
                log.MarkUndone(record.id);
            continue;
        }
        if (how == Undo::removal && IsNobodys(log, record)) {
            if (!log.IsDraft())
                RemoveFile(record.waits);
            record.original = false;
        }
        if (how == Undo::removal)
            log.Others().SettleOld(record);
        const bool first = seen.insert(ThingOf(record)).second;
        const wchar_t* kind = KindWord(record);
        UndoResult result = StepOf(log, how, record, !first);
        if (how == Undo::removal && first && CanBePutOff(record, result) && !log.IsDraft())
            result = later.PutOff(record, std::move(result));
        if (result.outcome == RemovalOutcome::failed)
            failed.push_back(record.what);
        // A folder that a failed step still needs belongs to the run until that step is done.
        if (result.outcome == RemovalOutcome::kept_not_empty && HoldsOne(record.what, failed))
            result.settled = false;
        if (result.settled)
            log.MarkUndone(record.id);
        // Of several records of one thing, people hear of the newest.
        if (first || result.outcome == RemovalOutcome::failed) {
            const uint64_t freed = result.outcome == RemovalOutcome::removed ? record.size : 0;
            results.push_back({result.outcome, kind, NameOf(record), std::move(result.reason), result.later, freed});
            if (onRemoval)
                onRemoval(results.back());
        }
    }
    return results;
}

std::size_t CountDone(const std::vector<Removal>& removals)
{
    return static_cast<std::size_t>(std::count_if(removals.begin(), removals.end(), [](const Removal& removal) {
        return removal.outcome == RemovalOutcome::removed || removal.outcome == RemovalOutcome::restored;
    }));
}

bool AnyFailed(const std::vector<Removal>& removals)
{
    return std::any_of(removals.begin(), removals.end(),
                       [](const Removal& removal) { return removal.outcome == RemovalOutcome::failed; });
}

std::vector<Removal> RecoverRuns(InstallLog& log)
{
    std::vector<Removal> results;
    const std::set<long> unfinished = log.UnfinishedRuns();
    if (!unfinished.empty()) {
        results =
            UndoRecords(log, Undo::rollback, [&](const LogRecord& record) { return unfinished.contains(record.run); });
        if (!AnyFailed(results))
            for (const long run : unfinished)
                log.TryFinish(run, LogKind::ended);
    }
    TidyUp(log);
    return results;
}

namespace {

// What a committed run took away and no longer needs. False while something can't go.
bool DropBackup(const LogRecord& record)
{
    const FileFacts waiting = FactsOf(record.backup);
    if (!waiting.exists())
        return true;
    if (!waiting.folder())
        return RemoveFile(record.backup);
    // A folder of shortcuts, with what the run took out of it before, or a link; whatever else got into it stays.
    if (LeadsElsewhere(waiting.attributes))
        return RemoveLink(LongPath(record.backup).c_str());
    for (const Entry& entry : ListFolder(record.backup)) {
        const bool aside = IsAsideName(entry.name);
        if (entry.facts.folder() && aside)
            RemoveTree(JoinPath(record.backup, entry.name));
        else if (aside || IsShortcutName(entry.name))
            RemoveFile(JoinPath(record.backup, entry.name));
    }
    return RemoveDirectoryW(LongPath(record.backup).c_str()) != 0;
}

// Folders and keys of features that are no longer selected, or that nobody wants, as far as nothing is in them.
void DropEmptyPlaces(InstallLog& log, const RecordFilter& unwanted)
{
    std::set<std::wstring> selected;
    const LogRecord* selection = log.Newest(LogKind::features, {});
    if (selection)
        for (const std::wstring& path : selection->list)
            selected.insert(Upper(path));
    const auto unselected = [&](const LogRecord& record) {
        return selection && !record.feature.empty() && !selected.contains(Upper(record.feature));
    };
    for (std::size_t i = log.Records().size(); i-- > 0;) {
        const LogRecord& record = log.Records()[i];
        if ((record.kind != LogKind::folder && record.kind != LogKind::key) || !IsForRemoval(record) ||
            log.Undone(record) || (!unselected(record) && !(unwanted && unwanted(record))))
            continue;
        const UndoResult result = StepOf(log, Undo::removal, record, false);
        if (result.settled)
            log.MarkUndone(record.id);
        if (result.outcome == RemovalOutcome::removed)
            log.Tell({Act::remove, unselected(record) ? Why::unselected : Why::dropped, KindWord(record.kind),
                      record.what, record.feature});
    }
}

} // namespace

namespace {

// Behind the commit; false for a step that has to be tried again.
bool FinishStep(InstallLog& log, const LogRecord& record, PutOffList& list)
{
    // The original of a file that is the product's no more comes back; those of others wait for the removal.
    const bool over = record.kind == LogKind::taken || record.kind == LogKind::forgotten;
    const LogRecord* of = over && record.ref ? log.Find(record.ref) : nullptr;
    if (of && WaitsForItsPlace(*of))
        return DropWaiting(*of, list);
    if (of && IsNobodys(log, *of))
        RemoveFile(of->waits);
    const bool settled = !(of && of->original) || SettleOriginal(*of);
    const bool dropped =
        record.backup.empty() ||
        (record.original ? StashOriginal(record) || (FactsOf(record.waits).file() && list.Delete(record))
                         : DropBackup(record) || (FactsOf(record.backup).file() && list.Delete(record)));
    if (WaitsForItsPlace(record))
        return list.Exchange(record) && dropped && settled;
    if (record.waiting && record.kind == LogKind::taken)
        return list.Remove(record.what, record.backup) && settled;
    if (IsFile(record.kind) || record.kind == LogKind::folder)
        list.Withdraw(record.what, false);
    return dropped && settled;
}

} // namespace

std::vector<PutOffList::News> TidyUp(InstallLog& log, const RecordFilter& unwanted)
{
    const std::set<long> untidy = log.UntidyRuns();
    if (untidy.empty())
        return {};
    PutOffList list(log.File());
    std::set<long> waiting;
    for (std::size_t i = 0; i < log.Records().size() && !log.IsDraft(); ++i) {
        const LogRecord& record = log.Records()[i];
        if (untidy.contains(record.run) && !log.Undone(record) && !FinishStep(log, record, list))
            waiting.insert(record.run);
    }
    DropEmptyPlaces(log, unwanted);
    for (const long run : untidy)
        if (!waiting.contains(run))
            log.TryFinish(run, LogKind::clean);
    return list.Told();
}

namespace {

bool IsAmongFailed(const std::vector<Removal>& removals, const std::wstring& what)
{
    return std::any_of(removals.begin(), removals.end(), [&](const Removal& removal) {
        return removal.outcome == RemovalOutcome::failed && removal.what == what;
    });
}

} // namespace

std::optional<Message> CarryOutPutOff(const std::wstring& dataDir)
{
    // Of no product: nobody's setup is running here.
    const std::wstring log = JoinPath(JoinPath(dataDir, L"-"), L"install.log");
    RequireTrusted(log, DefaultDataDir(true));
    return PutOffList(log).CarryOut();
}

std::size_t LeftForRemoval(const std::wstring& logFile)
{
    const InstallLog log(logFile);
    std::set<std::wstring> things;
    for (const LogRecord& record : log.Records())
        if (IsForRemoval(record) && !log.Undone(record))
            things.insert(ThingOf(record));
    return things.size();
}

namespace {

void RequireLog(const std::wstring& logFile)
{
    if (!FactsOf(logFile).file())
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), logFile,
                           L"nothing is installed: there is no install log");
}

} // namespace

std::vector<Removal> PlanRemoval(const std::wstring& logFile)
{
    RequireLog(logFile);
    InstallLog log(logFile, LogAccess::draft);
    auto results = UndoRecords(log, Undo::removal, [](const LogRecord&) { return true; });
    for (const long line : log.DamagedLines())
        results.push_back({RemovalOutcome::unreadable, L"line", logFile + L": " + Number(line), {}});
    return results;
}

std::vector<Removal> Uninstall(const std::wstring& logFile, const RemovalNews& onRemoval)
{
    RequireLog(logFile);
    InstallLog log(logFile);
    const auto damage = PutOffList(logFile).CarryOut();
    const std::vector<long> damaged = log.DamagedLines();
    RecoverRuns(log);
    auto results = UndoRecords(
        log, Undo::removal, [](const LogRecord&) { return true; }, onRemoval);
    const auto tell = [&](Removal removal) {
        results.push_back(std::move(removal));
        if (onRemoval)
            onRemoval(results.back());
    };
    if (damage)
        tell({RemovalOutcome::unreadable, L"list", damage->file, damage->reason});
    for (const long line : damaged)
        tell({RemovalOutcome::unreadable, L"line", logFile + L": " + Number(line), {}});
    // What a killed run took away and no removal knows of gets a second chance, and stays recorded without it.
    if (!log.UnfinishedRuns().empty())
        for (Removal& left : RecoverRuns(log))
            if (left.outcome == RemovalOutcome::failed && !IsAmongFailed(results, left.what))
                tell(std::move(left));
    // Folders and keys that others use are all that may be left when nothing failed.
    if (!AnyFailed(results)) {
        log.Clear();
        RemoveTree(KeptSetupFolder(logFile));
        WriteRebootTexts(logFile, {});
    }
    return results;
}

} // namespace vh::engine
