// What stays open in the process after calls that reach the machine's services, those that fail among them.
#include "../../scriptdata/unique.h"
#include "../../scriptdata/variant.h"
#include "../support/handle_counts.h"
#include "../support/session.h"
#include "../support/temp_folder.h"

namespace {

TEST(MachineServices, LeaveNothingOpen)
{
    const Session session;
    const TempFolder folder;
    const std::wstring file = folder.Write(L"file.txt", "x");
    ASSERT_GE(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), 0);
    const std::wstring below = L"Software\\VHHandleTest", key = L"CURRENT_USER\\" + below;
    vh::unique_key made;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, below.c_str(), made.put()), ERROR_SUCCESS);
    int32_t reboot = 0;
    uint32_t size = 0;
    // Whether it succeeds does not matter here.
    const Table<const char*, std::function<void()>> calls = {
        {"rights of a file", [&] { _SetObjectPermissions(session, file.c_str(), 0, L"", L"Users", 1, 0); }},
        {"rights of a key", [&] { _SetObjectPermissions(session, key.c_str(), 2, L"", L"S-1-5-4", KEY_READ, 0); }},
        {"rights by the helper", [&] { _SetObjectPermissions(session, key.c_str(), 2, L"", L"S-1-5-4", KEY_READ, 4); }},
        {"rights of nobody", [&] { _SetObjectPermissions(session, file.c_str(), 0, L"", L"no such account", 1, 0); }},
        {"rights of nothing", [&] { _SetObjectPermissions(session, L"C:\\none", 1, L"", L"Users", 1, 0); }},
        {"services", [&] { _ServiceStopDependentServices(L"no such service"); }},
        {"drivers", [&] { _DIFxDriverPackageInstall(session, L"p", 0, nullptr, &reboot); }},
        {"driver paths", [&] { _DIFxDriverPackageGetPath(session, L"p", nullptr, &size); }},
        {"objects", [&] { _CreateObject(L"Scripting.Dictionary", vh::variant().put()); }},
        {"no object", [&] { _CreateObject(L"No.Such.Class", vh::variant().put()); }},
        {"what runs", [&] { _CoGetObject(L"", L"Scripting.Dictionary", vh::variant().put()); }},
        {"by file", [&] { _CoGetObject(file.c_str(), L"", vh::variant().put()); }},
        {"managed", [&] { EXPECT_ANY_THROW(_DotNetUnloadAppDomain(L"none")); }}};
    for (const auto& [name, call] : calls) {
        // The first ones make what the system keeps for the process.
        for (int warm = 0; warm < 3; ++warm)
            call();
        const int before = OpenHandles();
        for (int run = 0; run < 10; ++run)
            call();
        EXPECT_LT(OpenHandles(), before + 10) << name;
    }
    CoUninitialize();
    RegDeleteKeyW(HKEY_CURRENT_USER, below.c_str());
}

} // namespace
