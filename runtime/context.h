// The state of one script run. It owns everything; members end in the reverse of this order, which is the order
// in which the engine's objects have to be released.
#pragma once

#include <array>
#include <list>
#include <memory>

#include "../Src/inc/engine.h"
#include "../dialogs/dialog_manager.h"
#include "../dialogs/window_facts.h"
#include "../files/script_file.h"
#include "../media/media_table.h"
#include "../media/status_block.h"
#include "../pictures/gdi_objects.h"
#include "../scriptdata/handle_table.h"
#include "../scriptdata/list.h"
#include "../system/driver_packages.h"
#include "../system/web_disks.h"
#include "silent_retry.h"

// GDI objects that scripts left behind.
class GdiObjects {
public:
    ~GdiObjects() { DeleteAll(); }
    void Add(HGDIOBJ object) { m_objects.push_back(object); }
    void DeleteAll();

private:
    std::list<HGDIOBJ> m_objects;
};

// Handles that a release waits for and closes.
class WaitHandles {
public:
    ~WaitHandles();
    bool empty() const { return m_count == 0; }
    void WaitForAll() const;

private:
    std::array<HANDLE, 100> m_handles{};
    uint32_t m_count = 0;
};

class ListTable {
public:
    // CVHListError for an unknown handle.
    CVHList& Find(ListHandle handle) const
    {
        CVHList* found = m_lists.Find(handle);
        return found ? *found : CVHListError::Instance();
    }
    ListHandle Create(int32_t type);
    int32_t Destroy(ListHandle* handle);

private:
    vh::handle_table<CVHList> m_lists;
};

struct ObjectContext {
    ObjectContext() = default;
    ObjectContext(const ObjectContext&) = delete;
    ObjectContext& operator=(const ObjectContext&) = delete;
    ~ObjectContext();

    // The steps of filling; a failing step leaves its fields empty.
    void Fill(ISetupHost* from_host, IServiceProvider* from_services);
    void FillSuite(IServiceProvider* from_services, std::wstring_view directory);

    // A service under the null service identifier; empty when there is none.
    template <class Service>
    vh::com_ptr<Service> Ask() const
    {
        vh::com_ptr<Service> found;
        Ask(found);
        return found;
    }
    template <class Service>
    HRESULT Ask(vh::com_ptr<Service>& found) const
    {
        return AskUnder(vh::null_service, found);
    }
    template <class Service>
    HRESULT AskUnder(const GUID& service, vh::com_ptr<Service>& found) const
    {
        if (!services)
            return E_POINTER;
        const HRESULT code = services->QueryService(service, vh::iid_of<Service>, found.put_void());
        return SUCCEEDED(code) && !found ? E_NOINTERFACE : code;
    }
    // Null when there is none.
    HWND MainWindow() const;

    vh::com_ptr<ISetupObjects> objects;
    vh::com_ptr<ISetupHost> host;
    vh::com_ptr<IServiceProvider> services;
    vh::com_ptr<ISetupTextSub> textSubLocal;
    vh::com_ptr<ISetupTextSub> textSubGlobal;
    vh::com_ptr<ISetupUser> user;
    vh::com_ptr<ISetupWindow> window;
    vh::com_ptr<ISetupWindowEx1> windowEx1;
    vh::com_ptr<ISetupWindowEx2> windowEx2;
    vh::com_ptr<IUnknown> spare;
    vh::com_ptr<ISetupInfo> info;
    vh::com_ptr<ISetupReboot> reboot;
    vh::com_ptr<ISetupLog> log;
    // The component log while one is in force.
    vh::com_ptr<ISetupLog> logEx;
    vh::com_ptr<ISetupStrings> strings;
    GdiObjects gdiObjects;
    vh::com_ptr<ISetupRegistry> registry;
    SilentRetry silentRetry{*this};
    int64_t remoteKey = 0;
    bool connected = false;
    // The link with a download agent, while there is one.
    std::shared_ptr<FODHandler> webDisks;
    bool textSubs = true;
    ListTable lists;
    FileTable files;
    vh::WindowFacts windowFacts;
    MediaTable media;
    vh::DriverPackages driverPackages{*this};
    vh::ResourceModules modules;
    // The status window while one is up.
    HWND statusDialog = nullptr;
    CDialogManager dialogs{{services, textSubLocal, info, window, windowEx1, modules, status, statusDialog, silent,
                            silentEx, externalUi, supportDir, palette}};
    vh::StatusBlock status;
    // For pictures, on displays that have one.
    vh::unique_palette palette;
    stringx supportDir;
    stringx contextGuid;
    stringx productGuid;
    bool maintenance = false;
    WaitHandles waitHandles;
    stringx installGuid;
    int32_t maintOption = 0;
    // Only a full context may use skins.
    bool mainMarker = false;
    stringx engineDir;
    bool silent = false;
    bool silentEx = false;
    bool silentMsg = false;
    int32_t enabledServices = 0;
    uint16_t language = 0;
    bool externalUi = false;
    bool suite = false;
    int32_t globalFlags = 0;
    // The main log while a component log is in force.
    vh::com_ptr<ISetupLog> savedLog;

private:
    struct source_facts;

    source_facts ReadSourceFacts();
    void FillFromData(source_facts& source);
    void WriteSourceVariables(const source_facts& source);
    void AskForRegistry();
    void AskForWindow();
    void LoadModules();
    void ChooseSkin(std::wstring_view source_dir);
};
