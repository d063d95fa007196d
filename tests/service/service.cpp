// A service for tests: vhrt_test_service NAME HOW
// "stops" does as it is told, "refuses" takes no stop, "hangs" says that it is about to stop, and all end once the
// event NAME is set. The event "NAME runs" tells that it runs.
#include <windows.h>

#include <cwchar>

namespace {

wchar_t g_name[64], g_how[16];
HANDLE g_end;
SERVICE_STATUS_HANDLE g_service;

bool Is(const wchar_t* how) { return wcscmp(g_how, how) == 0; }

void Tell(DWORD state)
{
    SERVICE_STATUS status{};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = Is(L"refuses") ? 0 : SERVICE_ACCEPT_STOP;
    status.dwWaitHint = 20;
    SetServiceStatus(g_service, &status);
}

DWORD WINAPI Handle(DWORD control, DWORD, void*, void*)
{
    if (control != SERVICE_CONTROL_STOP)
        return NO_ERROR;
    Tell(SERVICE_STOP_PENDING);
    if (!Is(L"hangs"))
        SetEvent(g_end);
    return NO_ERROR;
}

void WINAPI Run(DWORD, wchar_t**)
{
    g_service = RegisterServiceCtrlHandlerExW(g_name, &Handle, nullptr);
    Tell(SERVICE_RUNNING);
    wchar_t runs[80];
    wcscat(wcscpy(runs, g_name), L" runs");
    HANDLE const told = OpenEventW(EVENT_MODIFY_STATE, FALSE, runs);
    SetEvent(told);
    CloseHandle(told);
    // Nobody leaves it behind for ever.
    WaitForSingleObject(g_end, 60000);
    Tell(SERVICE_STOPPED);
}

} // namespace

int wmain(int count, wchar_t** words)
{
    if (count != 3)
        return 2;
    wcsncpy(g_name, words[1], 63);
    wcsncpy(g_how, words[2], 15);
    g_end = CreateEventW(nullptr, TRUE, FALSE, g_name);
    const SERVICE_TABLE_ENTRYW table[] = {{g_name, &Run}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherW(table) ? 0 : 1;
}
