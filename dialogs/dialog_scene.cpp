#include "dialog_scene.h"

#include "../scriptdata/facts.h"
#include "../scriptdata/late_windows.h"

namespace vh {

HWND MainWindowOf(ISetupWindow* window, ISetupInfo* info)
{
    HWND handle = nullptr;
    if (window)
        window->GetHandle(&handle);
    if (!handle && fact(info, fact_installer_session).truth())
        handle = late::find_window(installer_window_class, nullptr);
    return handle;
}

HWND DialogScene::MainWindow() const { return MainWindowOf(window.get(), info.get()); }

bstr DialogScene::Variable(const wchar_t* name) const
{
    bstr value;
    if (variables)
        variables->GetValue(bstr(name).get(), value.put());
    return value;
}

bstr DialogScene::LibraryOf(long dialog) const
{
    const ResourceModules author{modules.user, nullptr};
    return Variable(author.Find(RT_DIALOG, MAKEINTRESOURCEW(dialog)) ? L"VHUSER" : L"VHRES");
}

void DialogScene::CallHook(HWND dialog) const
{
    // 32 bits with their sign, widened to an address.
    const auto address = static_cast<intptr_t>(fact(info.get(), fact_dialog_hook).number());
    if (address)
        reinterpret_cast<void (*)(HWND)>(address)(dialog);
}

} // namespace vh
