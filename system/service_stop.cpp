#include "service_stop.h"

#include <algorithm>
#include <vector>

#include "../diagnostics/trace.h"
#include "../scriptdata/unique.h"
#include "late_advapi32.h"

namespace vh {

namespace {

constexpr const wchar_t* operation = L"StopDependentServices";
constexpr ULONGLONG longest_wait_ms = 30000;
constexpr DWORD shortest_wait_ms = 10;
constexpr DWORD longest_hint_ms = 30000;

struct service_traits {
    using value_type = SC_HANDLE;
    static SC_HANDLE none() { return nullptr; }
    static void close(SC_HANDLE service) { late::close_service(service); }
};
using unique_service = unique<service_traits>;

void Tell(const wchar_t* message)
{
    if (trace_enabled)
        VHTracingInternal_TraceEx(operation, operation, L"Message=%s", message);
}
void TellOf(const wchar_t* service, const wchar_t* message)
{
    if (trace_enabled)
        VHTracingInternal_TraceEx(operation, operation, L"ServiceName=%s\tMessage=%s", service, message);
}
bool TellError()
{
    const DWORD error = GetLastError();
    if (trace_enabled)
        VHTracingInternal_TraceEx(operation, operation, L"Error=%s\tGetLastError=0x%08lx\t", L"Unexpected error.",
                                  error);
    return false;
}

bool Query(SC_HANDLE service, SERVICE_STATUS_PROCESS& status)
{
    DWORD needed = 0;
    return late::query_service(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                               static_cast<DWORD>(sizeof(status)), &needed) != FALSE;
}

// Until it has stopped. `while_pending`: only as long as it says that it is about to.
bool WaitForStop(SC_HANDLE service, SERVICE_STATUS_PROCESS status, bool while_pending)
{
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        Tell(L"Service stop pending.");
        // A service may name any number.
        Sleep(std::clamp(status.dwWaitHint, shortest_wait_ms, longest_hint_ms));
        if (!Query(service, status))
            return false;
        if (status.dwCurrentState == SERVICE_STOPPED)
            return true;
        if (while_pending && status.dwCurrentState != SERVICE_STOP_PENDING)
            return false;
        if (GetTickCount64() - start > longest_wait_ms) {
            Tell(L"Service stop timed out.");
            return false;
        }
    }
}

bool IsStopped(SC_HANDLE service)
{
    SERVICE_STATUS_PROCESS status{};
    if (!Query(service, status))
        return false;
    if (status.dwCurrentState == SERVICE_STOP_PENDING)
        return WaitForStop(service, status, true);
    return status.dwCurrentState == SERVICE_STOPPED;
}

bool Stop(SC_HANDLE service)
{
    SERVICE_STATUS_PROCESS status{};
    if (!late::control_service(service, DWORD{SERVICE_CONTROL_STOP}, reinterpret_cast<SERVICE_STATUS*>(&status)))
        return false;
    return WaitForStop(service, status, false);
}

// One pass: the system lists all levels, those first that have to stop first.
bool StopDependents(SC_HANDLE manager, SC_HANDLE service)
{
    DWORD size = 0;
    DWORD count = 0;
    if (late::enum_dependents(service, DWORD{SERVICE_ACTIVE}, LPENUM_SERVICE_STATUSW{nullptr}, DWORD{0}, &size,
                              &count)) {
        Tell(L"There are no running dependent services.");
        return true;
    }
    if (GetLastError() != ERROR_MORE_DATA)
        return TellError();
    // The names stand behind the records, in the same block.
    std::vector<ENUM_SERVICE_STATUSW> found(size / sizeof(ENUM_SERVICE_STATUSW) + 1);
    if (!late::enum_dependents(service, DWORD{SERVICE_ACTIVE}, found.data(), size, &size, &count))
        return TellError();
    for (DWORD i = 0; i < count && i < found.size(); ++i) {
        const wchar_t* name = found[i].lpServiceName;
        const unique_service dependent(late::open_service(manager, name, DWORD{SERVICE_STOP | SERVICE_QUERY_STATUS}));
        if (!dependent || !Stop(dependent.get())) {
            TellOf(name, L"Service failed to stop.");
            return false;
        }
        TellOf(name, L"Service stopped successfully.");
    }
    return true;
}

// The last message; null for a failure.
const wchar_t* StopAll(const wchar_t* name)
{
    const unique_service manager(late::open_service_manager(
        static_cast<const wchar_t*>(nullptr), static_cast<const wchar_t*>(nullptr), DWORD{SC_MANAGER_ALL_ACCESS}));
    if (!manager)
        return nullptr;
    const unique_service service(late::open_service(
        manager.get(), name, DWORD{SERVICE_STOP | SERVICE_ENUMERATE_DEPENDENTS | SERVICE_QUERY_STATUS}));
    if (!service)
        return nullptr;
    if (IsStopped(service.get()))
        return L"Service already stopped.";
    return StopDependents(manager.get(), service.get()) && Stop(service.get()) ? L"Service stopped successfully."
                                                                               : nullptr;
}

} // namespace

bool StopServiceWithDependents(const wchar_t* name)
{
    const wchar_t* shown = name ? name : L"";
    const TracedCall call(operation, L"ServiceName=%s", shown);
    const wchar_t* message = StopAll(shown);
    if (trace_enabled)
        VHTracingInternal_TraceEx(L"VHFuncEnd", operation, L"ServiceName=%s\tMessage=%s", shown,
                                  message ? message : L"Failed to stop services.");
    return message != nullptr;
}

} // namespace vh
