// What dialogs need of their context, which owns all of it and outlives them.
#pragma once

#include "../Src/inc/engine_services.h"
#include "../Src/inc/engine_window.h"
#include "../media/status_block.h"
#include "../pictures/gdi_objects.h"
#include "../scriptdata/bstr.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/stringx.h"
#include "resource_modules.h"

namespace vh {

struct DialogScene {
    const com_ptr<IServiceProvider>& services;
    const com_ptr<ISetupTextSub>& variables;
    const com_ptr<ISetupInfo>& info;
    const com_ptr<ISetupWindow>& window;
    const com_ptr<ISetupWindowEx1>& windowEx1;
    const ResourceModules& modules;
    StatusBlock& status;
    // The status window while one is up.
    HWND& statusDialog;
    const bool& silent;
    const bool& silentEx;
    const bool& externalUi;
    const stringx& supportDir;
    const unique_palette& palette;

    // The window that dialogs stand on; null when there is none.
    HWND MainWindow() const;
    // A local text variable; null when there are none.
    bstr Variable(const wchar_t* name) const;
    // The path of the library that has a dialog template: the author's if it is there, else the product's.
    bstr LibraryOf(long dialog) const;
    // A service under the null service identifier; empty when there is none.
    template <class Service>
    com_ptr<Service> Ask() const
    {
        com_ptr<Service> found;
        if (services)
            services->QueryService(null_service, iid_of<Service>, found.put_void());
        return found;
    }
    // What setup fact 24 names is a function of this process: it sees each dialog before the user does.
    void CallHook(HWND dialog) const;
};

// The class of the window that stands for the setup inside a Windows Installer session.
constexpr const wchar_t* installer_window_class = L"MsiDialogCloseClass";

// The main window of an engine, or the installer's where the setup runs inside one.
HWND MainWindowOf(ISetupWindow* window, ISetupInfo* info);

} // namespace vh
