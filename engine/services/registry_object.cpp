#include "registry_object.h"

#include "registry_access.h"

namespace vh::engine {

namespace {

constexpr HRESULT not_found = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);

std::string BytesOf(const VARIANT& value)
{
    if (value.vt != VT_BSTR || !value.bstrVal)
        return {};
    return {reinterpret_cast<const char*>(value.bstrVal), SysStringByteLen(value.bstrVal)};
}

// From the form that crosses the interface to the form that the registry holds.
std::optional<RawValue> FromVariant(const Core& core, long type, const VARIANT& given)
{
    variant value;
    if (FAILED(VariantCopyInd(value.put(), const_cast<VARIANT*>(&given))))
        return std::nullopt;
    switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
    case REG_MULTI_SZ: {
        if (FAILED(value.change(VT_BSTR)))
            return std::nullopt;
        const std::wstring text(value.text());
        return TextValue(static_cast<DWORD>(type), core.registryTexts ? core.Substitute(text) : text);
    }
    case REG_BINARY:
        return RawValue{REG_BINARY, BytesOf(value.get())};
    case REG_DWORD:
        if (FAILED(value.change(VT_UI4)))
            return std::nullopt;
        return NumberValue(value.get().ulVal);
    default:
        return std::nullopt;
    }
}

HRESULT ToVariant(const RawValue& raw, VARIANT* out)
{
    switch (raw.type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
    case REG_MULTI_SZ: {
        std::wstring_view text(reinterpret_cast<const wchar_t*>(raw.bytes.data()), raw.bytes.size() / sizeof(wchar_t));
        if (!text.empty() && text.back() == L'\0')
            text.remove_suffix(1);
        variant(text).detach(out);
        return S_OK;
    }
    case REG_DWORD: {
        DWORD number = 0;
        memcpy(&number, raw.bytes.data(), std::min(raw.bytes.size(), sizeof number));
        variant(static_cast<long>(number)).detach(out);
        return S_OK;
    }
    default: {
        bstr bytes;
        bytes.attach(SysAllocStringByteLen(raw.bytes.data(), static_cast<UINT>(raw.bytes.size())));
        if (!bytes)
            return E_OUTOFMEMORY;
        variant(std::move(bytes)).detach(out);
        return S_OK;
    }
    }
}

HRESULT GiveNames(const RegistryPlace& place, KeyNames kind, SAFEARRAY** out)
{
    std::vector<std::wstring> names;
    const LSTATUS code = NamesIn(place, kind, names);
    return code == ERROR_SUCCESS ? GiveTexts(out, names) : FromWin32(static_cast<DWORD>(code));
}

} // namespace

RegistryPlace RegistryObject::Place(LONG64 root, BSTR key) const
{
    return Redirected(core(), PlaceOf(root, TextOf(key), core().registryOptions & registry_view32));
}

HRESULT RegistryObject::CreateKey(LONG64 root, BSTR key, BSTR keyClass, VARIANT_BOOL shared, ISetupLog* log)
{
    return Call("ISetupRegistry.CreateKey", root, key, keyClass, shared)([&] {
        MakeKey(RecordingFor(log), Place(root, key), TextOf(keyClass), {});
        return S_OK;
    });
}

HRESULT RegistryObject::SetValue(LONG64 root, BSTR key, BSTR name, long type, VARIANT* value, ISetupLog* log)
{
    return Call("ISetupRegistry.SetValue", root, key, name, type)([&] {
        if (!value)
            return E_POINTER;
        const auto raw = FromVariant(core(), type, *value);
        if (!raw)
            return E_INVALIDARG;
        WriteValue(RecordingFor(log), Place(root, key), TextOf(name), *raw, {});
        return S_OK;
    });
}

