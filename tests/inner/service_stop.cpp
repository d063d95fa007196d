// Stopping services: on a service manager of the test's own, and real ones, traced.
#include "../../system/service_stop.h"
#include "../../diagnostics/trace.h"
#include "../../system/late_advapi32.h"
#include "../support/traced_library.h"

namespace {

struct Service {
    // What it says each time it is asked; the last one for good. 0 fails the query.
    std::vector<DWORD> states;
    bool opens = true, takes_stop = true;
};
std::map<std::wstring, Service> g_services;
std::vector<std::wstring> g_dependents;
DWORD g_list_error = 0;
std::wstring g_log;
int g_open = 0;

SC_HANDLE WINAPI OpenManager(const wchar_t*, const wchar_t*, DWORD access)
{
    EXPECT_EQ(access, 0xF003Fu);
    return g_services.empty() ? nullptr : (++g_open, reinterpret_cast<SC_HANDLE>(&g_services));
}
SC_HANDLE WINAPI Open(SC_HANDLE, const wchar_t* name, DWORD access)
{
    const auto found = g_services.find(name);
    EXPECT_EQ(access, *name == L'a' || *name == L'b' ? 36u : 44u) << name;
    return found == g_services.end() || !found->second.opens ? nullptr
                                                             : (++g_open, reinterpret_cast<SC_HANDLE>(&*found));
}
BOOL WINAPI Close(SC_HANDLE) { return --g_open, TRUE; }
auto& ServiceOf(SC_HANDLE handle) { return *reinterpret_cast<std::pair<const std::wstring, Service>*>(handle); }
BOOL WINAPI Control(SC_HANDLE handle, DWORD code, SERVICE_STATUS*)
{
    g_log += L"stop " + ServiceOf(handle).first + (code == SERVICE_CONTROL_STOP ? L"|" : L" with another code|");
    return ServiceOf(handle).second.takes_stop;
}
BOOL WINAPI Ask(SC_HANDLE handle, SC_STATUS_TYPE, BYTE* record, DWORD, DWORD*)
{
    auto& states = ServiceOf(handle).second.states;
    auto& status = *reinterpret_cast<SERVICE_STATUS_PROCESS*>(record);
    status = {};
    status.dwCurrentState = states.front();
    if (states.size() > 1)
        states.erase(states.begin());
    return status.dwCurrentState != 0;
}
BOOL WINAPI List(SC_HANDLE, DWORD state, ENUM_SERVICE_STATUSW* records, DWORD size, DWORD* needed, DWORD* count)
{
    EXPECT_EQ(state, static_cast<DWORD>(SERVICE_ACTIVE));
    const auto wanted = static_cast<DWORD>(g_dependents.size() * sizeof(*records));
    if (g_list_error || size < wanted) {
        *needed = wanted;
        SetLastError(g_list_error ? g_list_error : ERROR_MORE_DATA);
        return FALSE;
    }
    for (std::size_t i = 0; i < g_dependents.size(); ++i)
        records[i].lpServiceName = g_dependents[i].data();
    *count = static_cast<DWORD>(g_dependents.size());
    return TRUE;
}

TEST(ServiceStop, StopsDependentsFirstAndEndsAtTheFirstFailure)
{
    const Replaced manager(late::open_service_manager, &OpenManager);
    const Replaced open(late::open_service, &Open);
    const Replaced close(late::close_service, &Close);
    const Replaced control(late::control_service, &Control);
    const Replaced ask(late::query_service, &Ask);
    const Replaced list(late::enum_dependents, &List);
    constexpr DWORD stopped = SERVICE_STOPPED, pending = SERVICE_STOP_PENDING, runs = SERVICE_RUNNING;
    using Services = std::map<std::wstring, Service>;
    using Names = std::vector<std::wstring>;
    const Table<Services, Names, DWORD, bool, const wchar_t*> cases = {
        {Services{}, Names{}, 0, false, L""},
        {Services{{L"other", {{runs}}}}, Names{}, 0, false, L""},
        {Services{{L"main", {{stopped}}}}, Names{}, 0, true, L""},
        {Services{{L"main", {{pending, pending, stopped}}}}, Names{}, 0, true, L""},
        // It comes back while it is waited for.
        {Services{{L"main", {{pending, runs, stopped}}}}, Names{}, 0, true, L"stop main|"},
        {Services{{L"main", {{0, stopped}}}}, Names{}, 0, true, L"stop main|"},
        {Services{{L"main", {{runs, runs, pending, stopped}}}}, Names{}, 0, true, L"stop main|"},
        {Services{{L"main", {{runs, 0}}}}, Names{}, 0, false, L"stop main|"},
        {Services{{L"main", {{runs}, true, false}}}, Names{}, 0, false, L"stop main|"},
        {Services{{L"main", {{runs}}}}, Names{}, ERROR_ACCESS_DENIED, false, L""},
        {Services{{L"a", {{stopped}}}, {L"b", {{stopped}}}, {L"main", {{runs, stopped}}}}, Names{L"b", L"a"}, 0, true,
         L"stop b|stop a|stop main|"},
        {Services{{L"a", {{stopped}, false}}, {L"b", {{stopped}}}, {L"main", {{runs, stopped}}}}, Names{L"a", L"b"}, 0,
         false, L""},
        {Services{{L"a", {{stopped}, true, false}}, {L"main", {{runs, stopped}}}}, Names{L"a"}, 0, false, L"stop a|"}};
    for (const auto& [services, dependents, error, result, log] : cases) {
        g_services = services;
        g_dependents = dependents;
        g_list_error = error;
        g_log.clear();
        EXPECT_EQ(StopServiceWithDependents(L"main"), result) << log << services.size();
        EXPECT_EQ(g_log, log);
        EXPECT_EQ(g_open, 0) << "a handle stayed open";
    }
    EXPECT_FALSE(StopServiceWithDependents(nullptr));
}

// Installed and running while it lives.
class RealService : Pinned {
public:
    RealService(const wchar_t* name, const wchar_t* how)
        : m_end(CreateEventW(nullptr, TRUE, FALSE, name)),
          m_runs(CreateEventW(nullptr, TRUE, FALSE, (std::wstring(name) + L" runs").c_str()))
    {
        const std::wstring command = L"\"" + Beside(L"vhrt_test_service.exe") + L"\" " + name + L" " + how;
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
    ~RealService()
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
        const RealService main(L"VHTestMain", L"stops");
        EXPECT_EQ(Stopped(),
                  "true|" + begin + alone + "ServiceName=VHTestMain\tMessage=Service stopped successfully.|");
        EXPECT_EQ(main.State(), static_cast<DWORD>(SERVICE_STOPPED));
        EXPECT_EQ(Stopped(), "true|" + begin + "ServiceName=VHTestMain\tMessage=Service already stopped.|");
    }
    {
        const RealService main(L"VHTestMain", L"refuses");
        EXPECT_EQ(Stopped(), "false|" + begin + alone + failed);
        EXPECT_EQ(main.State(), static_cast<DWORD>(SERVICE_RUNNING));
    }
    {
        const RealService main(L"VHTestMain", L"hangs");
        const Patched clock("GetTickCount64", HastyClock);
        EXPECT_EQ(Stopped(), "false|" + begin + alone + "Message=Service stop timed out.|" + failed);
        // It is still about to stop.
        EXPECT_EQ(Stopped(), "false|" + begin + "Message=Service stop timed out.|" + alone + failed);
    }
    // Not every platform lists them.
    g_list_error = 0;
    const Replaced lists(late::enum_dependents, &List);
    const RealService main(L"VHTestMain", L"stops"), middle(L"VHTestMiddle", L"stops"), other(L"VHTestFar", L"refuses");
    g_dependents = {L"VHTestFar", L"VHTestMiddle"};
    EXPECT_EQ(Stopped(), "false|" + begin + "ServiceName=VHTestFar\tMessage=Service failed to stop.|" + failed);
    EXPECT_EQ(middle.State(), static_cast<DWORD>(SERVICE_RUNNING)) << "the first that fails ends it";
    g_dependents = {L"VHTestMiddle"};
    EXPECT_EQ(Stopped(), "true|" + begin + "ServiceName=VHTestMiddle\tMessage=Service stopped successfully.|" +
                             "ServiceName=VHTestMain\tMessage=Service stopped successfully.|");
    EXPECT_EQ(middle.State(), static_cast<DWORD>(SERVICE_STOPPED));
}

} // namespace
