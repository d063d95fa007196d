// Servers, type libraries and scripts registered and unregistered, below roots of the test's own.
#include "../../system/registration.h"
#include "../../diagnostics/mapped_file.h"
#include "../../files/remove_tree.h"
#include "../../files/unicode_file.h"
#include "../../system/late_advapi32.h"
#include "../../system/pending_operations.h"
#include "../support/handle_counts.h"
#include "../support/registry_root.h"

#include <oleauto.h>

namespace {

struct Registration : testing::Test {
    RegistryRoot machine{HKEY_LOCAL_MACHINE};
    RegistryRoot user{HKEY_CURRENT_USER};
    TempFolder folder;
};

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
    const std::wstring server = Beside(L"vhrt_test_server.dll");
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
    const std::wstring server = Beside(L"vhrt_test_server.dll");
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

std::wstring MadeTypeLibrary(const std::wstring& path)
{
    com_ptr<ICreateTypeLib2> library;
    EXPECT_EQ(CreateTypeLib2(SYS_WIN64, path.c_str(), library.put()), S_OK);
    const GUID id{0x5D3CDA10, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
    EXPECT_EACH(S_OK, library->SetGuid(id), library->SetVersion(3, 7), library->SetLcid(9));
    wchar_t name[] = L"Tested";
    EXPECT_EACH(S_OK, library->SetName(name), library->SaveAllChanges());
    return path;
}

TEST_F(Registration, OfATypeLibraryIsFoundByItsId)
{
    const std::wstring library = MadeTypeLibrary(folder / L"a b.TLB");
    const std::string narrow = std::filesystem::path(library).string();
    for (const bool per_user : {false, true}) {
        std::optional<RegistryRoot> everybody;
        if (!per_user)
            everybody.emplace(HKEY_CLASSES_ROOT);
        const RegistryRoot& used = per_user ? user : *everybody;
        EXPECT_TRUE(RegisterModule(stringx(library), true, per_user)) << last_file_failure().code;
        EXPECT_NE(used.Shown().find("\\{5D3CDA10-0001-0002-0304-05060708090A}\\3.7\\9\\win64>=" + narrow + "\n"),
                  std::string::npos)
            << used.Shown();
        EXPECT_TRUE(RegisterModule(stringx(library), false, per_user));
        EXPECT_EQ(used.Shown().find("5D3CDA10"), std::string::npos) << used.Shown();
    }
    EXPECT_FALSE(RegisterModule(stringx(library), false, true)) << "not there any more";
    EXPECT_TRUE(FAILED(static_cast<long>(last_file_failure().code)));
}

DWORD g_waited = 0;
bool g_impatient = false;
DWORD WINAPI Wait(HANDLE handle, DWORD limit)
{
    g_waited = limit;
    return OfSystem<decltype(WaitForSingleObject)>("WaitForSingleObject")(handle, g_impatient ? 0 : 60000);
}

TEST_F(Registration, OfAProgramIsItsExitCode)
{
    const Patched wait("WaitForSingleObject", &Wait);
    const unique_handle let_go(CreateEventW(nullptr, TRUE, FALSE, L"vhrt test server"));
    Table<const wchar_t*, bool, DWORD, const char*> cases = {{L"a b0.exe", true, 0, "/REGSERVER"},
                                                             {L"0.EXE", false, 0, "/UNREGSERVER"},
                                                             {L"3.exe", true, 3, "/REGSERVER"},
                                                             {L"9.exe", true, WAIT_TIMEOUT, nullptr}};
    for (const auto& [name, registers, code, said] : cases) {
        const std::wstring program = folder / name;
        ASSERT_TRUE(CopyFileW(Beside(L"vhrt_test_program.exe").c_str(), program.c_str(), FALSE));
        g_impatient = !said;
        EXPECT_EQ(RegisterModule(stringx(program), registers, false), code == 0);
        EXPECT_GIVES(last_file_failure().code, code, g_waited, 5000u);
        const std::string heard = said ? BytesOf(program + L".said") : "";
        EXPECT_EQ(heard.find(said ? said : ""), heard.size() - std::strlen(said ? said : "")) << heard;
    }
    SetEvent(let_go.get());
    EXPECT_FALSE(RegisterModule(stringx(folder / L"none.exe"), true, false));
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(Registration, AndItsNeighboursLeaveNothingOpen)
{
    const stringx good(folder.Write(L"good.rgs", "HKCR\r\n{\r\nA\r\n{\r\nB\r\n}\r\n}")), bad(folder.Write(L"bad", "x"));
    const stringx library(MadeTypeLibrary(folder / L"a.tlb")), server(Beside(L"vhrt_test_server.dll"));
    const stringx text(folder.Write(L"text", std::string("\xFF\xFE"
                                                         "a\0b\0",
                                                         6)));
    ASSERT_TRUE(CopyFileW(Beside(L"vhrt_test_program.exe").c_str(), (folder / L"0.exe").c_str(), FALSE));
    script_fault fault;
    int before = 0;
    for (int run = 0; run <= 100; ++run) {
        for (const bool registers : {true, false}) {
            EXPECT_TRUE(RegisterFromScript(good, L"", registers, false, fault));
            EXPECT_FALSE(RegisterFromScript(bad, L"", registers, false, fault));
            EXPECT_TRUE(RegisterModule(library, registers, true));
            EXPECT_TRUE(RegisterModule(server, registers, true));
        }
        EXPECT_TRUE(run % 5 || RegisterModule(stringx(folder / L"0.exe"), true, false));
        EXPECT_TRUE(ConvertUnicodeFile(text, stringx(folder / L"out"), 1252));
        EXPECT_FALSE(ConvertUnicodeFile(bad, stringx(folder / L"out"), 1252));
        RecordPendingOperation((folder / L"out").c_str(), (folder / L"tree\\a").c_str());
        EXPECT_NE(ApplyPendingOperations(), S_OK) << "no folder";
        folder.Write(L"tree\\b\\c", "");
        RemoveTree(stringx(folder / L"tree"), false);
        if (run == 0)
            before = OpenHandles();
    }
    EXPECT_LE(OpenHandles(), before + 10);
}

} // namespace
