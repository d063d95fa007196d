#include "take_away.h"

#include "../services/registry_access.h"
#include "in_use.h"
#include "undo_step.h"

namespace vh::engine {

namespace {

LogRecord TakenRecord(Core& core, const std::wstring& path, long back)
{
    LogRecord record;
    record.kind = LogKind::taken;
    record.what = path;
    record.backup = core.log->NewAside(path, L"old");
    record.ref = back;
    return record;
}

void MoveAside(Core& core, LogRecord record)
{
    const std::wstring path = record.what;
    const std::wstring backup = record.backup;
    const std::wstring replacement = record.temp;
    const long id = core.log->Append(std::move(record));
    core.log->Flush();
    if (core.log->IsDraft() || MoveFileExW(LongPath(path).c_str(), LongPath(backup).c_str(), 0))
        return;
    const DWORD code = GetLastError();
    // A file that can't even be renamed goes behind the commit, unless something is to take its place now.
    if (replacement.empty() && FactsOf(path).file() && IsInUse(path, code)) {
        core.log->NoteWaiting(id);
        return;
    }
    core.log->MarkUndone(id);
    ThrowFileError(path, L"can't be removed", code);
}

// The record counts as undone, unless the run is rolled back.
void Forget(Core& core, const LogRecord& record)
{
    LogRecord forgotten;
    forgotten.kind = LogKind::forgotten;
    forgotten.ref = record.id;
    core.log->Append(std::move(forgotten));
}

RemovalOutcome TakeFileBack(Core& core, const LogRecord& file)
{
    const FileFacts there = FactsOf(file.what);
    if (!there.exists())
        return Forget(core, file), RemovalOutcome::absent;
    if (const auto keep = ReasonToKeep(file, there))
        return Forget(core, file), *keep;
    if (!file.original && file.oldData.empty() && core.log->OthersHave(file))
        return Forget(core, file), RemovalOutcome::kept_shared;
    LogRecord record = TakenRecord(core, file.what, file.id);
    if (file.oldData.empty()) {
        MoveAside(core, std::move(record));
        return RemovalOutcome::removed;
    }
    // The shortcut that stood there before comes back; its facts tell a rollback what to replace.
    const std::wstring draft = JoinPath(core.supportDir, L"restored");
    if (!WriteWhole(draft, FromHex(file.oldData)))
        ThrowFileError(file.what, L"can't be restored", GetLastError());
    const FileFacts before = FactsOf(draft);
    const std::wstring aside = record.temp = core.log->NewAside(file.what, L"new");
    record.size = before.size;
    record.time = before.time;
    MoveAside(core, std::move(record));
    if (core.log->IsDraft())
        return RemovalOutcome::restored;
    if (!CopyFileW(LongPath(draft).c_str(), LongPath(aside).c_str(), TRUE) ||
        !MoveFileExW(LongPath(aside).c_str(), LongPath(file.what).c_str(), 0)) {
        const DWORD code = GetLastError();
        RemoveFile(aside);
        ThrowFileError(file.what, L"can't be restored", code);
    }
    return RemovalOutcome::restored;
}

RemovalOutcome TakeValueBack(Core& core, const LogRecord& value)
{
    const RegistryPlace place = PlaceOf(value.what);
    const auto present = ReadValue(place, value.name);
    if (!present || *present != RawValue{static_cast<DWORD>(value.type), FromHex(value.data)})
        return Forget(core, value), present ? RemovalOutcome::kept_changed : RemovalOutcome::absent;
    if (core.log->Others().Wrote(value, value.type, value.data))
        return Forget(core, value), RemovalOutcome::kept_shared;
    LogRecord record;
    record.kind = LogKind::value;
    record.what = value.what;
    record.name = value.name;
    record.feature = value.feature;
    record.type = value.oldType;
    record.data = value.oldData;
    record.oldType = value.type;
    record.oldData = value.data;
    record.ref = value.id;
    core.log->Append(std::move(record));
    const bool taken = value.oldType == -1;
    if (core.log->IsDraft())
        return taken ? RemovalOutcome::removed : RemovalOutcome::restored;
    if (taken)
        DropValue(place, value.name);
    else
        PutValue(place, value.name, {static_cast<DWORD>(value.oldType), FromHex(value.oldData)});
    return taken ? RemovalOutcome::removed : RemovalOutcome::restored;
}

// `why` for what goes. Nothing for what is gone already.
std::optional<Decision> DecisionOf(RemovalOutcome outcome, Why why, const LogRecord& record)
{
    Decision made{Act::keep, why, KindWord(record.kind), NameOf(record), record.feature};
    switch (outcome) {
    case RemovalOutcome::removed:
        made.act = Act::remove;
        made.freed = record.size;
        return made;
    case RemovalOutcome::restored:
        made.act = Act::restore;
        return made;
    case RemovalOutcome::kept_permanent:
        made.why = Why::permanent;
        return made;
    case RemovalOutcome::kept_found:
        made.why = Why::found;
        return made;
    case RemovalOutcome::kept_shared:
        made.why = Why::shared;
        return made;
    case RemovalOutcome::kept_changed:
        made.why = Why::changed;
        return made;
    default:
        return std::nullopt;
    }
}

void TakeOneBack(Core& core, Why why, const LogRecord& record)
{
    try {
        const RemovalOutcome outcome = IsFile(record.kind) ? TakeFileBack(core, record) : TakeValueBack(core, record);
        if (const auto made = DecisionOf(outcome, why, record))
            core.log->Tell(*made);
    } catch (const engine_error& error) {
        core.Report({Severity::warning, record.what, L"stays: " + error.message().reason, E_FAIL});
    }
}

} // namespace

void TakeAway(Core& core, const std::wstring& path, long back, Why why)
{
    const LogRecord* record = core.log->Find(back);
    const wchar_t* kind = FactsOf(path).folder() ? L"folder" : KindWord(record ? record->kind : LogKind::shell);
    MoveAside(core, TakenRecord(core, path, back));
    core.log->Tell({Act::remove, why, kind, path});
}

void TakeBack(Core& core, Why why, const RecordFilter& wanted)
{
    std::set<std::wstring> seen;
    for (std::size_t i = core.log->Records().size(); i-- > 0;) {
        const LogRecord& record = core.log->Records()[i];
        const bool taken = IsFile(record.kind) || record.kind == LogKind::value;
        if (!taken || !IsForRemoval(record) || core.log->Undone(record))
            continue;
        // It never came to its place; what is there is an older record's.
        if (WaitsForItsPlace(record)) {
            if (wanted(record))
                Forget(core, record);
            continue;
        }
        if (IsFile(record.kind) && !seen.empty() && seen.contains(Upper(record.what))) {
            // An older record, also of another feature, of a file that has gone with the newest one.
            Forget(core, record);
            continue;
        }
        if (!wanted(record))
            continue;
        if (IsFile(record.kind))
            seen.insert(Upper(record.what));
        LogRecord settled = record;
        core.log->Others().SettleOld(settled);
        TakeOneBack(core, why, settled);
    }
}

} // namespace vh::engine