HRESULT RegistryObject::QueryValue(LONG64 root, BSTR key, BSTR name, long* type, VARIANT* value)
{
    return Call("ISetupRegistry.QueryValue", root, key, name)([&] {
        if (!type || !value)
            return E_POINTER;
        const auto raw = ReadValue(Place(root, key), TextOf(name));
        if (!raw)
            return not_found;
        *type = static_cast<long>(raw->type);
        return ToVariant(*raw, value);
    });
}

HRESULT RegistryObject::DeleteKey(LONG64 root, BSTR key, long reserved)
{
    return Call("ISetupRegistry.DeleteKey", root, key, reserved)([&] {
        const RegistryPlace place = Place(root, key);
        return place.key.empty() ? E_INVALIDARG : FromWin32(static_cast<DWORD>(DeleteTree(*core().log, place)));
    });
}

HRESULT RegistryObject::DeleteValue(LONG64 root, BSTR key, BSTR name)
{
    return Call("ISetupRegistry.DeleteValue", root, key, name)([&] {
        return FromWin32(static_cast<DWORD>(engine::DeleteValue(*core().log, Place(root, key), TextOf(name))));
    });
}

HRESULT RegistryObject::Connect(LONG64 root, BSTR machine, LONG64* remoteKey)
{
    return Call("ISetupRegistry.Connect", root, machine)([&] {
        if (!remoteKey)
            return E_POINTER;
        const std::wstring name = TextOf(machine);
        RegistryPlace place = PlaceOf(root, {}, core().registryOptions & registry_view32);
        unique_key remote;
        LSTATUS code = RegConnectRegistryW(name.c_str(), place.root, remote.put());
        // A run with a root of its own leaves the registry of every machine alone.
        if (code == ERROR_SUCCESS && !core().options.registryRoot.empty()) {
            place = Redirected(core(), std::move(place));
            MakeKey({core().log.get()}, place, {}, {});
            code = OpenKey(place, KEY_ALL_ACCESS, remote);
        }
        if (code != ERROR_SUCCESS)
            throw engine_error(FromWin32(static_cast<DWORD>(code)), name,
                               L"can't connect to the registry: " + SystemText(static_cast<DWORD>(code)));
        *remoteKey = reinterpret_cast<LONG64>(remote.release());
        return S_OK;
    });
}

HRESULT RegistryObject::Disconnect(LONG64 remoteKey)
{
    return Call("ISetupRegistry.Disconnect")([&] {
        const unique_key closed(reinterpret_cast<HKEY>(remoteKey));
        return S_OK;
    });
}

HRESULT RegistryObject::EnumKeys(LONG64 root, BSTR key, SAFEARRAY** keys)
{
    return Call("ISetupRegistry.EnumKeys", root,
                key)([&] { return GiveNames(Place(root, key), KeyNames::keys, keys); });
}

HRESULT RegistryObject::EnumValues(LONG64 root, BSTR key, SAFEARRAY** values)
{
    return Call("ISetupRegistry.EnumValues", root,
                key)([&] { return GiveNames(Place(root, key), KeyNames::values, values); });
}

HRESULT RegistryObject::KeyExists(LONG64 root, BSTR key, VARIANT_BOOL* exists)
{
    return Call("ISetupRegistry.KeyExists", root, key)([&] { return GiveTruth(exists, KeyThere(Place(root, key))); });
}

HRESULT RegistryObject::SetSite(IServiceProvider*)
{
    return Call("ISetupSiteAware.SetSite")([] { return S_OK; });
}

HRESULT RegistryObject::EnableTextSubs(VARIANT_BOOL on)
{
    return Call("ISetupSiteAware.EnableTextSubs", on)([&] {
        core().registryTexts = on != 0;
        return S_OK;
    });
}

HRESULT RegistryObject::SetOptions(long options)
{
    return Call("ISetupRegistryOptions.SetOptions", options)([&] {
        core().registryOptions = options;
        return S_OK;
    });
}

HRESULT RegistryObject::GetOptions(long* options)
{
    return Call("ISetupRegistryOptions.GetOptions")([&] { return Give(options, core().registryOptions); });
}

} // namespace vh::engine
