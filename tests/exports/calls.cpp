// Calls out of the script: foreign functions, and processes of the test's own.
#include "../support/traced_library.h"

#include <tlhelp32.h>

using vh::unique_handle;

// What the tests call: this program is a library of its own.
extern "C" {
__declspec(dllexport) int32_t __stdcall VHTestSum(int32_t value, wchar_t* text, int32_t third)
{
    if (text)
        text[0] = L'#';
    return value + third;
}
// Takes more from the stack than belongs to it.
__declspec(dllexport) __attribute__((naked)) int32_t VHTestUnbalanced() { __asm__("mov $42, %eax\n\tret $24"); }
}

namespace {

TEST(ForeignCalls, PassThreeArgumentsAndTheResult)
{
    const std::wstring self = Beside(L"vhrt_export_tests.exe");
    wchar_t text[] = L"abc";
    EXPECT_GIVES_TEXT(CallDLLFn(self.c_str(), "VHTestSum", 40, text, 2), 42, text, L"#bc");
    EXPECT_EQ(CallDLLFn(self.c_str(), "VHTestSum", -40, nullptr, 2), -38);
    for (int32_t i = 0; i < 5; ++i)
        EXPECT_EQ(CallDLLFn(self.c_str(), "VHTestUnbalanced", i, text, 0), 42) << "the stack is put back";
    EXPECT_EACH(-1, CallDLLFn(self.c_str(), "VHTestNone", 0, nullptr, 0),
                CallDLLFn(self.c_str(), nullptr, 0, nullptr, 0),
                CallDLLFn(L"C:\\no such library.dll", "f", 0, nullptr, 0), CallDLLFn(L"", "f", 0, nullptr, 0),
                CallDLLFn(nullptr, "f", 0, nullptr, 0));
}

TEST(ForeignCalls, LeaveAnEndRecordAlsoWhenSomethingIsMissing)
{
    const std::string text = TracedCalls(nullptr, nullptr, [](auto& library, ObjectContext*) {
        const auto call = VHRT_GET(library, CallDLLFn);
        call(L"kernel32.dll", "GetCurrentProcessId", 0x1F, const_cast<wchar_t*>(L"text"), 1);
        call(L"kernel32.dll", "NoSuchFunction", -1, nullptr, 1);
        call(L"C:\\none.dll", "f", 0, nullptr, 0);
    });
    const auto record = [](const char* fields, const char* result) { return Record("CallDllFx", fields, result); };
    EXPECT_EQ(text,
              record("Dll=kernel32.dll\tFunction=GetCurrentProcessId\tParam00=0x0000001f\tParam01=text", "Success\t") +
                  record("Dll=kernel32.dll\tFunction=NoSuchFunction\tParam00=0xffffffff\tParam01=", failure) +
                  record("Dll=C:\\none.dll\tFunction=f\tParam00=0x00000000\tParam01=", failure));
}

// A process that never begins to run: the system's command processor under a name of the test's own, below a
// process that the test chooses.
class WaitingProcess : Pinned {
public:
    WaitingProcess(const TempFolder& folder, const std::wstring& name, HANDLE parent = GetCurrentProcess())
    {
        const std::wstring path = folder / name;
        CopyFileW((Filled(GetSystemDirectoryW) + L"\\cmd.exe").c_str(), path.c_str(), FALSE);
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        std::vector<char> space(size);
        STARTUPINFOEXW start{};
        start.StartupInfo.cb = sizeof(start);
        start.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(space.data());
        EXPECT_TRUE(InitializeProcThreadAttributeList(start.lpAttributeList, 1, 0, &size));
        EXPECT_TRUE(UpdateProcThreadAttribute(start.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_PARENT_PROCESS, &parent,
                                              sizeof(parent), nullptr, nullptr));
        PROCESS_INFORMATION made{};
        std::wstring command = L"\"" + path + L"\"";
        EXPECT_TRUE(CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE,
                                   CREATE_SUSPENDED | DETACHED_PROCESS | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr,
                                   &start.StartupInfo, &made));
        DeleteProcThreadAttributeList(start.lpAttributeList);
        m_process = unique_handle(made.hProcess);
        const unique_handle thread(made.hThread);
        m_id = static_cast<int32_t>(made.dwProcessId);
    }
    ~WaitingProcess()
    {
        TerminateProcess(m_process.get(), 0);
        WaitForSingleObject(m_process.get(), 10000);
    }

    int32_t id() const { return m_id; }
    HANDLE handle() const { return m_process.get(); }
    bool Runs() const { return WaitForSingleObject(m_process.get(), 0) == WAIT_TIMEOUT; }
    DWORD ExitCode() const
    {
        DWORD code = 0;
        WaitForSingleObject(m_process.get(), 10000);
        GetExitCodeProcess(m_process.get(), &code);
        return code;
    }

private:
    unique_handle m_process;
    int32_t m_id = 0;
};

