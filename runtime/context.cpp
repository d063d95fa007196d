#include "context.h"

#include <clocale>

#include "../diagnostics/language.h"
#include "../dialogs/wait_message.h"
#include "../media/concrete_media.h"
#include "../scriptdata/facts.h"
#include "../scriptdata/late_windows.h"
#include "../scriptdata/path_text.h"
#include "../views/component_view.h"
#include "../views/tree_view.h"

namespace {

stringx ReadVariable(ISetupTextSub* store, std::wstring_view name)
{
    vh::bstr value;
    if (store)
        store->GetValue(vh::bstr(name).get(), value.put());
    return stringx(value.view());
}

void WriteVariable(ISetupTextSub* store, std::wstring_view name, std::wstring_view value)
{
    if (store)
        store->SetValue(vh::bstr(name).get(), vh::bstr(value).get());
}

void ProtectVariable(ISetupTextSubEx* store, std::wstring_view name, long protection)
{
    if (store)
        store->Protect(vh::bstr(name).get(), protection);
}

} // namespace

// What the data set may still change before it is written to the variables.
struct ObjectContext::source_facts {
    stringx directory;
    stringx package_location;
    bool set_source_dir = false;
    bool has_package_location = false;
    bool keep_package_location = false;
};

void GdiObjects::DeleteAll()
{
    for (; !m_objects.empty(); m_objects.pop_front())
        vh::late::delete_object(m_objects.front());
}

WaitHandles::~WaitHandles()
{
    for (const HANDLE handle : m_handles)
        vh::unique_handle closing(handle);
}

void WaitHandles::WaitForAll() const { WaitForMultipleObjects(m_count, m_handles.data(), TRUE, INFINITE); }

ListHandle ListTable::Create(int32_t type)
{
    try {
        switch (type) {
        case -1:
            return m_lists.Add(std::make_unique<CNumList>());
        case 0:
            return m_lists.Add(std::make_unique<CStringxList>());
        default:
            return -1;
        }
    } catch (const std::exception&) {
        // Without memory there is no list.
        return -1;
    }
}

int32_t ListTable::Destroy(ListHandle* handle)
{
    if (!handle || !m_lists.Remove(*handle))
        return ListErrorBadHandle;
    *handle = 0;
    return 0;
}

namespace vh {

StatusBlock& StatusOf(ObjectContext& context) { return context.status; }
bool IsSuite(const ObjectContext& context) { return context.suite; }
ISetupHost* HostOf(const ObjectContext& context) { return context.host.get(); }

} // namespace vh

ObjectContext::source_facts ObjectContext::ReadSourceFacts()
{
    source_facts source;
    if (!info)
        return source;
    source.directory = vh::PathFolder(vh::fact(info.get(), vh::fact_launching_file).text());
    source.set_source_dir = vh::fact(info.get(), vh::fact_set_source_dir).truth();
    source.has_package_location = vh::fact(info.get(), vh::fact_has_package_location).truth();
    if (source.has_package_location)
        source.package_location = vh::fact(info.get(), vh::fact_package_location).text();
    source.keep_package_location = vh::fact(info.get(), vh::fact_keep_package_location).truth();
    language = static_cast<uint16_t>(vh::fact(info.get(), vh::fact_language).number());
    return source;
}

void ObjectContext::FillFromData(source_facts& source)
{
    const auto data = Ask<ISetupData>();
    if (!data)
        return;
    const auto extended = data.query<ISetupDataEx>();
    if (language)
        vh::SetRuntimeLocaleFromLanguage(LC_ALL, language);
    VARIANT_BOOL in_maintenance = VARIANT_FALSE;
    data->GetMaintenance(&in_maintenance);
    maintenance = in_maintenance == VARIANT_TRUE;
    long flags = 0;
    if (extended)
        extended->GetFlags(&flags);
    maintOption = (flags & 2) ? 4 : (flags & 8) ? 8 : 1;
    vh::bstr text;
    if (SUCCEEDED(data->GetProductGuid(0, text.put())))
        productGuid = text.view();
    if (extended && SUCCEEDED(extended->GetInstallGuid(text.put())))
        installGuid = text.view();

    media.Add(L"DATA", std::make_unique<CVHFileMedia>(host, data));
    media.Add(L"VHSUPPORTFILES", std::make_unique<CVHSupportFilesMedia>(data));

    if (source.directory.empty() && SUCCEEDED(data->GetSourcePath(text.put())))
        source.directory = vh::PathFolder(text.view());
    long enabled = 0;
    if (extended && SUCCEEDED(extended->GetEnabledServices(&enabled)))
        enabledServices = enabled;
}

void ObjectContext::WriteSourceVariables(const source_facts& source)
{
    if (source.set_source_dir) {
        WriteVariable(textSubLocal.get(), L"SRCDIR", source.directory);
        WriteVariable(textSubGlobal.get(), L"SRCDIR", source.directory);
    }
    const auto local = textSubLocal.query<ISetupTextSubEx>();
    const auto global = textSubGlobal.query<ISetupTextSubEx>();
    if (source.keep_package_location)
        return;
    constexpr std::wstring_view name = L"PACKAGE_LOCATION";
    WriteVariable(textSubLocal.get(), name, source.package_location);
    WriteVariable(textSubGlobal.get(), name, source.package_location);
    ProtectVariable(local.get(), name, 1);
    ProtectVariable(global.get(), name, 1);
}

