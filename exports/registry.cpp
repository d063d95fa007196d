// The registry through the engine's service: keys made uniform, values turned from and into text, writes traced.
#include "vhrt/registry.h"

#include <algorithm>
#include <cstdlib>

#include "../diagnostics/trace.h"
#include "../diagnostics/trace_formats.h"
#include "../runtime/add_texts.h"
#include "../runtime/frame.h"
#include "../scriptdata/results.h"

namespace {

constexpr vh::TraceFormats create_formats = VH_TRACE_FORMATS(L"\t", L"RootKey=%ld\tKey=%s\tClass=%s\tShared=%ld");
constexpr vh::TraceFormats delete_key_formats = VH_TRACE_FORMATS(L"\t", L"RootKey=%ld\tKey=%s");
constexpr vh::TraceFormats delete_value_formats = VH_TRACE_FORMATS(L"\t", L"RootKey=%ld\tKey=%s\tValue=%s");
constexpr vh::TraceFormats set_formats =
    VH_TRACE_FORMATS(L"\t", L"RootKey=%ld\tKey=%s\tValueName=%s\tValueType=%ld\tValue=%.*s\tValueSize=%ld");

// What the family's results mean beside 0, -1 and the engine's codes.
constexpr int64_t too_small = -5;
constexpr int64_t binary_value = -10;

// Roots are shown by their low half.
constexpr long Shown(int64_t root) { return static_cast<long>(root); }

// The service with a key in the form that it takes.
struct KeyTarget {
    ObjectContext& context;
    ISetupRegistry* service;
    int64_t root;
    vh::bstr key;

    int32_t Exists(bool& exists) const
    {
        VARIANT_BOOL flag = VARIANT_FALSE;
        const HRESULT code = service->KeyExists(root, key.get(), &flag);
        exists = flag != VARIANT_FALSE;
        return code;
    }
};

// The frame of the calls on a key. While connected the root is the remote one; one leading backslash goes.
template <class Body>
int64_t OnAnyKey(ObjectContext* context, int64_t root, const wchar_t* key, Body&& body)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        if (!c.registry)
            return -1;
        std::wstring_view text = vh::View(key);
        if (text.starts_with(L'\\'))
            text.remove_prefix(1);
        return body(KeyTarget{c, c.registry.get(), c.connected ? c.remoteKey : root, vh::bstr(text)});
    });
}

// The same for calls that need a key. A lone backslash passes: emptiness is looked at first.
template <class Body>
int64_t OnKey(ObjectContext* context, int64_t root, const wchar_t* key, Body&& body)
{
    return OnAnyKey(context, root, key,
                    [&](const KeyTarget& target) -> int64_t { return vh::IsEmpty(key) ? -1 : body(target); });
}

// A deletion of something in a key; what is not there is a failure.
template <class Delete>
int32_t DeleteExisting(const KeyTarget& target, const wchar_t* given_key, Delete&& remove)
{
    bool exists = false;
    if (vh::IsEmpty(given_key))
        return -1;
    target.Exists(exists);
    return exists ? vh::FailureOnly(remove()) : -1;
}

// One value on its way to the engine, with its trace records.
class ValueWrite {
public:
    ValueWrite(int64_t root, const wchar_t* key, const wchar_t* name, int32_t type, const wchar_t* shown_value,
               int32_t size)
        : m_root(root), m_key(key), m_name(name), m_type(type), m_value(shown_value), m_size(size),
          m_call(L"RegDBSetKeyValueEx", set_formats.begin, Shown(root), key, name, static_cast<long>(type),
                 ShownUnits(), shown_value, static_cast<long>(size))
    {
    }

    // What is refused before the engine is asked.
    int64_t Refuse(int32_t code) const { return End(code, m_root); }

    int64_t Run(ObjectContext* context, vh::variant value) const
    {
        return OnKey(context, m_root, m_key, [&](const KeyTarget& target) {
            const HRESULT code = target.service->SetValue(target.root, target.key.get(), vh::TextOrEmpty(m_name).get(),
                                                          m_type, &value.get(), target.context.log.get());
            return End(vh::FailureOnly(code), target.root);
        });
    }

private:
    // A text of this type ends by its size: the trace looks no further.
    int ShownUnits() const { return m_type == REG_MULTI_SZ ? std::max(m_size, 0) : INT32_MAX; }
    int64_t End(int32_t code, int64_t root) const
    {
        return m_call.End(code, set_formats.failure, set_formats.success, Shown(root), m_key, m_name,
                          static_cast<long>(m_type), ShownUnits(), m_value, static_cast<long>(m_size));
    }

    int64_t m_root;
    const wchar_t* m_key;
    const wchar_t* m_name;
    int32_t m_type;
    const wchar_t* m_value;
    int32_t m_size;
    vh::TracedCall m_call;
};

