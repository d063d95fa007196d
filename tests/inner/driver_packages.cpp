// Driver packages in a 32-bit process on a 64-bit system: through the engine's helper.
#include "../../system/driver_packages.h"
#include "../../runtime/context.h"
#include "../../scriptdata/late_fallbacks.h"
#include "../support/stand.h"

namespace {

// What the helper was asked, and what it answers.
std::wstring g_seen;
HRESULT g_code = S_OK;
short g_restart = 0;
long g_told = 15;

HRESULT Note(const wchar_t* what, BSTR service, BSTR package, long flags, unsigned short info)
{
    g_seen += std::wstring(what) + L" " + service + L" " + package + L" " + std::to_wstring(flags) + L" " +
              std::to_wstring(info) + L"|";
    return g_code;
}

Stand g_helper(
    {ISetupDriverHelper::iid},
    {{15, Stand::Method([](Stand*, BSTR id, BSTR shown, BSTR product, BSTR maker) {
          g_seen += std::wstring(id) + L"," + shown + L"," + (product ? product : L"") + L"," + maker + L"|";
          return S_OK;
      })},
     {16, Stand::Method([](Stand*, BSTR service, BSTR package, long flags) {
          return Note(L"preinstall", service, package, flags, 0);
      })},
     {17, Stand::Method([](Stand*, BSTR service, BSTR package, long flags, unsigned short info, short* reboot) {
          *reboot = g_restart;
          return Note(L"install", service, package, flags, info);
      })},
     {18, Stand::Method([](Stand*, BSTR service, BSTR package, long flags, unsigned short info, short* reboot) {
          *reboot = g_restart;
          return Note(L"uninstall", service, package, flags, info);
      })},
     {19, Stand::Method([](Stand*, BSTR service, BSTR package, long* length, BSTR buffer) {
          *length = g_told;
          if (buffer)
              std::copy_n(L"C:\\store\\p.inf", std::min<UINT>(SysStringLen(buffer), 15), buffer);
          return Note(buffer ? L"path" : L"length", service, package, 0, 0);
      })}});
Stand g_services({iid_of<IServiceProvider>}, {{3, Stand::Method([](Stand*, REFGUID service, REFIID id, void* object) {
                                                   const bool known = service == driver_helper_service &&
                                                                      id == ISetupDriverHelper::iid;
                                                   return known ? g_helper.Give(object) : E_NOINTERFACE;
                                               })}});

TEST(DriverPackages, OfAThirtyTwoBitProcessGoThroughTheHelper)
{
    const Replaced emulated(late::is_wow64_process, [](HANDLE, BOOL* is) WINAPI -> BOOL { return *is = TRUE; });
    ObjectContext context;
    DriverPackages packages(context);
    EXPECT_EQ(packages.Preinstall(L"p", 1), -1) << "no helper";
    com_ptr<IServiceProvider> services;
    g_services.Give(services.put_void());
    packages.Initialise(L"C:\\s", services);

    const INSTALLERINFO by{L"id", L"shown", nullptr, L"maker"};
    const std::wstring at = L" C:\\s\\difxapi.dll p ";
    const Table<bool, const INSTALLERINFO*, short, HRESULT, int32_t, std::wstring> cases = {
        {true, nullptr, 0, S_OK, 5, L"install" + at + L"7 0|"},
        {true, &by, 2, 0x77, 1, L"id,shown,,maker|install" + at + L"7 65535|"},
        {false, &by, -1, E_FAIL, 1, L"id,shown,,maker|uninstall" + at + L"7 65535|"},
        {false, nullptr, 0, S_OK, 5, L"uninstall" + at + L"7 0|"}};
    for (const auto& [install, installer, restart, code, reboot, seen] : cases) {
        g_seen.clear();
        g_restart = restart;
        g_code = code;
        int32_t flag = 5;
        const auto call = install ? &DriverPackages::Install : &DriverPackages::Uninstall;
        EXPECT_GIVES((packages.*call)(L"p", 7, installer, &flag), code, flag, reboot);
        EXPECT_EQ(g_seen, seen);
        EXPECT_EQ((packages.*call)(L"p", 7, nullptr, nullptr), code);
    }
    g_seen.clear();
    g_code = 0x12;
    EXPECT_GIVES(packages.Preinstall(L"p", 3), 0x12, g_seen, L"preinstall" + at + L"3 0|");

    constexpr auto too_small = static_cast<int32_t>(0x8007007A);
    const Table<long, HRESULT, uint32_t, int32_t, uint32_t, const wchar_t*> paths = {
        {15, S_OK, 14, too_small, 15, L"~"}, {15, S_OK, 20, 0, 15, L"C:\\store\\p.inf"}, {0, S_OK, 20, 0, 20, L"~"},
        {4, S_OK, 20, 0, 4, L"C:\\"},        {15, S_OK, 15, 0, 15, L"C:\\store\\p.inf"}, {-1, S_OK, 20, 0, 20, L"~"},
        {15, E_FAIL, 20, E_FAIL, 20, L"~"}};
    for (const auto& [told, code, room, result, size_then, text] : paths) {
        g_told = told;
        g_code = code;
        wchar_t buffer[20] = L"~";
        uint32_t size = room;
        EXPECT_GIVES(packages.GetPath(L"p", buffer, &size), result, size, size_then);
        EXPECT_STREQ(buffer, text) << told;
    }
    g_code = S_OK;
    g_told = 15;
    uint32_t size = 0;
    EXPECT_GIVES(packages.GetPath(L"p", nullptr, &size), too_small, size, 15u);
    EXPECT_EQ(packages.GetPath(L"p", nullptr, nullptr), 0);
    // A length that no memory is left for.
    g_told = 0x7FFFFFFF;
    wchar_t buffer[4] = L"~";
    const Patched none(
        "SysAllocStringLen", +[](const wchar_t*, UINT) WINAPI -> BSTR { return nullptr; });
    EXPECT_GIVES(packages.GetPath(L"p", buffer, &size), -1, std::wstring(buffer), L"~");
}

} // namespace
