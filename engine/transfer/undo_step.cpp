#include "undo_step.h"

#include <optional>

#include "../services/registry_access.h"

namespace vh::engine {

namespace {

UndoResult Failed(DWORD code) { return {RemovalOutcome::failed, SystemText(code), false}; }

bool IsAsInstalled(const LogRecord& record, const FileFacts& facts)
{
    return facts.file() && facts.size == record.size && facts.time == record.time;
}

// Also from one drive to another, and then by way of `part`: at every moment one of the names has the whole file.
bool MoveWhole(const std::wstring& from, const std::wstring& to, const std::wstring& part)
{
    if (MoveOver(from, to))
        return true;
    if (GetLastError() != ERROR_NOT_SAME_DEVICE)
        return false;
    return CopyFileW(LongPath(from).c_str(), LongPath(part).c_str(), FALSE) && MoveOver(part, to) && RemoveFile(from);
}

// Where the file lies that stood there before; empty when there is none.
std::wstring OriginalOf(const LogRecord& record)
{
    if (record.original && FactsOf(record.waits).file())
        return record.waits;
    return !record.backup.empty() && FactsOf(record.backup).file() ? record.backup : std::wstring();
}

UndoResult RemoveFileStep(const std::wstring& path)
{
    return RemoveFile(path) ? UndoResult{RemovalOutcome::removed} : Failed(GetLastError());
}

UndoResult RollBackFile(const LogRecord& record)
{
    if (!record.temp.empty())
        RemoveFile(record.temp);
    // What is in use kept its place, the backup is a copy of it.
    if (record.waiting) {
        RemoveFile(record.backup);
        return {RemovalOutcome::absent};
    }
    if (record.found)
        return {RemovalOutcome::absent};
    const FileFacts there = FactsOf(record.what);
    if (!record.backup.empty()) {
        if (FactsOf(record.backup).file()) {
            // Under the name that it had, which may have been written otherwise.
            const bool renamed = SameText(record.data, FileNameOf(record.what));
            const std::wstring name = renamed ? JoinPath(FolderOf(record.what), record.data) : record.what;
            const bool free = !renamed || !there.exists() || RemoveFile(record.what);
            return free && MoveOver(record.backup, name) ? UndoResult{RemovalOutcome::restored}
                                                         : Failed(GetLastError());
        }
        // The names were not exchanged, or are back already. What stands there as installed can't be undone any
        // more: it stays the product's.
        return {RemovalOutcome::absent, {}, !IsAsInstalled(record, there)};
    }
    if (!there.exists())
        return {RemovalOutcome::absent};
    return IsAsInstalled(record, there) ? RemoveFileStep(record.what) : UndoResult{RemovalOutcome::kept_changed};
}

// A file, shortcut or folder comes back from where it waits.
UndoResult RollBackTaken(const LogRecord& record)
{
    if (!record.temp.empty())
        RemoveFile(record.temp);
    const FileFacts waiting = FactsOf(record.backup);
    if (!waiting.exists())
        return {RemovalOutcome::absent};
    const FileFacts there = FactsOf(record.what);
    // What was put in its place gives way; what somebody else put there does not.
    if (there.exists() && (waiting.folder() || !IsAsInstalled(record, there)))
        return {RemovalOutcome::failed, L"something else stands there now", false};
    return MoveOver(record.backup, record.what) ? UndoResult{RemovalOutcome::restored} : Failed(GetLastError());
}

// A step that is done, or only looked at.
class Hand {
public:
    explicit Hand(const InstallLog* draft) : m_draft(draft) {}

