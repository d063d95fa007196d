// Managed objects, on a runtime of the test's own behind the binding table.
#include "../../diagnostics/clr_host.h"
#include "../../diagnostics/current_folder.h"
#include "../../diagnostics/late_clr.h"
#include "../../exports/vhrt/objects.h"
#include "../../scriptdata/com_object.h"
#include "../../scriptdata/variant.h"
#include "../support/replaced.h"
#include "../support/temp_folder.h"

template <>
inline constexpr GUID vh::iid_of<IEnumUnknown> = vh::Guid("{00000100-0000-0000-C000-000000000046}");

namespace {

using namespace vh;

// The runtime: what it has, what it is asked, and which call fails.
std::wstring g_log, g_fails;
std::vector<std::wstring> g_installed;
std::wstring g_wanted;
std::vector<std::wstring> g_domains;
int g_live = 0;

HRESULT Step(const std::wstring& what)
{
    g_log += what + L"|";
    return !g_fails.empty() && what.starts_with(g_fails) ? E_ABORT : S_OK;
}
HRESULT GiveText(const std::wstring& text, wchar_t* buffer, DWORD* size)
{
    EXPECT_EQ(*size, 260u);
    wcscpy(buffer, text.c_str());
    return S_OK;
}

std::wstring LastOf(std::wstring_view path) { return std::wstring(path.substr(path.rfind(L'\\') + 1)); }

template <class Interface>
class Counted : public com_object<Interface> {
public:
    Counted() { ++g_live; }
    ~Counted() override { --g_live; }
};

class Instance final : public Counted<IDispatch> {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
};

class Wrapped final : public Counted<IObjectHandle> {
public:
    HRESULT STDMETHODCALLTYPE Unwrap(VARIANT* object) override
    {
        const HRESULT code = Step(L"unwrap");
        if (code == S_OK && g_fails != L"nothing") {
            object->vt = VT_UNKNOWN;
            object->punkVal = make_object<Instance>().detach();
        }
        return code;
    }
};

class Domain final : public Counted<IAppDomain> {
public:
    explicit Domain(std::wstring name) : m_name(std::move(name)) {}
    HRESULT STDMETHODCALLTYPE CreateInstanceFrom(BSTR assembly, BSTR type, IUnknown** handle) override
    {
        wchar_t folder[MAX_PATH];
        GetCurrentDirectoryW(MAX_PATH, folder);
        const HRESULT code =
            Step(L"create " + std::wstring(assembly) + L" " + type + L" in " + m_name + L" at " + LastOf(folder));
        if (code == S_OK)
            *handle = make_object<Wrapped>().detach();
        return code;
    }
    HRESULT STDMETHODCALLTYPE GetFriendlyName(BSTR* name) override
    {
        *name = bstr(m_name).detach();
        return S_OK;
    }
    const std::wstring& name() const { return m_name; }

private:
    std::wstring m_name;
};

class Host final : public Counted<ICorRuntimeHost> {
public:
    HRESULT STDMETHODCALLTYPE Start() override { return Step(L"start"); }
    HRESULT STDMETHODCALLTYPE Stop() override { return Step(L"stop"); }
    HRESULT STDMETHODCALLTYPE CreateDomain(const wchar_t* name, IUnknown* evidence, IUnknown** domain) override
    {
        EXPECT_EQ(evidence, nullptr);
        const HRESULT code = Step(std::wstring(L"domain ") + name);
        if (code == S_OK)
            *domain = make_object<Domain>(name).detach();
        return code;
    }
    HRESULT STDMETHODCALLTYPE GetDefaultDomain(IUnknown** domain) override
    {
        *domain = make_object<Domain>(L"default").detach();
        return Step(L"default domain");
    }
    HRESULT STDMETHODCALLTYPE EnumDomains(void** walk) override
    {
        *walk = new std::size_t(0);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE NextDomain(void* walk, IUnknown** domain) override
    {
        std::size_t& at = *static_cast<std::size_t*>(walk);
        if (at == g_domains.size())
            return S_FALSE;
        *domain = make_object<Domain>(g_domains[at++]).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE CloseEnum(void* walk) override
    {
        delete static_cast<std::size_t*>(walk);
        return Step(L"closed");
    }
    HRESULT STDMETHODCALLTYPE UnloadDomain(IUnknown* domain) override
    {
        return Step(L"unload " + static_cast<Domain*>(domain)->name());
    }
};

class Runtime final : public Counted<ICLRRuntimeInfo> {
public:
    explicit Runtime(std::wstring version) : m_version(std::move(version)) {}
    HRESULT STDMETHODCALLTYPE GetVersionString(wchar_t* version, DWORD* size) override
    {
        return GiveText(m_version, version, size);
    }
    HRESULT STDMETHODCALLTYPE GetInterface(REFCLSID clsid, REFIID wanted, void** object) override
    {
        EXPECT_TRUE(clsid == ICorRuntimeHost::clsid && wanted == ICorRuntimeHost::iid);
        const HRESULT code = Step(L"use " + m_version);
        if (code == S_OK)
            *object = static_cast<ICorRuntimeHost*>(make_object<Host>().detach());
        return code;
    }
    HRESULT STDMETHODCALLTYPE BindAsLegacyV2Runtime() override { return Step(L"legacy"); }

private:
    std::wstring m_version;
};

class Runtimes final : public Counted<IEnumUnknown> {
public:
    HRESULT STDMETHODCALLTYPE Next(ULONG count, IUnknown** found, ULONG*) override
    {
        EXPECT_EQ(count, 1u);
        if (m_at == g_installed.size())
            return S_FALSE;
        *found = make_object<Runtime>(g_installed[m_at++]).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumUnknown**) override { return E_NOTIMPL; }

private:
    std::size_t m_at = 0;
};

class MetaHost final : public Counted<ICLRMetaHost> {
public:
    HRESULT STDMETHODCALLTYPE GetVersionFromFile(const wchar_t*, wchar_t* version, DWORD* size) override
    {
        GiveText(g_wanted.empty() ? L"spoilt" : g_wanted, version, size);
        return g_wanted.empty() ? E_FAIL : S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumerateInstalledRuntimes(IEnumUnknown** runtimes) override
    {
        *runtimes = make_object<Runtimes>().detach();
        return S_OK;
    }
};

HRESULT WINAPI MakeMetaHost(REFCLSID clsid, REFIID iid, void** object)
{
    EXPECT_TRUE(clsid == ICLRMetaHost::clsid && iid == ICLRMetaHost::iid);
    *object = static_cast<ICLRMetaHost*>(make_object<MetaHost>().detach());
    return S_OK;
}
HRESULT WINAPI BindRuntime(const wchar_t* version, const wchar_t* flavour, DWORD flags, REFCLSID, REFIID, void** object)
{
    EXPECT_TRUE(!version && std::wstring(flavour) == L"wks" && flags == 4);
    const HRESULT code = Step(L"old");
    if (code == S_OK)
        *object = static_cast<ICorRuntimeHost*>(make_object<Host>().detach());
    return code;
}

class ManagedObjects : public testing::Test {
protected:
    void SetUp() override
    {
        g_log = g_fails = g_wanted = L"";
        g_installed = {L"v2.0.50727", L"v4.0.30319"};
        g_domains = {};
        GetCurrentDirectoryW(MAX_PATH, m_before);
    }
    void TearDown() override
    {
        EXPECT_EQ(g_live, 0);
        wchar_t now[MAX_PATH];
        GetCurrentDirectoryW(MAX_PATH, now);
        EXPECT_STREQ(m_before, now);
    }
    // The exception's code, or the result.
    template <class Body>
    static HRESULT CodeOf(Body&& body)
    {
        g_log.clear();
        try {
            return body();
        } catch (const com_exception& raised) {
            return raised.code();
        } catch (const win32_exception& raised) {
            return static_cast<HRESULT>(raised.code());
        }
    }
    static HRESULT Create(const std::wstring& assembly, const wchar_t* domain = L"")
    {
        variant object(L"old");
        const HRESULT code =
            CodeOf([&] { return _DotNetCoCreateObject(assembly.c_str(), L"N.C", domain, &object.get()); });
        EXPECT_EQ(object.type(), code == S_OK ? VT_DISPATCH : VT_EMPTY);
        return code;
    }

    const Replaced<decltype(late::clr_create_instance)> newest{late::clr_create_instance, &MakeMetaHost};
    const Replaced<decltype(late::cor_bind_to_runtime)> old{late::cor_bind_to_runtime, &BindRuntime};
    wchar_t m_before[MAX_PATH];
};

TEST_F(ManagedObjects, TakeTheRuntimeThatTheAssemblyWantsOrTheNewest)
{
    const TempFolder folder;
    const std::wstring file = folder.Write(L"a.dll", "x");
    const std::wstring made = L"start|default domain|create " + file + L" N.C in default at ";
    const std::wstring rest = made + LastOf(m_before) + L"|unwrap|";
    using Names = std::vector<std::wstring>;
    const Table<std::wstring, Names, std::wstring> cases = {
        {L"", Names{L"v2.0.50727", L"v4.0.30319"}, L"use v4.0.30319|legacy|" + rest},
        {L"", Names{L"v4.0.30319", L"v2.0.50727"}, L"use v4.0.30319|legacy|" + rest},
        {L"v2.0.50727", Names{L"v2.0.50727", L"v4.0.30319"}, L"use v2.0.50727|" + rest},
        // The walk ends at the first that will do.
        {L"v1.1", Names{L"v2.0.50727", L"v4.0.30319"}, L"use v2.0.50727|" + rest},
        {L"v4.0", Names{L"v2.0.50727", L"v4.0.0", L"v4.0.30319"}, L"use v4.0.30319|" + rest},
        {L"v9", Names{L"v2.0.50727", L"v4.0.30319", L"v3"}, L"use v4.0.30319|" + rest},
        {L"", Names{}, L"old|" + rest}};
    for (const auto& [wanted, installed, log] : cases) {
        g_wanted = wanted;
        g_installed = installed;
        EXPECT_GIVES(Create(file), S_OK, g_log, log);
    }
    // No file: from the program's folder, and in a domain of its own.
    SetUp();
    EXPECT_EQ(Create(L"Some.Assembly", L"mine"), S_OK);
    EXPECT_EQ(g_log, L"use v4.0.30319|legacy|start|domain mine|create Some.Assembly N.C in mine at bin|unwrap|");
}

TEST_F(ManagedObjects, RaiseWhatFails)
{
    const Table<const wchar_t*, HRESULT, std::wstring> cases = {
        {L"use", S_OK, L"use v4.0.30319|old|start|"},
        {L"legacy", S_OK, L"use v4.0.30319|legacy|start|"},
        {L"start", E_ABORT, L"use v4.0.30319|legacy|start|old|start|"},
        {L"domain", E_ABORT, L"use v4.0.30319|legacy|start|domain d|"},
        {L"create", E_ABORT, L"use v4.0.30319|legacy|start|domain d|create"},
        {L"unwrap", E_ABORT, L"use v4.0.30319|legacy|start|domain d|create"},
        {L"nothing", E_NOINTERFACE, L"use v4.0.30319|legacy|start|domain d|create"}};
    for (const auto& [step, code, log] : cases) {
        g_fails = step;
        EXPECT_EQ(Create(L"A", L"d"), code) << step;
        EXPECT_TRUE(g_log.starts_with(log)) << g_log;
    }
    SetUp();
    g_installed.clear();
    g_fails = L"old";
    EXPECT_EQ(Create(L"A"), E_ABORT);
    const Replaced none(late::cor_bind_to_runtime);
    EXPECT_EQ(Create(L"A"), ERROR_INVALID_FUNCTION);
    EXPECT_EQ(_DotNetCoCreateObject(L"A", L"B", nullptr, nullptr), E_INVALIDARG);
    const Patched no_library(
        "LoadLibraryExW", +[](const wchar_t*, HANDLE, DWORD) WINAPI -> HMODULE { return nullptr; });
    EXPECT_EQ(Create(L"A"), ERROR_FILE_NOT_FOUND);
}

TEST_F(ManagedObjects, UnloadAllDomainsOfAName)
{
    g_domains = {L"Mine", L"other", L"MINE", L"Mine2"};
    const auto unload = [](const wchar_t* name) { return CodeOf([&] { return _DotNetUnloadAppDomain(name); }); };
    const std::wstring bound = L"use v4.0.30319|legacy|start|";
    EXPECT_GIVES(unload(L"mine"), 0, g_log, bound + L"unload Mine|unload MINE|closed|");
    EXPECT_GIVES(unload(L"none"), -1, g_log, bound + L"closed|");
    EXPECT_GIVES(unload(nullptr), -1, g_log, bound + L"closed|");
    g_fails = L"unload";
    EXPECT_GIVES(unload(L"mine"), E_ABORT, g_log, bound + L"unload Mine|closed|");
}

} // namespace
