#include "data_object.h"

#include <algorithm>

#include "../services/error_object.h"
#include "../transfer/install_actions.h"
#include "item_files.h"
#include "selection.h"
#include "this_system.h"

namespace vh::engine {

namespace {

constexpr long maintenance_option_4 = 0x2;
constexpr long maintenance_option_8 = 0x8;
constexpr long target_saved = 0x1 | 0x2;

std::vector<const SetupType*> TypesOf(const DataSet& data)
{
    std::vector<const SetupType*> types;
    for (const SetupType& type : data.product->setupTypes)
        types.push_back(&type);
    return types;
}

// The first item that has a group of that name, with the group.
std::pair<const Item*, const FileGroup*> FindGroupAnywhere(const DataSet& data, std::wstring_view name)
{
    std::pair<const Item*, const FileGroup*> found{nullptr, nullptr};
    ForEachItem(data.product->data, [&](const Item& item) {
        if (!found.second)
            found = {&item, FindGroup(item, name)};
    });
    return found;
}

} // namespace

// Setup types.

HRESULT SetupTypesObject::Count(long* count)
{
    return Call("ISetupTypes.Count")([&] { return Give(count, m_data->product->setupTypes.size()); });
}

HRESULT SetupTypesObject::Item(VARIANT index, ISetupType** type)
{
    return Call("ISetupTypes.Item", index)([&]() -> HRESULT {
        if (!type)
            return E_POINTER;
        *type = nullptr;
        const SetupType* found = FindElement(TypesOf(*m_data), index, [](const SetupType& at) { return at.name; });
        return found ? GiveObject(type, make_object<SetupTypeObject>(shared_core(), m_data, *found))
                     : no_such_setup_type;
    });
}

HRESULT SetupTypeObject::GetName(BSTR* name)
{
    return Call("ISetupType.GetName")([&] { return GiveText(name, m_type.name); });
}

HRESULT SetupTypeObject::GetDisplayText(BSTR* text)
{
    return Call("ISetupType.GetDisplayText")([&] { return GiveText(text, core().DisplayText(m_type.displayName)); });
}

HRESULT SetupTypeObject::GetDescription(BSTR* text)
{
    return Call("ISetupType.GetDescription")([&] { return GiveText(text, core().DisplayText(m_type.description)); });
}

HRESULT SetupTypeObject::Activate()
{
    return Call("ISetupType.Activate")([&] {
        ActivateSetupType(*m_data->product, m_type);
        return S_OK;
    });
}

// The data set.

HRESULT DataObject::GetRoot(ISetupComponents** root)
{
    return Call("ISetupData.GetRoot")([&] {
        std::vector<Item*> items{&m_data->product->data, &m_data->product->support};
        return GiveObject(root, make_object<ItemsObject<ComponentKind>>(shared_core(), m_data, std::move(items)));
    });
}

HRESULT DataObject::GetSetupTypes(ISetupTypes** types)
{
    return Call("ISetupData.GetSetupTypes")(
        [&] { return GiveObject(types, make_object<SetupTypesObject>(shared_core(), m_data)); });
}

HRESULT DataObject::FilterLanguage(long language, VARIANT_BOOL flag)
{
    return Call("ISetupData.FilterLanguage", language, flag)([&] {
        if (language <= 0 || language > 0xFFFF)
            return E_INVALIDARG;
        if (flag)
            m_data->languagesOut.erase(static_cast<WORD>(language));
        else
            m_data->languagesOut.insert(static_cast<WORD>(language));
        return S_OK;
    });
}

HRESULT DataObject::GetMaintenance(VARIANT_BOOL* maintenance)
{
    return Call("ISetupData.GetMaintenance")([&] { return GiveTruth(maintenance, m_data->maintenance); });
}

HRESULT DataObject::GetProductGuid(long reserved, BSTR* identifier)
{
    return Call("ISetupData.GetProductGuid", reserved)([&] { return GiveText(identifier, product().guid); });
}

HRESULT DataObject::GetSourcePath(BSTR* path)
{
    return Call("ISetupData.GetSourcePath")([&] { return GiveText(path, product().file); });
}

HRESULT DataObject::GetErrorObject(IUnknown** error)
{
    return Call("ISetupData.GetErrorObject")(
        [&] { return GiveObject(error, make_object<ErrorObject>(shared_core(), core().lastError)); });
}

HRESULT DataObject::Validate(BSTR key)
{
    return Call("ISetupData.Validate", key)([&] { return TextOf(key) == product().key ? S_OK : E_INVALIDARG; });
}

HRESULT DataObject::SetLog(ISetupLog* log)
{
    // There is one install log; every data set of the run writes to it.
    return Call("ISetupData.SetLog", log ? 1L : 0L)([] { return S_OK; });
}

HRESULT DataObject::CreateRegistrySet(BSTR name, ISetupLog* log)
{
    return Call("ISetupData.CreateRegistrySet", name)([&] {
        ApplyRegistrySets(core(), product(), TextOf(name), !log);
        return S_OK;
    });
}

HRESULT DataObject::CreateShellObjects(ISetupLog* log)
{
    return Call("ISetupData.CreateShellObjects")([&] {
        MakeShellObjects(core(), product(), !log);
        return S_OK;
    });
}

HRESULT DataObject::GetInstallGuid(BSTR* identifier)
{
    return Call("ISetupDataEx.GetInstallGuid")([&] { return GiveText(identifier, product().installGuid); });
}

HRESULT DataObject::GetFlags(long* flags)
{
    return Call("ISetupDataEx.GetFlags")([&] {
        const long option = product().maintenanceOption;
        return Give(flags, option == 4 ? maintenance_option_4 : option == 8 ? maintenance_option_8 : 0);
    });
}

HRESULT DataObject::GetMode(const char* method, bool mode, VARIANT_BOOL* on) const
{
    return Call(method)([&] { return GiveTruth(on, mode); });
}

HRESULT DataObject::SetMode(const char* method, bool& mode, VARIANT_BOOL on)
{
    return Call(method, on)([&] {
        mode = on != 0;
        return S_OK;
    });
}

HRESULT DataObject::GetUpdateMode(VARIANT_BOOL* on)
{
    return GetMode("ISetupDataEx.GetUpdateMode", m_data->updateMode, on);
}
HRESULT DataObject::SetUpdateMode(VARIANT_BOOL on)
{
    return SetMode("ISetupDataEx.SetUpdateMode", m_data->updateMode, on);
}

HRESULT DataObject::GetRemoveAllMode(VARIANT_BOOL* on)
{
    return GetMode("ISetupDataEx.GetRemoveAllMode", m_data->removeAllMode, on);
}

HRESULT DataObject::SetRemoveAllMode(VARIANT_BOOL on)
{
    const HRESULT code = SetMode("ISetupDataEx.SetRemoveAllMode", m_data->removeAllMode, on);
    if (code == S_OK && on)
        for (const auto& child : m_data->product->data.children)
            if (!child->pseudo)
                SelectAll(*child, false, true);
    return code;
}

HRESULT DataObject::GetReinstallMode(VARIANT_BOOL* on)
{
    return GetMode("ISetupDataModes.GetReinstallMode", m_data->reinstallMode, on);
}

HRESULT DataObject::SetReinstallMode(VARIANT_BOOL on)
{
    return SetMode("ISetupDataModes.SetReinstallMode", m_data->reinstallMode, on);
}

HRESULT DataObject::GetTargetState(long* flags)
{
    return Call("ISetupDataEx.GetTargetState")([&] {
        const auto& records = core().log->Records();
        const bool saved =
            m_data->maintenance && std::any_of(records.begin(), records.end(), [&](const LogRecord& record) {
                return record.kind == LogKind::texts && record.run != core().log->CurrentRun();
            });
        return Give(flags, saved ? target_saved : 0);
    });
}

HRESULT DataObject::GetEnabledServices(long* services)
{
    return Call("ISetupDataEx.GetEnabledServices")([&] { return Give(services, product().enabledServices); });
}

HRESULT DataObject::FilterOS(long first, long second, VARIANT_BOOL flag)
{
    return Call("ISetupDataEx.FilterOS", first, second, flag)([&] {
        const uint64_t bits =
            static_cast<uint64_t>(static_cast<unsigned long>(second)) << 32 | static_cast<unsigned long>(first);
        m_data->systemsOut = flag ? m_data->systemsOut & ~bits : m_data->systemsOut | bits;
        return S_OK;
    });
}

HRESULT DataObject::GetRootFiles(VARIANT* files)
{
    return Call("ISetupDataModes.GetRootFiles")([&] {
        std::vector<std::wstring> all;
        ForEachItem(m_data->product->data, [&](const Item& item) {
            for (std::wstring& file : FilesOf(item))
                all.push_back(std::move(file));
        });
        return GiveTexts(files, all);
    });
}

HRESULT DataObject::EnumRootFiles(BSTR directory, VARIANT_BOOL flag, VARIANT* files)
{
    return Call("ISetupDataModes.EnumRootFiles", directory, flag)([&]() -> HRESULT {
        const auto [item, group] = FindGroupAnywhere(*m_data, TextOf(directory));
        return group ? GiveTexts(files, FilesIn(*group, flag != 0)) : no_such_item;
    });
}

HRESULT DataObject::RootFileInfo(BSTR group, BSTR file, long code, VARIANT* value)
{
    return Call("ISetupDataModes.RootFileInfo", group, file, code)([&] {
        const auto [item, found] = FindGroupAnywhere(*m_data, TextOf(group));
        return found ? GiveFileInfo(core(), *item, found, TextOf(file), code, value) : no_such_item;
    });
}

HRESULT DataObject::GetFilteringNumbers(long kind, VARIANT* numbers)
{
    return Call("ISetupDataModes.GetFilteringNumbers", kind)([&] {
        std::vector<long> found;
        if (kind == 0) {
            for (WORD language : product().languages)
                if (!m_data->languagesOut.contains(language))
                    found.push_back(language);
        } else if (kind == 1) {
            for (const SystemName& system : system_names)
                if (!(m_data->systemsOut & system.bit))
                    found.push_back(static_cast<long>(system.bit));
        } else {
            return E_INVALIDARG;
        }
        return GiveNumbers(numbers, found);
    });
}

HRESULT DataObject::GetNeedsValidation(VARIANT_BOOL* needed)
{
    return Call("ISetupDataValidation.GetNeedsValidation")([&] { return GiveTruth(needed, !product().key.empty()); });
}

HRESULT DataObject::MediaText(int number, BSTR* text) const
{
    return Call("ISetupMediaInfo.GetText", static_cast<long>(number))([&] {
        return GiveText(text, core().DisplayText(product().media.texts[static_cast<std::size_t>(number - 1)]));
    });
}

HRESULT DataObject::GetNumber(long* number)
{
    return Call("ISetupMediaInfo.GetNumber")([&] { return Give(number, product().media.number); });
}

HRESULT DataObject::MediaTruth(int number, VARIANT_BOOL* truth) const
{
    return Call("ISetupMediaInfo.GetTruth", static_cast<long>(number))(
        [&] { return GiveTruth(truth, product().media.truths[static_cast<std::size_t>(number - 1)]); });
}

HRESULT DataFactory::Open(BSTR headerPath, BSTR, ISetupData** data)
{
    return Call("ISetupDataFactory.Open", headerPath)([&] {
        std::wstring path = core().Substitute(TextOf(headerPath));
        if (DriveOf(path).empty())
            path = JoinPath(core().options.setupFolder, path);
        auto opened = std::make_shared<DataSet>();
        opened->product = ReadProduct(FullPath(path));
        opened->FilterFor(core().language, ThisSystem());
        return GiveObject(data, make_object<DataObject>(shared_core(), std::move(opened)));
    });
}

} // namespace vh::engine