    bool Looks() const { return m_draft; }
    bool Gone(const std::wstring& what) const { return m_draft && m_draft->Takes(what); }
    const LogRecord* Back(const std::wstring& what) const { return m_draft ? m_draft->GivesBack(what) : nullptr; }
    template <class Step>
    bool Do(Step&& step) const
    {
        return Looks() || step();
    }

private:
    const InstallLog* m_draft; // null for steps that are done
};

// The product's own file goes all the same.
UndoResult Lost(const LogRecord& record)
{
    return {RemovalOutcome::failed, L"what stood here before can't come back: " + record.waits + L" is gone"};
}

UndoResult RemoveFileRecord(const LogRecord& record, bool superseded, const Hand& hand)
{
    const FileFacts there = FactsOf(record.what);
    const std::wstring original = OriginalOf(record);
    if (superseded) {
        // That of the first installation, or one that a failed rollback left.
        if (original.empty() && record.original && !there.exists() && !hand.Looks())
            return Lost(record);
        if (original.empty() || (there.exists() && !record.original))
            return {RemovalOutcome::absent};
        return hand.Do([&] { return SettleOriginal(record); }) ? UndoResult{RemovalOutcome::restored}
                                                               : Failed(GetLastError());
    }
    if (!there.exists() && original.empty())
        return record.original ? Lost(record) : UndoResult{RemovalOutcome::absent};
    if (const auto keep = there.exists() ? ReasonToKeep(record, there) : std::nullopt) {
        if (record.original && !hand.Do([&] { return SettleOriginal(record); }))
            return Failed(GetLastError());
        return {*keep};
    }
    if (!original.empty())
        return hand.Do([&] { return MoveWhole(original, record.what, record.temp); })
                   ? UndoResult{RemovalOutcome::restored}
                   : Failed(GetLastError());
    if (record.original) {
        const bool gone = hand.Do([&] { return RemoveFile(record.what); });
        return gone ? Lost(record) : Failed(GetLastError());
    }
    if (record.oldData.empty())
        return hand.Looks() ? UndoResult{RemovalOutcome::removed} : RemoveFileStep(record.what);
    return hand.Do([&] { return ReplaceContent(record.what, FromHex(record.oldData), record.temp); })
               ? UndoResult{RemovalOutcome::restored}
               : Failed(GetLastError());
}

UndoResult LookAtFolder(const LogRecord& record, const Hand& hand)
{
    if (!FactsOf(record.what).folder())
        return {RemovalOutcome::absent};
    for (const Entry& entry : ListFolder(record.what))
        if (!hand.Gone(JoinPath(record.what, entry.name)))
            return {RemovalOutcome::kept_not_empty, {}, false};
    return {RemovalOutcome::removed};
}

UndoResult UndoFolder(const LogRecord& record, const Hand& hand)
{
    if (hand.Looks())
        return LookAtFolder(record, hand);
    if (RemoveDirectoryW(LongPath(record.what).c_str()))
        return {RemovalOutcome::removed};
    switch (const DWORD code = GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY: // a file has the place
        return {RemovalOutcome::absent};
    case ERROR_DIR_NOT_EMPTY:
        return {RemovalOutcome::kept_not_empty, {}, false};
    default:
        return Failed(code);
    }
}

std::optional<RawValue> ValueOf(long type, const std::wstring& hex)
{
    return type == -1 ? std::nullopt : std::optional(RawValue{static_cast<DWORD>(type), FromHex(hex)});
}

// Back from what the record wrote to what it found; other values stay.
UndoResult UndoValue(const LogRecord& record, const Hand& hand)
{
    const RegistryPlace place = PlaceOf(record.what);
    const auto written = ValueOf(record.type, record.data);
    const auto old = ValueOf(record.oldType, record.oldData);
    const LogRecord* back = hand.Back(NameOf(record));
    const auto present = back ? ValueOf(back->oldType, back->oldData) : ReadValue(place, record.name);
    if (present == old)
        return {RemovalOutcome::absent};
    if (present != written)
        return {present ? RemovalOutcome::kept_changed : RemovalOutcome::absent};
    if (old && !hand.Looks())
        PutValue(place, record.name, *old);
    else if (!hand.Looks())
        DropValue(place, record.name);
    return {old ? RemovalOutcome::restored : RemovalOutcome::removed};
}

UndoResult LookAtKey(const LogRecord& record, const RegistryPlace& place, const Hand& hand)
{
    for (const KeyNames kind : {KeyNames::keys, KeyNames::values}) {
        std::vector<std::wstring> names;
        const LSTATUS code = NamesIn(place, kind, names);
        if (code == ERROR_FILE_NOT_FOUND)
            return {RemovalOutcome::absent};
        if (code != ERROR_SUCCESS)
            return Failed(static_cast<DWORD>(code));
        for (const std::wstring& name : names)
            if (!hand.Gone(record.what + L'\\' + name))
                return {RemovalOutcome::kept_not_empty, {}, false};
    }
    return {RemovalOutcome::removed};
}

UndoResult UndoKey(const LogRecord& record, const Hand& hand)
{
    const RegistryPlace place = PlaceOf(record.what);
    if (hand.Looks())
        return LookAtKey(record, place, hand);
    unique_key key;
    LSTATUS code = OpenKey(place, KEY_READ, key);
    if (code == ERROR_FILE_NOT_FOUND)
        return {RemovalOutcome::absent};
    DWORD keys = 0, values = 0;
    if (code == ERROR_SUCCESS)
        code = RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                                nullptr, nullptr, nullptr);
    if (code == ERROR_SUCCESS && (keys || values))
        return {RemovalOutcome::kept_not_empty, {}, false};
    key.reset();
    if (code == ERROR_SUCCESS)
        code = RegDeleteKeyExW(place.root, place.key.c_str(), place.view, 0);
    return code == ERROR_SUCCESS ? UndoResult{RemovalOutcome::removed} : Failed(static_cast<DWORD>(code));
}

UndoResult RollBackUnkey(const LogRecord& record)
{
    const RegistryPlace place = PlaceOf(record.what);
    if (OpenKey(place, KEY_QUERY_VALUE))
        return {RemovalOutcome::absent};
    CreateOneKey(place, record.data);
    return {RemovalOutcome::restored};
}

template <class Step>
UndoResult Guarded(Step&& step)
{
    try {
        return step();
    } catch (const engine_error& error) {
        return {RemovalOutcome::failed, error.message().reason, false};
    }
}

} // namespace

