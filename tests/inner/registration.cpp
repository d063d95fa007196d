// Servers, type libraries and scripts registered and unregistered, below roots of the test's own.
#include "../../system/registration.h"
#include "../../diagnostics/mapped_file.h"
#include "../../system/late_advapi32.h"
#include "../support/registry_root.h"
#include "../support/replaced.h"
#include "../support/temp_folder.h"

namespace {

using namespace vh;

class Registration : public testing::Test {
protected:
    RegistryRoot machine{HKEY_LOCAL_MACHINE};
    RegistryRoot user{HKEY_CURRENT_USER};
    TempFolder folder;
};

constexpr const char* tree = "Software\nSoftware\\Classes\nSoftware\\Classes\\A\nSoftware\\Classes\\A>=d\n"
                             "Software\\Classes\\A>P=C:\\x\\y\nSoftware\\Classes\\A\\B\n";

TEST_F(Registration, OfAScriptMakesAndDeletesItsKeys)
{
    const stringx script(folder.Write(L"s.rgs",
                                      "HKCR\r\n{\r\nNoRemove A = s 'd'\r\n{\r\nval P = s '%MODULEPATH%\\y'\r\n"
                                      "B\r\n}\r\n}\r\n"));
    script_fault fault;
    for (const bool per_user : {false, true}) {
        const RegistryRoot& used = per_user ? user : machine;
        EXPECT_TRUE(RegisterFromScript(script, L"C:\\x\\", true, per_user, fault));
        EXPECT_EQ(used.Shown(), tree);
        EXPECT_EQ((per_user ? machine : user).Shown(), per_user ? "Software\nSoftware\\Classes\nSoftware\\Classes\\A\n"
                                                                  "Software\\Classes\\A>=d\n"
                                                                  "Software\\Classes\\A>P=C:\\x\\y\n"
                                                                : "");
        EXPECT_TRUE(RegisterFromScript(script, L"", false, per_user, fault));
        EXPECT_TRUE(RegisterFromScript(script, L"", false, per_user, fault)) << "not there any more";
        EXPECT_EQ(used.Shown().find("\\B"), std::string::npos);
        EXPECT_NE(used.Shown().find("Classes\\A>P"), std::string::npos) << "it stays, with its values";
    }
}

TEST_F(Registration, LeavesKeysOfOthersAndTellsFaults)
{
    script_fault fault;
    const stringx script(folder.Write(L"s.rgs", "HKCR\r\n{\r\nForceRemove A\r\n}"));
    EXPECT_TRUE(RegisterFromScript(script, L"", true, false, fault));
    RegSetKeyValueW(machine.key(), L"Software\\Classes\\A\\foreign", L"v", REG_SZ, L"", 2);
    EXPECT_TRUE(RegisterFromScript(script, L"", false, false, fault));
    EXPECT_NE(machine.Shown().find("A\\foreign>v="), std::string::npos);
    EXPECT_FALSE(
        RegisterFromScript(stringx(folder.Write(L"t", "HKCR\r\n{\r\nX\r\nA = d 1\r\n}")), L"", true, true, fault));
    EXPECT_EQ(std::pair(fault.line, fault.column), std::pair(std::size_t{4}, std::size_t{5}));
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(ERROR_INVALID_DATA));
    EXPECT_EQ(user.Shown(), "");
    for (const auto& [path, code] :
         {std::pair(std::wstring(), ERROR_INVALID_PARAMETER), std::pair(folder / L"none", ERROR_FILE_NOT_FOUND),
          std::pair(folder.Write(L"e", ""), ERROR_FILE_INVALID)}) {
        EXPECT_FALSE(RegisterFromScript(stringx(path), L"", true, true, fault));
        EXPECT_GIVES(last_file_failure().code, static_cast<DWORD>(code), fault.reason, nullptr);
    }
}

TEST_F(Registration, OfALibraryCallsItsEntryPoint)
{
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    const std::wstring server =
        std::wstring(own, std::wstring_view(own).rfind(L'\\') + 1).append(L"vhrt_test_server.dll");
    const std::wstring control = folder / L"server.Ocx";
    ASSERT_TRUE(CopyFileW(server.c_str(), control.c_str(), FALSE));
    const RegistryRoot everybody(HKEY_CLASSES_ROOT);
    EXPECT_TRUE(RegisterModule(stringx(control), true, false));
    EXPECT_EQ(everybody.Shown(), "VHRTTestServer\nVHRTTestServer\\shell\nVHRTTestServer\\shell>a=b\n");
    EXPECT_TRUE(RegisterModule(stringx(server), false, false));
    EXPECT_EQ(everybody.Shown(), "");
    EXPECT_FALSE(RegisterModule(stringx(server), false, false)) << "it says that there was nothing";
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)));
}

TEST_F(Registration, ForAUserLiftsTheOverride)
{
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    const std::wstring server =
        std::wstring(own, std::wstring_view(own).rfind(L'\\') + 1).append(L"vhrt_test_server.dll");
    static std::vector<bool> overrides;
    overrides.clear();
    const Replaced watched(
        late::override_root, +[](HKEY root, HKEY key) -> LSTATUS {
            overrides.push_back(key != nullptr);
            return RegOverridePredefKey(root, key);
        });
    EXPECT_TRUE(RegisterModule(stringx(server), true, true));
    EXPECT_NE(user.Shown().find("Software\\Classes\\VHRTTestServer\\shell>a=b"), std::string::npos);
    EXPECT_TRUE(RegisterModule(stringx(server), false, true));
    EXPECT_FALSE(RegisterModule(stringx(folder / L"none.dll"), true, true));
    EXPECT_FALSE(RegisterModule(stringx(folder.Write(L"no.tlb", "x")), true, true));
    EXPECT_EQ(overrides, (std::vector<bool>{true, false, true, false, true, false, true, false}));
    EXPECT_FALSE(RegisterModule(stringx(folder / L"a.exe"), true, true));
    EXPECT_FALSE(RegisterModule(stringx(folder / L"a.txt"), true, false));
    EXPECT_FALSE(RegisterModule(L"C:\\windows\\system32\\kernel32.dll", true, false));
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(ERROR_PROC_NOT_FOUND));
}

} // namespace
