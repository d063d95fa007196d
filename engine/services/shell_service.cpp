#include "shell_service.h"

#include <shellapi.h>

#include "../transfer/file_decision.h"
#include "../transfer/file_writer.h"
#include "../transfer/logged_folders.h"
#include "../transfer/take_away.h"

namespace vh::engine {

namespace {

constexpr std::wstring_view extension = L".lnk";
// Bytes; real ones have a few thousand.
constexpr uint64_t largest_shortcut = 1 << 20;
constexpr HRESULT not_found = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);

// Names in a folder: those of its folders, or those of its shortcuts without extension.
std::vector<std::wstring> NamesIn(const std::wstring& folder, bool folders)
{
    std::vector<std::wstring> names;
    for (const Entry& entry : ListFolder(folder)) {
        if (folders && entry.facts.folder())
            names.push_back(entry.name);
        else if (!folders && entry.facts.file() && IsShortcutName(entry.name))
            names.push_back(entry.name.substr(0, entry.name.size() - extension.size()));
    }
    return names;
}

// 0, or why the system would not delete the file or folder now: it is in use, or the rights are missing.
DWORD WhyItStays(const std::wstring& path)
{
    if (path.size() <= DriveOf(path).size() + 1)
        return ERROR_ACCESS_DENIED;
    const unique_file entry(CreateFileW(LongPath(path).c_str(), DELETE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    return entry ? 0 : GetLastError();
}

// Throws unless the folder holds nothing but shortcuts and can go with them.
void CheckRemovable(const std::wstring& folder)
{
    std::vector<std::wstring> shortcuts;
    for (const Entry& entry : ListFolder(folder)) {
        // What the run took away and may bring back goes along.
        if (IsAsideName(entry.name))
            continue;
        if (!entry.facts.file() || !IsShortcutName(entry.name))
            ThrowFileError(folder, L"can't remove the folder", ERROR_DIR_NOT_EMPTY);
        shortcuts.push_back(JoinPath(folder, entry.name));
    }
    if (const DWORD code = WhyItStays(folder))
        ThrowFileError(folder, L"can't remove the folder", code);
    for (const std::wstring& shortcut : shortcuts)
        if (const DWORD code = WhyItStays(shortcut))
            ThrowFileError(shortcut, L"can't remove the shortcut", code);
}

std::wstring TextOf(const VARIANT& value)
{
    variant copy;
    if (FAILED(VariantCopyInd(copy.put(), const_cast<VARIANT*>(&value))))
        return {};
    return std::wstring(copy.text());
}

// A file in the support folder, which nobody else reads; it goes with this object.
class DraftFile {
public:
    explicit DraftFile(const Core& core)
        : m_path(JoinPath(core.supportDir, L"draft" + Number(core.log->LastId()) + std::wstring(extension)))
    {
        RemoveFile(m_path);
    }
    ~DraftFile() { RemoveFile(m_path); }
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    const std::wstring& path() const { return m_path; }

private:
    std::wstring m_path;
};

// A shortcut that the product made, and that is no longer as it was made.
bool IsChanged(const Core& core, const std::wstring& path, const FileFacts& there)
{
    const LogRecord* record = core.log->Newest(LogKind::shell, path);
    return record && !record->found && (record->size != there.size || record->time != there.time);
}

} // namespace

std::wstring ShellFolderPath(const Core& core, std::wstring_view name)
{
    std::wstring path = core.Substitute(name);
    path.erase(path.find_last_not_of(L"\\/") + 1);
    if (path.empty())
        throw engine_error(E_INVALIDARG, std::wstring(name), L"an empty shell path");
    if (DriveOf(path).empty())
        return FullPath(JoinPath(core.Substitute(L"<PROGRAMS>"), path));
    // The system takes a drive without backslash for the current folder there.
    if (path[1] == L':' && path.size() == 2)
        return path + L'\\';
    if (path[1] == L':' && path[2] != L'\\' && path[2] != L'/')
        throw engine_error(E_INVALIDARG, path, L"a path that depends on the current folder of a drive");
    return FullPath(path);
}

std::wstring ShortcutPath(const Core& core, std::wstring_view name)
{
    const std::wstring path = ShellFolderPath(core, name);
    return IsShortcutName(path) ? path : path + std::wstring(extension);
}

void SaveShortcut(Core& core, const LinkData& link, const std::wstring& path, const std::wstring& feature, bool loose)
{
    const DraftFile draft(core);
    const FileFacts there = FactsOf(path);
    // What a shortcut holds beyond the record stays with it, also under another name.
    const std::wstring& origin = link.origin.empty() ? path : link.origin;
    const bool damaged = core.options.repair && there.file() && IsChanged(core, path, there);
    if (FactsOf(origin).file() && !(damaged && SameText(origin, path)) &&
        !CopyFileW(LongPath(origin).c_str(), LongPath(draft.path()).c_str(), FALSE))
        ThrowFileError(origin, L"can't read the shortcut", GetLastError());
    SetFileAttributesW(LongPath(draft.path()).c_str(), FILE_ATTRIBUTE_NORMAL);
    WriteShellLink(link, draft.path());
    const FileFacts facts = FactsOf(draft.path());
    FileToWrite file;
    file.source = draft.path();
    file.target = path;
    file.size = facts.size;
    file.time = facts.time;
    file.feature = feature;
    file.flags = file_always_overwrite;
    file.kind = LogKind::shell;
    file.loose = loose;
    // A shortcut of somebody else comes back at removal, however often ours is written.
    if (!loose && there.file())
        file.previous = damaged || IsOurs(core, file, there) ? FromHex(core.log->Newest(file.kind, path)->oldData)
                                                             : ReadWhole(path, largest_shortcut);
    // One that is ours and says all this already is left alone, whatever its time. A draft has not written its target,
    // whose size and times it tells.
    const LogRecord* target = core.log->IsDraft() ? core.log->Newest(LogKind::file, link.target) : nullptr;
    const bool stale = target && target->run == core.log->CurrentRun();
    if (!stale && there.file() && IsOurs(core, file, there) && SameContent(file.source, path)) {
        core.log->Tell({Act::keep, Why::same, L"shortcut", path, feature});
        return core.log->Want(path);
    }
    WriteAllOrNothing(core, {&file, 1}, {[](uint64_t, const FileToWrite&) {}});
}

HRESULT ShellService::NewItem(ISetupShortcut** shortcut)
{
    return Call("ISetupShell.NewItem")(
        [&] { return GiveObject(shortcut, make_object<ShortcutObject>(shared_core(), LinkData{})); });
}

HRESULT ShellService::OpenItem(BSTR path, ISetupShortcut** shortcut)
{
    return Call("ISetupShell.OpenItem", path)([&] {
        const std::wstring file = ShortcutPath(core(), engine::TextOf(path));
        if (!FactsOf(file).file())
            return not_found;
        return GiveObject(shortcut, make_object<ShortcutObject>(shared_core(), ReadShellLink(file)));
    });
}

HRESULT ShellService::RemoveItem(BSTR path)
{
    return Call("ISetupShell.RemoveItem", path)([&] {
        const std::wstring file = ShortcutPath(core(), engine::TextOf(path));
        if (!FactsOf(file).file())
            return not_found;
        TakeAway(core(), file);
        return S_OK;
    });
}

HRESULT ShellService::ItemExists(BSTR path, VARIANT_BOOL* exists)
{
    return Call("ISetupShell.ItemExists",
                path)([&] { return GiveTruth(exists, FactsOf(ShortcutPath(core(), engine::TextOf(path))).file()); });
}

HRESULT ShellService::ListItems(BSTR folder, SAFEARRAY** items)
{
    return Call("ISetupShell.ListItems", folder)([&] {
        const std::wstring path = ShellFolderPath(core(), engine::TextOf(folder));
        return FactsOf(path).folder() ? GiveTexts(items, NamesIn(path, false)) : not_found;
    });
}

HRESULT ShellService::MakeFolder(BSTR folder, ISetupLog* log)
{
    return Call("ISetupShell.MakeFolder", folder)([&] {
        MakeLoggedFolders(core(), ShellFolderPath(core(), engine::TextOf(folder)), log);
        return S_OK;
    });
}

HRESULT ShellService::RemoveFolder(BSTR folder)
{
    return Call("ISetupShell.RemoveFolder", folder)([&] {
        const std::wstring path = ShellFolderPath(core(), engine::TextOf(folder));
        const FileFacts facts = FactsOf(path);
        if (!facts.folder())
            return not_found;
        // A link goes alone: what it leads to is another folder's.
        if (!(facts.attributes & FILE_ATTRIBUTE_REPARSE_POINT))
            CheckRemovable(path);
        TakeAway(core(), path);
        return S_OK;
    });
}

HRESULT ShellService::ListFolders(BSTR folder, SAFEARRAY** folders)
{
    return Call("ISetupShell.ListFolders", folder)([&] {
        const std::wstring path = ShellFolderPath(core(), engine::TextOf(folder));
        return FactsOf(path).folder() ? GiveTexts(folders, NamesIn(path, true)) : not_found;
    });
}

HRESULT ShellService::OpenFolderWindow(BSTR folder, long command)
{
    return Call("ISetupShell.OpenFolderWindow", folder, command)([&] {
        const std::wstring path = ShellFolderPath(core(), engine::TextOf(folder));
        if (!FactsOf(path).folder())
            return not_found;
        // A silent run shows no window.
        if (core().options.silent)
            return S_OK;
        const auto result = reinterpret_cast<INT_PTR>(
            ShellExecuteW(core().options.window, L"open", path.c_str(), nullptr, nullptr, static_cast<int>(command)));
        // The codes up to 32 are those of the system, and 0 is exhausted memory.
        return result > 32 ? S_OK : result ? FromWin32(static_cast<DWORD>(result)) : E_OUTOFMEMORY;
    });
}

HRESULT ShortcutObject::GetTarget(BSTR* target)
{
    return Call("ISetupShortcut.GetTarget")([&] { return GiveText(target, m_link.target); });
}

HRESULT ShortcutObject::SetTarget(BSTR target)
{
    return Call("ISetupShortcut.SetTarget", target)([&] {
        m_link.target = core().Substitute(engine::TextOf(target));
        return S_OK;
    });
}

HRESULT ShortcutObject::GetWorkingDir(BSTR* directory)
{
    return Call("ISetupShortcut.GetWorkingDir")([&] { return GiveText(directory, m_link.workingDir); });
}

HRESULT ShortcutObject::SetWorkingDir(BSTR directory)
{
    return Call("ISetupShortcut.SetWorkingDir", directory)([&] {
        m_link.workingDir = core().Substitute(engine::TextOf(directory));
        return S_OK;
    });
}

HRESULT ShortcutObject::GetArguments(BSTR* arguments)
{
    return Call("ISetupShortcut.GetArguments")([&] { return GiveText(arguments, m_link.arguments); });
}

HRESULT ShortcutObject::SetArguments(BSTR arguments)
{
    return Call("ISetupShortcut.SetArguments", arguments)([&] {
        m_link.arguments = core().Substitute(engine::TextOf(arguments));
        return S_OK;
    });
}

HRESULT ShortcutObject::GetHotKey(BSTR* key)
{
    return Call("ISetupShortcut.GetHotKey")([&] { return GiveText(key, m_link.hotKey); });
}

HRESULT ShortcutObject::SetHotKey(BSTR key)
{
    return Call("ISetupShortcut.SetHotKey", key)([&] {
        m_link.hotKey = HotKeyText(HotKeyOf(engine::TextOf(key)));
        return S_OK;
    });
}

HRESULT ShortcutObject::GetShowCommand(long* command)
{
    return Call("ISetupShortcut.GetShowCommand")([&] { return Give(command, m_link.showCommand); });
}

HRESULT ShortcutObject::SetShowCommand(long command)
{
    return Call("ISetupShortcut.SetShowCommand", command)([&] {
        m_link.showCommand = command;
        return S_OK;
    });
}

HRESULT ShortcutObject::GetIcon(BSTR* file, long* index)
{
    return Call("ISetupShortcut.GetIcon")([&] {
        const HRESULT code = Give(index, m_link.iconIndex);
        return FAILED(code) ? code : GiveText(file, m_link.iconFile);
    });
}

HRESULT ShortcutObject::SetIcon(BSTR file, long index)
{
    return Call("ISetupShortcut.SetIcon", file, index)([&] {
        m_link.iconFile = core().Substitute(engine::TextOf(file));
        m_link.iconIndex = index;
        return S_OK;
    });
}

HRESULT ShortcutObject::Save(ISetupLog* log, VARIANT* path)
{
    return Call("ISetupShortcut.Save", log ? 1L : 0L)([&] {
        if (!path)
            return E_POINTER;
        SaveShortcut(core(), m_link, ShortcutPath(core(), TextOf(*path)), {}, !log);
        return S_OK;
    });
}

HRESULT ShortcutObject::SaveAs(long reserved, VARIANT path, VARIANT, VARIANT)
{
    return Call("ISetupShortcutProperties.SaveAs", reserved, path)([&] {
        m_path = ShortcutPath(core(), TextOf(path));
        return S_OK;
    });
}

HRESULT ShortcutObject::SetProperty(BSTR key, BSTR value)
{
    return Call("ISetupShortcutProperties.SetProperty", key, value)([&] {
        m_link.properties.emplace_back(engine::TextOf(key), engine::TextOf(value));
        return S_OK;
    });
}

HRESULT ShortcutObject::Commit(VARIANT_BOOL* done)
{
    return Call("ISetupShortcutProperties.Commit")([&] {
        if (m_path.empty())
            return E_UNEXPECTED;
        SaveShortcut(core(), m_link, m_path, {}, false);
        return done ? GiveTruth(done, true) : S_OK;
    });
}

} // namespace vh::engine
