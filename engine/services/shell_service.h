// The shell service: program folders and shortcuts.
#pragma once

#include "../object.h"
#include "shell_link.h"

namespace vh::engine {

// Folders below the user's programs unless they come with a drive; patterns are substituted.
std::wstring ShellFolderPath(const Core& core, std::wstring_view name);
// The same for a shortcut, whose extension may be left out.
std::wstring ShortcutPath(const Core& core, std::wstring_view name);
// Puts the shortcut under its path. What it replaces comes back when the run is undone, and `loose` ones are left alone
// by a removal.
void SaveShortcut(Core& core, const LinkData& link, const std::wstring& path, const std::wstring& feature, bool loose);

class ShellService final : public engine_object<ShellService, ISetupShell> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE NewItem(ISetupShortcut** shortcut) override;
    HRESULT STDMETHODCALLTYPE OpenItem(BSTR path, ISetupShortcut** shortcut) override;
    HRESULT STDMETHODCALLTYPE RemoveItem(BSTR path) override;
    HRESULT STDMETHODCALLTYPE ItemExists(BSTR path, VARIANT_BOOL* exists) override;
    // Names without extension.
    HRESULT STDMETHODCALLTYPE ListItems(BSTR folder, SAFEARRAY** items) override;
    HRESULT STDMETHODCALLTYPE MakeFolder(BSTR folder, ISetupLog* log) override;
    // With the shortcuts in it; a folder that holds anything else stays, and that is a failure.
    HRESULT STDMETHODCALLTYPE RemoveFolder(BSTR folder) override;
    HRESULT STDMETHODCALLTYPE ListFolders(BSTR folder, SAFEARRAY** folders) override;
    HRESULT STDMETHODCALLTYPE OpenFolderWindow(BSTR folder, long command) override;
};

// A shortcut in the hand of a script; nothing is written before it is saved.
class ShortcutObject final : public engine_object<ShortcutObject, ISetupShortcut, ISetupShortcutProperties> {
public:
    ShortcutObject(std::shared_ptr<Core> core, LinkData link) : engine_object(std::move(core)), m_link(std::move(link))
    {
    }

    HRESULT STDMETHODCALLTYPE GetTarget(BSTR* target) override;
    HRESULT STDMETHODCALLTYPE SetTarget(BSTR target) override;
    HRESULT STDMETHODCALLTYPE GetWorkingDir(BSTR* directory) override;
    HRESULT STDMETHODCALLTYPE SetWorkingDir(BSTR directory) override;
    HRESULT STDMETHODCALLTYPE GetArguments(BSTR* arguments) override;
    HRESULT STDMETHODCALLTYPE SetArguments(BSTR arguments) override;
    HRESULT STDMETHODCALLTYPE GetHotKey(BSTR* key) override;
    HRESULT STDMETHODCALLTYPE SetHotKey(BSTR key) override;
    HRESULT STDMETHODCALLTYPE GetShowCommand(long* command) override;
    HRESULT STDMETHODCALLTYPE SetShowCommand(long command) override;
    HRESULT STDMETHODCALLTYPE GetIcon(BSTR* file, long* index) override;
    HRESULT STDMETHODCALLTYPE SetIcon(BSTR file, long index) override;
    HRESULT STDMETHODCALLTYPE Save(ISetupLog* log, VARIANT* path) override;
    // Chooses the path that Commit writes to.
    HRESULT STDMETHODCALLTYPE SaveAs(long reserved, VARIANT path, VARIANT unused1, VARIANT unused2) override;
    HRESULT STDMETHODCALLTYPE SetProperty(BSTR key, BSTR value) override;
    HRESULT STDMETHODCALLTYPE Commit(VARIANT_BOOL* done) override;

private:
    LinkData m_link;
    std::wstring m_path;
};

} // namespace vh::engine
