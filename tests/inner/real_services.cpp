// Stopping real services, traced. Which ones depend on which is told by a stand-in: not every platform lists them.
#include "../../diagnostics/trace.h"
#include "../../scriptdata/unique.h"
#include "../../system/late_advapi32.h"
#include "../../system/service_stop.h"
#include "../support/replaced.h"
#include "../support/traced_library.h"

namespace {

using namespace vh;

// Installed and running while it lives.
class Service : Pinned {
public:
    Service(const wchar_t* name, const wchar_t* how)
        : m_end(CreateEventW(nullptr, TRUE, FALSE, name)),
          m_runs(CreateEventW(nullptr, TRUE, FALSE, (std::wstring(name) + L" runs").c_str()))
    {
        wchar_t own[MAX_PATH];
        GetModuleFileNameW(nullptr, own, MAX_PATH);
        const std::wstring folder(own, std::wstring_view(own).rfind(L'\\') + 1);
        const std::wstring command = L"\"" + folder + L"vhrt_test_service.exe\" " + name + L" " + how;
        m_service =
            CreateServiceW(m_manager, name, name, SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START,
                           SERVICE_ERROR_IGNORE, command.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
        EXPECT_TRUE(m_service && StartServiceW(m_service, 0, nullptr)) << GetLastError();
        EXPECT_EQ(WaitForSingleObject(m_runs.get(), 10000), WAIT_OBJECT_0);
        SERVICE_STATUS_PROCESS status{};
        DWORD size = 0;
        QueryServiceStatusEx(m_service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), sizeof(status),
                             &size);
        m_process.reset(OpenProcess(SYNCHRONIZE, FALSE, status.dwProcessId));
    }
    ~Service()
    {
        SetEvent(m_end.get());
        EXPECT_EQ(WaitForSingleObject(m_process.get(), 10000), WAIT_OBJECT_0);
        DeleteService(m_service);
        CloseServiceHandle(m_service);
        CloseServiceHandle(m_manager);
    }
    DWORD State() const
    {
        SERVICE_STATUS status{};
        QueryServiceStatus(m_service, &status);
        return status.dwCurrentState;
    }

private:
    const unique_handle m_end, m_runs;
    unique_handle m_process;
    SC_HANDLE m_manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    SC_HANDLE m_service = nullptr;
};

std::vector<std::wstring> g_dependents;

BOOL WINAPI List(SC_HANDLE, DWORD, ENUM_SERVICE_STATUSW* records, DWORD size, DWORD* needed, DWORD* count)
{
    *needed = static_cast<DWORD>(g_dependents.size() * sizeof(*records));
    SetLastError(ERROR_MORE_DATA);
    if (size < *needed)
        return FALSE;
    for (std::size_t i = 0; i < g_dependents.size(); ++i)
        records[i].lpServiceName = g_dependents[i].data();
    *count = static_cast<DWORD>(g_dependents.size());
    return TRUE;
}

// The result of stopping "VHTestMain", and the records of it without the waits.
std::string Stopped()
{
    const TempFolder folder;
    const std::wstring path = folder / L"trace";
    RegSetKeyValueW(HKEY_CURRENT_USER, L"VHlogit", L"FileNamePath", REG_SZ, path.c_str(),
                    static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t)));
    TraceInitialize(nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"VHlogit");
    const bool stopped = StopServiceWithDependents(L"VHTestMain");
    TraceShutdown();
    trace_enabled = false;
    std::string text = DecodedTrace(path);
    text.erase(0, text.find("VHFuncBegin"));
    std::string kept = stopped ? "true|" : "false|";
    for (std::size_t at = 0, end; (end = text.find("\r\n", at)) != text.npos; at = end + 2) {
        const std::string line = text.substr(at, end - at);
        if (line.find("Service stop pending.") == line.npos)
            kept += line.substr(line.rfind('|') + 1) + "|";
    }
    return kept;
}

ULONGLONG g_clock;
ULONGLONG WINAPI HastyClock() { return g_clock += 16000; }

TEST(RealServices, StopInTheirOrder)
{
    const std::string begin = "ServiceName=VHTestMain|";
    const std::string failed = "ServiceName=VHTestMain\tMessage=Failed to stop services.|";
    const std::string alone = "Message=There are no running dependent services.|";
    EXPECT_EQ(Stopped(), "false|" + begin + failed) << "no such service";
    {
        const Service main(L"VHTestMain", L"stops");
        EXPECT_EQ(Stopped(),
                  "true|" + begin + alone + "ServiceName=VHTestMain\tMessage=Service stopped successfully.|");
        EXPECT_EQ(main.State(), static_cast<DWORD>(SERVICE_STOPPED));
        EXPECT_EQ(Stopped(), "true|" + begin + "ServiceName=VHTestMain\tMessage=Service already stopped.|");
    }
    {
        const Service main(L"VHTestMain", L"refuses");
        EXPECT_EQ(Stopped(), "false|" + begin + alone + failed);
        EXPECT_EQ(main.State(), static_cast<DWORD>(SERVICE_RUNNING));
    }
    {
        const Service main(L"VHTestMain", L"hangs");
        const Patched clock("GetTickCount64", HastyClock);
        EXPECT_EQ(Stopped(), "false|" + begin + alone + "Message=Service stop timed out.|" + failed);
        // It is still about to stop.
        EXPECT_EQ(Stopped(), "false|" + begin + "Message=Service stop timed out.|" + alone + failed);
    }
    const Replaced lists(late::enum_dependents, &List);
    const Service main(L"VHTestMain", L"stops"), middle(L"VHTestMiddle", L"stops"), other(L"VHTestFar", L"refuses");
    g_dependents = {L"VHTestFar", L"VHTestMiddle"};
    EXPECT_EQ(Stopped(), "false|" + begin + "ServiceName=VHTestFar\tMessage=Service failed to stop.|" + failed);
    EXPECT_EQ(middle.State(), static_cast<DWORD>(SERVICE_RUNNING)) << "the first that fails ends it";
    g_dependents = {L"VHTestMiddle"};
    EXPECT_EQ(Stopped(), "true|" + begin + "ServiceName=VHTestMiddle\tMessage=Service stopped successfully.|" +
                             "ServiceName=VHTestMain\tMessage=Service stopped successfully.|");
    EXPECT_EQ(middle.State(), static_cast<DWORD>(SERVICE_STOPPED));
}

} // namespace
