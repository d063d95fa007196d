// Managed objects, on a runtime of the test's own behind the binding table.
#include "../../diagnostics/clr_host.h"
#include "../../diagnostics/current_folder.h"
#include "../../diagnostics/late_clr.h"
#include "../../exports/vhrt/objects.h"
#include "../support/stand.h"

namespace {

// The runtime: what it has, what it is asked, which call fails, and what it has made.
std::wstring g_log, g_fails, g_wanted;
std::vector<std::wstring> g_installed, g_domains;
std::size_t g_walked = 0;
std::list<Stand> g_made;

HRESULT Step(const std::wstring& what)
{
    g_log += what + L"|";
    return !g_fails.empty() && what.starts_with(g_fails) ? E_ABORT : S_OK;
}
HRESULT GiveText(const std::wstring& text, wchar_t* buffer, const DWORD* size)
{
    EXPECT_EQ(*size, 260u);
    wcscpy(buffer, text.c_str());
    return S_OK;
}
HRESULT GiveAfter(HRESULT code, Stand& object, void* to) { return code == S_OK ? object.Give(to) : code; }
// The next of a walk over names.
HRESULT GiveNext(const std::vector<std::wstring>& names, const Stand& kind, void* to)
{
    return g_walked == names.size() ? S_FALSE : g_made.emplace_back(kind, names[g_walked++]).Give(to);
}
std::wstring Here() { return std::filesystem::current_path().filename().wstring(); }

Stand g_instance({iid_of<IDispatch>}, {});
Stand g_wrapped({IObjectHandle::iid}, {{3, Stand::Method([](Stand*, VARIANT* object) {
                                            const HRESULT code = Step(L"unwrap");
                                            if (code != S_OK || g_fails == L"nothing")
                                                return code;
                                            object->vt = VT_UNKNOWN;
                                            return g_instance.Give(&object->punkVal);
                                        })}});
const Stand g_domain({IAppDomain::iid}, {{38, Stand::Method([](Stand* self, BSTR assembly, BSTR type, void* handle) {
                                              return GiveAfter(Step(L"create " + std::wstring(assembly) + L" " + type +
                                                                    L" in " + self->name() + L" at " + Here()),
                                                               g_wrapped, handle);
                                          })},
                                         {53, Stand::Method([](Stand* self, BSTR* name) {
                                              *name = bstr(self->name()).detach();
                                              return S_OK;
                                          })}});
Stand g_host({ICorRuntimeHost::iid},
             {{10, Stand::Method([](Stand*) { return Step(L"start"); })},
              {11, Stand::Method([](Stand*) { return Step(L"stop"); })},
              {12, Stand::Method([](Stand*, const wchar_t* name, IUnknown* evidence, void* domain) {
                   EXPECT_EQ(evidence, nullptr);
                   return GiveAfter(Step(std::wstring(L"domain ") + name), g_made.emplace_back(g_domain, name), domain);
               })},
              {13, Stand::Method([](Stand*, void* domain) {
                   return GiveAfter(Step(L"default domain"), g_made.emplace_back(g_domain, L"default"), domain);
               })},
              {14, Stand::Method([](Stand*, void** walk) {
                   g_walked = 0;
                   *walk = &g_walked;
                   return S_OK;
               })},
              {15, Stand::Method([](Stand*, void*, void* domain) { return GiveNext(g_domains, g_domain, domain); })},
              {16, Stand::Method([](Stand*, void* walk) {
                   EXPECT_EQ(walk, &g_walked);
                   return Step(L"closed");
               })},
              {20, Stand::Method([](Stand*, Stand* domain) { return Step(L"unload " + domain->name()); })}});
const Stand g_runtime({ICLRRuntimeInfo::iid},
                      {{3, Stand::Method([](Stand* self, wchar_t* version, DWORD* size) {
                            return GiveText(self->name(), version, size);
                        })},
                       {9, Stand::Method([](Stand* self, REFCLSID clsid, REFIID wanted, void* object) {
                            EXPECT_TRUE(clsid == ICorRuntimeHost::clsid && wanted == ICorRuntimeHost::iid);
                            return GiveAfter(Step(L"use " + self->name()), g_host, object);
                        })},
                       {13, Stand::Method([](Stand*) { return Step(L"legacy"); })}});
Stand g_runtimes({}, {{3, Stand::Method([](Stand*, ULONG count, void* found, ULONG*) {
                           EXPECT_EQ(count, 1u);
                           return GiveNext(g_installed, g_runtime, found);
                       })}});
Stand g_meta_host({ICLRMetaHost::iid}, {{4, Stand::Method([](Stand*, const wchar_t*, wchar_t* version, DWORD* size) {
                                             GiveText(g_wanted.empty() ? L"spoilt" : g_wanted, version, size);
                                             return g_wanted.empty() ? E_FAIL : S_OK;
                                         })},
                                        {5, Stand::Method([](Stand*, void* runtimes) {
                                             g_walked = 0;
                                             return g_runtimes.Give(runtimes);
                                         })}});

HRESULT WINAPI MakeMetaHost(REFCLSID clsid, REFIID iid, void** object)
{
    EXPECT_TRUE(clsid == ICLRMetaHost::clsid && iid == ICLRMetaHost::iid);
    return g_meta_host.Give(object);
}
HRESULT WINAPI BindRuntime(const wchar_t* version, const wchar_t* flavour, DWORD flags, REFCLSID, REFIID, void** object)
{
    EXPECT_TRUE(!version && std::wstring(flavour) == L"wks" && flags == 4);
    return GiveAfter(Step(L"old"), g_host, object);
}

struct ManagedObjects : testing::Test {
    void SetUp() override
    {
        g_log = g_fails = g_wanted = L"";
        g_installed = {L"v2.0.50727", L"v4.0.30319"};
        g_domains = {};
    }
    void TearDown() override
    {
        EXPECT_EQ(Stand::references, 0);
        g_made.clear();
        EXPECT_EQ(Here(), m_before);
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
    const std::wstring m_before = Here();
};

TEST_F(ManagedObjects, TakeTheRuntimeThatTheAssemblyWantsOrTheNewest)
{
    const TempFolder folder;
    const std::wstring file = folder.Write(L"a.dll", "x");
    const std::wstring made = L"start|default domain|create " + file + L" N.C in default at ";
    const std::wstring rest = made + m_before + L"|unwrap|";
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
