#include "parent_window.h"

#include "../scriptdata/facts.h"
#include "../scriptdata/late_library.h"
#include "../scriptdata/unique.h"
#include "dialog_manager.h"
#include "late_dialogs.h"

namespace vh {

namespace {

constinit late_library psapi(L"psapi.dll");
constinit late_function<DWORD WINAPI(HANDLE, HMODULE, wchar_t*, DWORD)> module_file_name(psapi, "GetModuleFileNameExW");

bool BelongsToInstaller(HWND window)
{
    DWORD id = 0;
    late::get_window_thread(window, &id);
    const unique_handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id));
    wchar_t path[MAX_PATH] = L"";
    if (!process || !module_file_name || !module_file_name(process.get(), HMODULE{nullptr}, path, DWORD{MAX_PATH}))
        return false;
    const stringxi folded(path);
    return folded.folded().find(stringxi::view_type(L"msiexec.exe")) != stringxi::npos;
}

} // namespace

HWND ParentWindow(const CDialogManager& dialogs)
{
    fact search(dialogs.scene().info.get(), fact_parent_search);
    const stringx* current = dialogs.CurrentName();
    if (const HWND window = current ? dialogs.WindowOf(*current) : nullptr)
        return window;
    if (search.number() == 0)
        return nullptr;
    if (const HWND installer = late::find_window(installer_window_class, nullptr))
        return installer;
    const HWND first = late::find_window(L"#32770", nullptr);
    return first && BelongsToInstaller(first) ? first : nullptr;
}

} // namespace vh
