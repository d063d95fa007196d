#include "removal.h"

#include <algorithm>
#include <set>

#include "../services/registry_access.h"

namespace vh::engine {

namespace {

Removal Result(RemovalOutcome outcome, const wchar_t* kind, std::wstring what, std::wstring reason = {})
{
    return {outcome, kind, std::move(what), std::move(reason)};
}

bool IsAsInstalled(const LogRecord& record, const FileFacts& facts)
{
    return facts.file() && facts.size == record.size && facts.time == record.time;
}

// What stood before the product: the backup while the run can still be undone; a shortcut also later, from the log.
bool PutBackupBack(const LogRecord& record)
{
    if (!record.oldData.empty() && !FactsOf(record.backup).file())
        return WriteWhole(record.what, FromHex(record.oldData));
    return !record.backup.empty() && FactsOf(record.backup).file() &&
           MoveFileExW(LongPath(record.backup).c_str(), LongPath(record.what).c_str(), 0);
}

Removal UndoFile(const LogRecord& record, Undo how, bool superseded)
{
    // A temporary file is left by an unfinished run only, a backup also by one that ended a moment too early.
    if (how == Undo::rollback)
        RemoveFile(record.temp);
    else if (!record.backup.empty())
        RemoveFile(record.backup);
    const FileFacts facts = FactsOf(record.what);
    const auto result = [&](RemovalOutcome outcome, std::wstring reason = {}) {
        return Result(outcome, record.kind == LogKind::shell ? L"shell" : L"file", record.what, std::move(reason));
    };
    if (!facts.exists())
        // A shortcut that the user took away stays away.
        return result((how == Undo::rollback || superseded) && PutBackupBack(record) ? RemovalOutcome::restored
                                                                                     : RemovalOutcome::absent);
    const bool ours = IsAsInstalled(record, facts);
    // A backup shows that the new file did get its name; without one, what stands there may be the old file.
    if (how == Undo::rollback && !ours && !FactsOf(record.backup).file())
        return result(RemovalOutcome::absent);
    if (how == Undo::removal && record.permanent)
        return result(RemovalOutcome::kept_permanent);
    if (!ours)
        return result(superseded ? RemovalOutcome::absent : RemovalOutcome::kept_changed);
    if (!RemoveFile(record.what))
        return result(RemovalOutcome::failed, SystemText(GetLastError()));
    return result(PutBackupBack(record) ? RemovalOutcome::restored : RemovalOutcome::removed);
}

Removal UndoFolder(const LogRecord& record)
{
    if (RemoveDirectoryW(LongPath(record.what).c_str()))
        return Result(RemovalOutcome::removed, L"folder", record.what);
    switch (const DWORD code = GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return Result(RemovalOutcome::absent, L"folder", record.what);
    case ERROR_DIR_NOT_EMPTY:
        return Result(RemovalOutcome::kept_not_empty, L"folder", record.what);
    default:
        return Result(RemovalOutcome::failed, L"folder", record.what, SystemText(code));
    }
}

Removal UndoValue(const LogRecord& record)
{
    const RegistryPlace place = PlaceOf(record.what);
    const std::wstring what = record.what + L'\\' + record.name;
    const auto present = ReadValue(place, record.name);
    if (!present)
        return Result(RemovalOutcome::absent, L"value", what);
    if (*present != RawValue{static_cast<DWORD>(record.type), FromHex(record.data)})
        return Result(RemovalOutcome::kept_changed, L"value", what);
    if (record.oldType != -1) {
        WriteValue(nullptr, place, record.name, {static_cast<DWORD>(record.oldType), FromHex(record.oldData)}, {});
        return Result(RemovalOutcome::restored, L"value", what);
    }
    unique_key key;
    LSTATUS code = OpenKey(place, KEY_SET_VALUE, key);
    if (code == ERROR_SUCCESS)
        code = RegDeleteValueW(key.get(), record.name.c_str());
    if (code != ERROR_SUCCESS)
        return Result(RemovalOutcome::failed, L"value", what, SystemText(static_cast<DWORD>(code)));
    return Result(RemovalOutcome::removed, L"value", what);
}

Removal UndoKey(const LogRecord& record)
{
    const RegistryPlace place = PlaceOf(record.what);
    unique_key key = OpenKey(place, KEY_READ);
    if (!key)
        return Result(RemovalOutcome::absent, L"key", record.what);
    DWORD keys = 0, values = 0;
    RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                     nullptr);
    if (keys || values)
        return Result(RemovalOutcome::kept_not_empty, L"key", record.what);
    key.reset();
    const LSTATUS code = RegDeleteKeyExW(place.root, place.key.c_str(), place.view, 0);
    if (code != ERROR_SUCCESS)
        return Result(RemovalOutcome::failed, L"key", record.what, SystemText(static_cast<DWORD>(code)));
    return Result(RemovalOutcome::removed, L"key", record.what);
}

Removal UndoOne(const LogRecord& record, Undo how, bool superseded)
{
    try {
        switch (record.kind) {
        case LogKind::file:
        case LogKind::shell:
            return UndoFile(record, how, superseded);
        case LogKind::folder:
            return UndoFolder(record);
        case LogKind::value:
            return UndoValue(record);
        case LogKind::key:
            return UndoKey(record);
        default:
            return Result(RemovalOutcome::absent, L"", record.what);
        }
    } catch (const engine_error& error) {
        return Result(RemovalOutcome::failed, L"", record.what, error.message().reason);
    }
}

bool IsUndoable(LogKind kind)
{
    return kind == LogKind::folder || kind == LogKind::file || kind == LogKind::key || kind == LogKind::value ||
           kind == LogKind::shell;
}

// Says something about a run, but there is nothing to undo on the machine.
bool IsStatement(LogKind kind) { return kind == LogKind::set || kind == LogKind::texts || kind == LogKind::features; }

// A folder or key stays recorded while something in it waits for the next attempt.
bool HoldsOne(const std::wstring& folder, const std::vector<std::wstring>& paths)
{
    return std::any_of(paths.begin(), paths.end(), [&](const std::wstring& path) { return LiesIn(path, folder); });
}

} // namespace

