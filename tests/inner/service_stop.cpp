// Stopping services, on a service manager of the test's own.
#include "../../system/service_stop.h"
#include "../../system/late_advapi32.h"
#include "../support/replaced.h"

namespace {

using namespace vh;

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

} // namespace