// A number given as text, its variables replaced first when that is switched on.
vh::variant NumberFromText(const ObjectContext& context, const wchar_t* text)
{
    stringx number(text);
    if (context.textSubs && context.textSubLocal) {
        // A failing substitution leaves the text as it came back.
        BSTR substituted = vh::bstr(number.view()).detach();
        context.textSubLocal->Substitute(&substituted);
        vh::bstr owned;
        owned.attach(substituted);
        number = owned.view();
    }
    vh::variant value;
    value.get().vt = VT_UI4;
    value.get().ulVal = static_cast<ULONG>(std::atol(number.AsNarrow()));
    return value;
}

int64_t DeliverText(const vh::variant& value, wchar_t* buffer, int32_t* size)
{
    const std::wstring_view text = value.text();
    const auto length = static_cast<int32_t>(text.size());
    if (length >= *size) {
        *size = length + 1;
        return too_small;
    }
    vh::CopyOutUnlimited(text, buffer);
    *size = length;
    return 0;
}

int64_t ConnectFailure(HRESULT code)
{
    constexpr struct {
        uint32_t error;
        int32_t result;
    } known[] = {{ERROR_INVALID_NAME, -3}, {ERROR_BADDB, -4}, {ERROR_DLL_INIT_FAILED, -2}};
    const auto bits = static_cast<uint32_t>(code);
    if ((bits & 0x1FFF0000) == 0x70000)
        for (const auto& one : known)
            if ((bits & 0xFFFF) == one.error)
                return one.result;
    return code;
}

bool CanConnect(int64_t root)
{
    for (const uint32_t accepted : {0x80000002u, 0x80000003u, 0x80000004u})
        if (root == static_cast<int32_t>(accepted))
            return true;
    return false;
}

} // namespace

int64_t _RegConnectRegistry(ObjectContext* context, int64_t root, const wchar_t* machine)
{
    constexpr int64_t connected_already = -6;
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        if (!c.registry)
            return -1;
        if (c.connected)
            return connected_already;
        if (!CanConnect(root))
            return -1;
        const HRESULT code = c.registry->Connect(root, vh::TextOrEmpty(machine).get(), &c.remoteKey);
        if (FAILED(code))
            return ConnectFailure(code);
        c.connected = true;
        return 0;
    });
}

int64_t _RegDisConnectRegistry(ObjectContext* context)
{
    return vh::Framed(context, [](ObjectContext& c) -> int64_t {
        if (!c.registry)
            return -1;
        if (!c.connected)
            return 0;
        if (const HRESULT code = c.registry->Disconnect(c.remoteKey); FAILED(code))
            return code;
        c.remoteKey = 0;
        c.connected = false;
        return 0;
    });
}

// Without a context nothing is connected.
int64_t _RegIsRemoteRegConnected(ObjectContext* context) { return context && context->connected; }

int64_t _RegCreateKey(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* keyClass, int32_t shared)
{
    const vh::TracedCall call(L"RegDBCreateKeyEx", create_formats.begin, Shown(root), key, keyClass,
                              static_cast<long>(shared));
    return OnKey(context, root, key, [&](const KeyTarget& target) -> int64_t {
        const HRESULT code = target.service->CreateKey(target.root, target.key.get(), vh::TextOrEmpty(keyClass).get(),
                                                       shared ? VARIANT_TRUE : VARIANT_FALSE, target.context.log.get());
        return call.End(vh::FailureOnly(code), create_formats.failure, create_formats.success, Shown(target.root), key,
                        keyClass, static_cast<long>(shared));
    });
}

int64_t _RegDeleteKey(ObjectContext* context, int64_t root, const wchar_t* key)
{
    const vh::TracedCall call(L"RegDBDeleteKey", delete_key_formats.begin, Shown(root), key);
    return OnAnyKey(context, root, key, [&](const KeyTarget& target) -> int64_t {
        const int32_t code =
            DeleteExisting(target, key, [&] { return target.service->DeleteKey(target.root, target.key.get(), 0); });
        return call.End(code, delete_key_formats.failure, delete_key_formats.success, Shown(target.root), key);
    });
}

int64_t _RegDeleteValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name)
{
    const vh::TracedCall call(L"RegDBDeleteValue", delete_value_formats.begin, Shown(root), key, name);
    return OnAnyKey(context, root, key, [&](const KeyTarget& target) -> int64_t {
        const int32_t code = DeleteExisting(target, key, [&] {
            return target.service->DeleteValue(target.root, target.key.get(), vh::TextOrEmpty(name).get());
        });
        return call.End(code, delete_value_formats.failure, delete_value_formats.success, Shown(target.root), key,
                        name);
    });
}

int64_t _RegExistsKey(ObjectContext* context, int64_t root, const wchar_t* key)
{
    return OnKey(context, root, key, [](const KeyTarget& target) -> int64_t {
        bool exists = false;
        return FAILED(target.Exists(exists)) ? -1 : exists;
    });
}