// The whole family is the test's own: Windows and Wine start helpers below a test program at any time.
TEST(ChildSearch, FindsTheFirstChildAndOpensNoOther)
{
    const TempFolder folder;
    const WaitingProcess parent(folder, L"vhrt parent.exe");
    EXPECT_EQ(_GetRunningChildProcess(parent.id()), 0);
    const WaitingProcess skipped(folder, L"vhrt pstores.exe", parent.handle());
    EXPECT_EQ(_GetRunningChildProcess(parent.id()), 0);
    const WaitingProcess child(folder, L"vhrt child.exe", parent.handle());
    CallCounter<decltype(OpenProcess)> opened("OpenProcess");
    CallCounter<decltype(CreateToolhelp32Snapshot)> snapshots("CreateToolhelp32Snapshot");
    // Processes whose parent the snapshot lacks are asked for it.
    EXPECT_EQ(_GetRunningChildProcessEx(child.id(), child.handle()), 0);
    const auto asked = opened.calls();
    EXPECT_EQ(_GetRunningChildProcess(parent.id()), child.id());
    EXPECT_EQ(opened.calls(), 2 * asked + 2) << "parent and child";
    EXPECT_EQ(snapshots.calls(), 2);
    EXPECT_EQ(_GetRunningChildProcessEx(parent.id(), parent.handle()), child.id());
    EXPECT_EQ(opened.calls(), 3 * asked + 3) << "the parent is open already";
    EXPECT_EQ(_GetRunningChildProcess(child.id()), 0);
    EXPECT_EQ(_GetRunningChildProcessEx2(child.id(), nullptr, 1), nullptr);
    const unique_handle found(_GetRunningChildProcessEx2(parent.id(), nullptr, 0));
    ASSERT_TRUE(found);
    EXPECT_EQ(static_cast<int32_t>(GetProcessId(found.get())), child.id());
    DWORD flags = HANDLE_FLAG_INHERIT;
    EXPECT_TRUE(GetHandleInformation(found.get(), &flags));
    EXPECT_EQ(flags, 0u);
}

TEST(ChildSearch, GoesDeeperOnDemand)
{
    const TempFolder folder;
    const WaitingProcess parent(folder, L"vhrt parent.exe"), between(folder, L"vhrt pstores.exe", parent.handle());
    const WaitingProcess grandchild(folder, L"vhrt grandchild.exe", between.handle());
    EXPECT_EQ(_GetRunningChildProcessEx2(parent.id(), nullptr, 0), nullptr);
    const unique_handle found(_GetRunningChildProcessEx2(parent.id(), parent.handle(), 1));
    ASSERT_TRUE(found);
    EXPECT_EQ(static_cast<int32_t>(GetProcessId(found.get())), grandchild.id());
}

HANDLE WINAPI NoSnapshot(DWORD, DWORD)
{
    SetLastError(ERROR_NOT_SUPPORTED);
    return INVALID_HANDLE_VALUE;
}

TEST(KillProcesses, EndsThoseOfTheNamesAndNoOther)
{
    const TempFolder folder;
    const WaitingProcess first(folder, L"vhrt kill one.exe"), second(folder, L"vhrt kill two.exe");
    const WaitingProcess third(folder, L"vhrt kill three.exe");
    for (const wchar_t* names : {static_cast<const wchar_t*>(nullptr), L"", L";", L";;", L"vhrt kill", L"one.exe",
                                 L"vhrt kill one", L"vhrt kill ?ne.exe", L"vhrt kill one.exe ", L"*"})
        EXPECT_EQ(_KillProcesses(names), 0);
    EXPECT_TRUE(first.Runs() && second.Runs() && third.Runs());
    {
        CallCounter<decltype(OpenProcess)> opened("OpenProcess");
        EXPECT_EQ(_KillProcesses(L"vhrt no such.exe;VHRT Kill ONE.exe;vhrt kill two.exe"), 0);
        EXPECT_EQ(opened.calls(), 2);
    }
    EXPECT_EACH(1067u, first.ExitCode(), second.ExitCode());
    EXPECT_TRUE(third.Runs());
    CallCounter<decltype(CreateToolhelp32Snapshot)> snapshots("CreateToolhelp32Snapshot", NoSnapshot);
    EXPECT_EQ(_KillProcesses(L"vhrt kill three.exe"), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(_KillProcesses(L";"), 0) << "nothing to look for";
    EXPECT_TRUE(third.Runs());
    EXPECT_EQ(_GetRunningChildProcess(static_cast<int32_t>(GetCurrentProcessId())), 0) << "no list, no child";
}

} // namespace