std::vector<Removal> UndoRecords(InstallLog& log, Undo how, const std::function<bool(const LogRecord&)>& wanted,
                                 const std::function<void(const Removal&)>& onRemoval)
{
    std::vector<Removal> results;
    std::set<std::wstring> seen;
    std::vector<std::wstring> failed;
    const std::size_t count = log.Records().size();
    for (std::size_t i = count; i-- > 0;) {
        // A copy: marking adds records and may move them.
        const LogRecord record = log.Records()[i];
        if (log.Undone(record) || !wanted(record))
            continue;
        if (!IsUndoable(record.kind)) {
            if (how == Undo::rollback && IsStatement(record.kind))
                log.MarkUndone(record.id);
            continue;
        }
        const bool first = seen.insert(Upper(record.what + L'\n' + record.name)).second;
        Removal result = UndoOne(record, how, !first);
        if (result.outcome == RemovalOutcome::failed)
            failed.push_back(record.what);
        else if (result.outcome != RemovalOutcome::kept_not_empty || !HoldsOne(record.what, failed))
            log.MarkUndone(record.id);
        // Of several records of one thing, people hear of the newest.
        if (first) {
            if (onRemoval)
                onRemoval(result);
            results.push_back(std::move(result));
        }
    }
    return results;
}

std::vector<Removal> Uninstall(const std::wstring& logFile, const std::function<void(const Removal&)>& onRemoval)
{
    if (!FactsOf(logFile).file())
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), logFile, L"there is no install log");
    InstallLog log(logFile);
    log.Claim();
    if (const long unfinished = log.UnfinishedRun())
        UndoRecords(log, Undo::rollback, [&](const LogRecord& record) { return record.run == unfinished; });
    auto results = UndoRecords(
        log, Undo::removal, [](const LogRecord&) { return true; }, onRemoval);
    if (log.AnythingStands())
        log.Close();
    else
        log.Delete();
    return results;
}

} // namespace vh::engine