const wchar_t* KindWord(LogKind kind)
{
    switch (kind) {
    case LogKind::file:
        return L"file";
    case LogKind::folder:
        return L"folder";
    case LogKind::key:
    case LogKind::unkey:
        return L"key";
    case LogKind::value:
        return L"value";
    default:
        return L"shortcut";
    }
}

const wchar_t* KindWord(const LogRecord& record)
{
    if (record.kind == LogKind::taken)
        return FactsOf(record.what).folder() ? L"folder" : L"file";
    return KindWord(record.kind);
}

std::wstring NameOf(const LogRecord& record)
{
    return record.kind == LogKind::value ? record.what + L'\\' + record.name : record.what;
}

std::optional<RemovalOutcome> ReasonToKeep(const LogRecord& record, const FileFacts& there)
{
    if (record.permanent)
        return RemovalOutcome::kept_permanent;
    if (record.found)
        return RemovalOutcome::kept_found;
    if (!IsAsInstalled(record, there))
        return RemovalOutcome::kept_changed;
    return std::nullopt;
}

bool StashOriginal(const LogRecord& record)
{
    if (!FactsOf(record.backup).file())
        return true;
    try {
        MakeFolders(FolderOf(record.waits));
    } catch (const engine_error&) {
        return false;
    }
    return MoveWhole(record.backup, record.waits, record.waits + L".part");
}

bool SettleOriginal(const LogRecord& record)
{
    const std::wstring original = OriginalOf(record);
    if (original.empty())
        return true;
    std::wstring name = record.what;
    for (int number = 1; FactsOf(name).exists(); ++number)
        name = record.what + L".original" + (number > 1 ? Number(number) : std::wstring());
    return MoveWhole(original, name, record.temp);
}

bool ReplaceContent(const std::wstring& path, std::string_view content, const std::wstring& aside)
{
    RemoveFile(aside);
    if (WriteWhole(aside, content) && MoveOver(aside, path))
        return true;
    const DWORD code = GetLastError();
    RemoveFile(aside);
    SetLastError(code);
    return false;
}

UndoResult RollBackStep(const LogRecord& record)
{
    return Guarded([&]() -> UndoResult {
        switch (record.kind) {
        case LogKind::file:
        case LogKind::shell:
            return RollBackFile(record);
        case LogKind::taken:
            return RollBackTaken(record);
        case LogKind::folder: {
            UndoResult result = UndoFolder(record, Hand(nullptr));
            // Somebody put something in: the folder stays, and it is nobody's business any more.
            result.settled |= result.outcome == RemovalOutcome::kept_not_empty;
            return result;
        }
        case LogKind::value:
            return UndoValue(record, Hand(nullptr));
        case LogKind::key: {
            UndoResult result = UndoKey(record, Hand(nullptr));
            result.settled |= result.outcome == RemovalOutcome::kept_not_empty;
            return result;
        }
        case LogKind::unkey:
            return RollBackUnkey(record);
        default:
            return {};
        }
    });
}

namespace {

UndoResult RemoveBy(const Hand& hand, const LogRecord& record, bool superseded)
{
    return Guarded([&]() -> UndoResult {
        switch (record.kind) {
        case LogKind::file:
        case LogKind::shell:
            return RemoveFileRecord(record, superseded, hand);
        case LogKind::folder:
            return UndoFolder(record, hand);
        case LogKind::value:
            return UndoValue(record, hand);
        case LogKind::key:
            return UndoKey(record, hand);
        default:
            return {};
        }
    });
}

} // namespace

UndoResult RemoveStep(const LogRecord& record, bool superseded) { return RemoveBy(Hand(nullptr), record, superseded); }

UndoResult PlannedStep(const InstallLog& draft, const LogRecord& record, bool superseded)
{
    return RemoveBy(Hand(&draft), record, superseded);
}

} // namespace vh::engine
