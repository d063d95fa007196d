#include "object.h"

#include <algorithm>

namespace vh::engine {

namespace {

struct InterfaceName {
    GUID id;
    const wchar_t* name;
};

#define VH_NAME(type)                                                                                                  \
    {                                                                                                                  \
        iid_of<type>, L"" #type                                                                                        \
    }
const InterfaceName interface_names[] = {
    VH_NAME(IUnknown),
    VH_NAME(IDispatch),
    VH_NAME(IServiceProvider),
    VH_NAME(ISetupTextSub),
    VH_NAME(ISetupTextSubEx),
    VH_NAME(ISetupStrings),
    VH_NAME(ISetupInfo),
    VH_NAME(ISetupLog),
    VH_NAME(ISetupLogDB),
    VH_NAME(ISetupRegistry),
    VH_NAME(ISetupSiteAware),
    VH_NAME(ISetupRegistryOptions),
    VH_NAME(ISetupUser),
    VH_NAME(ISetupWindowEx1),
    VH_NAME(ISetupWindowEx2),
    VH_NAME(ISetupWindowEffect),
    VH_NAME(ISetupReboot),
    VH_NAME(ISetupDirs),
    VH_NAME(ISetupResources),
    VH_NAME(ISetupFileRegistrar),
    VH_NAME(ISetupMsiStringTable),
    VH_NAME(ISetupFileOps),
    VH_NAME(ISetupScriptLog),
    VH_NAME(ISetupPermissionHelper),
    VH_NAME(ISetupScriptEvents),
    VH_NAME(ISetupDriverHelper),
    VH_NAME(ISetupShell),
    VH_NAME(ISetupShortcutProperties),
    VH_NAME(ISetupData),
    VH_NAME(ISetupDataEx),
    VH_NAME(ISetupDataModes),
    VH_NAME(ISetupDataValidation),
    VH_NAME(ISetupMediaInfo),
    VH_NAME(ISetupDataFactory),
    VH_NAME(ISetupFeatureHost),
    VH_NAME(ISetupFeatureCosts),
    VH_NAME(ISetupFeatureModes),
    VH_NAME(ISetupItemFileQueries),
    VH_NAME(ISetupItemFiles),
    VH_NAME(ISetupItemTexts),
    VH_NAME(ISetupItemUninstallCost),
    VH_NAME(ISetupProgress),
    VH_NAME(ISetupProgressOpen),
    VH_NAME(ISetupProgressLink),
    VH_NAME(ISetupProgressCost),
    VH_NAME(ISetupRebootPhase),
    VH_NAME(ISetupProgramPhases),
    VH_NAME(ISetupWizard),
    VH_NAME(ISetupUninstallPhases),
};
#undef VH_NAME

} // namespace

std::wstring ArgumentText(const GUID& id)
{
    const auto* known = std::find_if(std::begin(interface_names), std::end(interface_names),
                                     [&](const InterfaceName& entry) { return entry.id == id; });
    if (known != std::end(interface_names))
        return known->name;
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

std::wstring ArgumentText(const VARIANT& value)
{
    if (value.vt == VT_BSTR)
        return ArgumentText(value.bstrVal);
    variant copy;
    if (FAILED(VariantCopyInd(copy.put(), const_cast<VARIANT*>(&value))) || FAILED(copy.change(VT_BSTR)))
        return L"type " + Number(value.vt);
    return std::wstring(copy.text());
}

HRESULT GiveTexts(SAFEARRAY** out, const std::vector<std::wstring>& texts)
{
    if (!out)
        return E_POINTER;
    safe_array array(SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts.size())));
    if (!array)
        return E_OUTOFMEMORY;
    for (long i = 0; i < static_cast<long>(texts.size()); ++i)
        ThrowIfFailed(
            SafeArrayPutElement(array.get(), &i, bstr(std::wstring_view(texts[static_cast<std::size_t>(i)])).get()));
    *out = array.detach();
    return S_OK;
}

HRESULT GiveTexts(VARIANT* out, const std::vector<std::wstring>& texts)
{
    if (!out)
        return E_POINTER;
    SAFEARRAY* array = nullptr;
    const HRESULT code = GiveTexts(&array, texts);
    VariantInit(out);
    if (SUCCEEDED(code)) {
        out->vt = VT_ARRAY | VT_BSTR;
        out->parray = array;
    }
    return code;
}

HRESULT GiveNumbers(VARIANT* out, const std::vector<long>& numbers)
{
    if (!out)
        return E_POINTER;
    safe_array array(SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(numbers.size())));
    if (!array)
        return E_OUTOFMEMORY;
    for (long i = 0; i < static_cast<long>(numbers.size()); ++i) {
        long number = numbers[static_cast<std::size_t>(i)];
        ThrowIfFailed(SafeArrayPutElement(array.get(), &i, &number));
    }
    VariantInit(out);
    out->vt = VT_ARRAY | VT_I4;
    out->parray = array.detach();
    return S_OK;
}

} // namespace vh::engine