void ObjectContext::AskForRegistry()
{
    Ask(registry);
    if (const auto aware = registry.query<ISetupSiteAware>())
        aware->SetSite(services.get());
}

void ObjectContext::AskForWindow()
{
    Ask(user);
    if (!user || FAILED(user->GetWindow(window.put())))
        return;
    windowEx1 = window.query<ISetupWindowEx1>();
    windowEx2 = windowEx1.query<ISetupWindowEx2>();
}

void ObjectContext::LoadModules()
{
    stringx resource_file;
    stringx user_file;
    if (textSubLocal) {
        resource_file = ReadVariable(textSubLocal.get(), L"VHRES");
        user_file = ReadVariable(textSubLocal.get(), L"VHUSER");
    }
    const auto resources = Ask<ISetupResources>();
    const auto load = [&](const stringx& file) -> HMODULE {
        if (file.empty())
            return nullptr;
        if (!resources)
            return LoadLibraryW(file.c_str());
        HMODULE loaded = nullptr;
        return SUCCEEDED(resources->Load(file.AsBstr(), &loaded)) ? loaded : nullptr;
    };
    modules.product = load(resource_file);
    modules.user = load(user_file);
}

void ObjectContext::ChooseSkin(std::wstring_view source_dir)
{
    const vh::fact name(info.get(), vh::fact_skin_file);
    stringx skin(name.text());
    if (!skin.empty()) {
        const vh::fact session(info.get(), vh::fact_installer_session);
        if (session.known && !session.truth()) {
            stringx joined(source_dir);
            vh::PathAppend(joined, skin.view());
            skin = std::move(joined);
        }
    }
    dialogs.skin.Start(skin, language, supportDir);
    dialogs.CreateMainImage();
}

void ObjectContext::Fill(ISetupHost* from_host, IServiceProvider* from_services)
{
    services.reset(from_services);
    host.reset(from_host);
    if (host)
        host->GetObjects(objects.put());
    status.services = services;

    AskUnder(vh::local_text_service, textSubLocal);
    AskUnder(vh::global_text_service, textSubGlobal);
    Ask(strings);
    Ask(info);
    source_facts source = ReadSourceFacts();
    FillFromData(source);
    WriteSourceVariables(source);
    AskForRegistry();
    AskForWindow();
    Ask(log);
    Ask(reboot);

    if (const auto directories = Ask<ISetupDirs>()) {
        vh::bstr text;
        if (SUCCEEDED(directories->GetSupportDir(text.put())))
            supportDir = text.view();
        if (SUCCEEDED(directories->GetContextGuid(text.put())))
            contextGuid = text.view();
    }
    LoadModules();
    engineDir = ReadVariable(textSubGlobal.get(), L"ENGINEDIR");
    mainMarker = true;
    ChooseSkin(source.directory);
    driverPackages.Initialise(supportDir, services);
    const vh::fact external(Ask<ISetupInfo>().get(), vh::fact_external_ui);
    if (external.known)
        externalUi = external.truth();
}

void ObjectContext::FillSuite(IServiceProvider* from_services, std::wstring_view directory)
{
    services.reset(from_services);
    externalUi = true;
    suite = true;
    supportDir = directory;
    engineDir = directory;
    AskUnder(vh::global_text_service, textSubGlobal);
    textSubLocal = textSubGlobal;
    Ask(info);
    Ask(strings);
    AskForRegistry();

    WriteVariable(textSubGlobal.get(), L"ENGINEDIR", engineDir);
    WriteVariable(textSubGlobal.get(), L"ENGINECOMMONDIR", engineDir);
    if (const auto protection = textSubGlobal.query<ISetupTextSubEx>()) {
        constexpr std::wstring_view names[] = {L"SUPPORTDIR", L"SHAREDSUPPORTDIR"};
        for (const std::wstring_view name : names)
            ProtectVariable(protection.get(), name, 0);
        for (const std::wstring_view name : names)
            WriteVariable(textSubGlobal.get(), name, supportDir);
        for (const std::wstring_view name : names)
            ProtectVariable(protection.get(), name, -1);
    }
    status.services = services;
    driverPackages.Initialise({}, services);
}

ObjectContext::~ObjectContext()
{
    // Windows see the context whole in their last messages.
    dialogs.AbandonAll();
    vh::WaitMessage(dialogs).Forget();
    ComponentView::EndAll(this);
    TreeView::EndAll(this);
    gdiObjects.DeleteAll();
    // A request in hand, whose window ends this context, holds it too.
    if (webDisks)
        webDisks->Close();
    // A script that ended while connected; the remote key is of no use to anybody else.
    if (connected && registry)
        registry->Disconnect(remoteKey);
    if (!modules)
        return;
    if (const auto resources = Ask<ISetupResources>()) {
        long result = 0;
        for (const HMODULE module : {modules.product, modules.user})
            if (module)
                resources->Free(module, &result);
    }
}

HWND ObjectContext::MainWindow() const { return vh::MainWindowOf(window.get(), info.get()); }