int64_t _RegEnum(ObjectContext* context, int64_t root, const wchar_t* key, int32_t kind, ListHandle list)
{
    return OnAnyKey(context, root, key, [&](const KeyTarget& target) -> int64_t {
        if (kind != RegEnumKeys && kind != RegEnumValues)
            return -1;
        vh::safe_array names;
        const HRESULT code = kind == RegEnumKeys
                                 ? target.service->EnumKeys(target.root, target.key.get(), names.put())
                                 : target.service->EnumValues(target.root, target.key.get(), names.put());
        return FAILED(code) ? code : vh::AddTexts(target.context, list, names);
    });
}

int64_t _RegQueryKeyValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name, int32_t* type,
                          wchar_t* buffer, int32_t* size)
{
    static_assert(sizeof(long) == sizeof(int32_t));
    return OnKey(context, root, key, [&](const KeyTarget& target) -> int64_t {
        vh::variant value;
        const HRESULT code = target.service->QueryValue(target.root, target.key.get(), vh::TextOrEmpty(name).get(),
                                                        reinterpret_cast<long*>(type), value.put());
        if (FAILED(code))
            return code;
        if (value.type() == VT_BSTR)
            return *type == REG_BINARY ? binary_value : DeliverText(value, buffer, size);
        if (value.type() != VT_I4)
            return -1;
        vh::CopyOutUnlimited(std::to_wstring(value.get().lVal), buffer);
        *size = sizeof(DWORD);
        return 0;
    });
}

int64_t _RegQueryKeyBinaryValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name,
                                void* buffer, int32_t* size)
{
    return OnKey(context, root, key, [&](const KeyTarget& target) -> int64_t {
        long type = REG_NONE;
        vh::variant value;
        const HRESULT code =
            target.service->QueryValue(target.root, target.key.get(), vh::TextOrEmpty(name).get(), &type, value.put());
        if (FAILED(code))
            return code;
        if (value.type() != VT_BSTR || type != REG_BINARY)
            return -1;
        const BSTR bytes = value.get().bstrVal;
        const auto length = static_cast<int32_t>(SysStringByteLen(bytes));
        if (length >= *size) {
            *size = length + 1;
            return too_small;
        }
        // The byte behind the value is copied too: it is the BSTR's own terminator.
        if (bytes)
            memcpy(buffer, bytes, static_cast<std::size_t>(length) + 1);
        *size = length;
        return 0;
    });
}

int64_t _RegSetKeyValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name, int32_t type,
                        const wchar_t* value, int32_t size)
{
    const ValueWrite write(root, key, name, type, value, size);
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        switch (type) {
        case REG_SZ:
        case REG_EXPAND_SZ:
            return write.Run(context, vh::variant(vh::TextOrEmpty(value)));
        case REG_BINARY:
            return write.Refuse(static_cast<int32_t>(binary_value));
        case REG_DWORD:
            return write.Run(context, NumberFromText(c, value));
        case REG_MULTI_SZ:
            // A size that no text of the caller's can have.
            if (size < 0 || (size > 0 && !value))
                return write.Refuse(-1);
            return write.Run(context, vh::variant(std::wstring_view(value ? value : L"", static_cast<uint32_t>(size))));
        default:
            return write.Refuse(-1);
        }
    });
}

// The trace shows no value: bytes are no text.
int64_t _RegSetKeyBinaryValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name,
                              const void* bytes, int32_t size)
{
    const ValueWrite write(root, key, name, REG_BINARY, nullptr, size);
    return vh::Framed(context, [&](ObjectContext&) -> int64_t {
        if (size < 0 || (size > 0 && !bytes))
            return write.Refuse(-1);
        return write.Run(context, vh::variant(vh::bstr(std::as_bytes(
                                      std::span(static_cast<const char*>(bytes), static_cast<uint32_t>(size))))));
    });
}

int64_t _RegEnableTextSubs(ObjectContext* context, uint8_t on)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        c.textSubs = on != 0;
        const auto service = c.registry.query<ISetupSiteAware>();
        if (!service)
            return -1;
        // 1 gives true, 0 false.
        service->EnableTextSubs(static_cast<VARIANT_BOOL>((on ^ 1) - 1));
        return 0;
    });
}

int64_t _RegGetOptions(ObjectContext* context, int32_t* options)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        const auto service = c.registry.query<ISetupRegistryOptions>();
        if (!service)
            return -1;
        service->GetOptions(reinterpret_cast<long*>(options));
        return 0;
    });
}

int64_t _RegSetOptions(ObjectContext* context, int32_t options)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        const auto service = c.registry.query<ISetupRegistryOptions>();
        if (!service)
            return -1;
        service->SetOptions(options);
        return 0;
    });
}
