#include "services.h"

#include <algorithm>

#include "../product/data_object.h"
#include "../transfer/copy_job.h"
#include "../windows/progress_object.h"
#include "facts.h"
#include "log_object.h"
#include "registry_object.h"
#include "shell_service.h"
#include "small_services.h"
#include "text_store.h"

namespace vh::engine {

namespace {

// Services that have no methods in use: scripts only pass them on.
class FileRegistrar final : public engine_object<FileRegistrar, ISetupFileRegistrar, IDispatch> {
public:
    using engine_object::engine_object;
};
class MsiStringTable final : public engine_object<MsiStringTable, ISetupMsiStringTable, IDispatch> {
public:
    using engine_object::engine_object;
};

template <class Object, class Interface, class... Arguments>
com_ptr<IUnknown> Make(const std::shared_ptr<Core>& core, Arguments... arguments)
{
    com_ptr<IUnknown> made;
    made.attach(static_cast<Interface*>(new Object(core, arguments...)));
    return made;
}

struct Service {
    GUID service;
    GUID id;
    com_ptr<IUnknown> (*make)(const std::shared_ptr<Core>& core);
};

template <class Interface, class Object>
constexpr Service Plain()
{
    return {null_service, iid_of<Interface>,
            [](const std::shared_ptr<Core>& core) { return Make<Object, Interface>(core); }};
}

const Service services[] = {
    {local_text_service, iid_of<ISetupTextSub>,
     [](const auto& core) { return Make<TextStore, ISetupTextSub>(core, true); }},
    {global_text_service, iid_of<ISetupTextSub>,
     [](const auto& core) { return Make<TextStore, ISetupTextSub>(core, false); }},
    {null_service, iid_of<ISetupData>,
     [](const auto& core) { return Make<DataObject, ISetupData>(core, core->product); }},
    Plain<ISetupStrings, StringsObject>(),
    Plain<ISetupInfo, FactsObject>(),
    Plain<ISetupRegistry, RegistryObject>(),
    Plain<ISetupShell, ShellService>(),
    Plain<ISetupUser, UserObject>(),
    Plain<ISetupLog, LogObject>(),
    Plain<ISetupLogDB, LogDatabase>(),
    Plain<ISetupReboot, RebootObject>(),
    Plain<ISetupDirs, DirsObject>(),
    Plain<ISetupResources, ResourcesObject>(),
    Plain<ISetupDataFactory, DataFactory>(),
    Plain<ISetupProgress, ProgressObject>(),
    Plain<ISetupFileRegistrar, FileRegistrar>(),
    Plain<ISetupMsiStringTable, MsiStringTable>(),
    Plain<ISetupFileOps, FileOperations>(),
    Plain<ISetupScriptLog, ScriptLog>(),
    Plain<ISetupPermissionHelper, PermissionHelper>(),
};

struct ServiceName {
    const GUID& service;
    const GUID& id;
};

std::wstring ArgumentText(const ServiceName& name)
{
    const wchar_t* store = name.service == local_text_service    ? L"local "
                           : name.service == global_text_service ? L"global "
                                                                 : L"";
    return store + engine::ArgumentText(name.id);
}

} // namespace

HRESULT ServicesObject::QueryService(REFGUID service, REFIID id, void** object)
{
    if (object)
        *object = nullptr;
    return Call("IServiceProvider.QueryService", ServiceName{service, id})([&]() -> HRESULT {
        if (!object)
            return E_POINTER;
        const auto* known = std::find_if(std::begin(services), std::end(services), [&](const Service& entry) {
            return entry.service == service && entry.id == id;
        });
        if (known == std::end(services))
            return E_NOINTERFACE;
        *object = known->make(shared_core()).detach();
        return S_OK;
    });
}

} // namespace vh::engine
