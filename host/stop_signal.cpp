#include "stop_signal.h"

#include <string>

#include "console.h"
#include "exit_codes.h"

namespace host {

namespace {

// How often the script is looked at, in milliseconds, and after how many looks without a call it is stuck.
constexpr DWORD look_again = 250;
constexpr int most_idle_looks = 8;

std::atomic<StopSignal*> current{nullptr};

unsigned long Wait(const vh::unique_handle& event, DWORD milliseconds = INFINITE)
{
    return WaitForSingleObject(event.get(), milliseconds);
}

// A dialog that waits for the user is closed as by its close box.
BOOL CALLBACK CloseDialog(HWND window, LPARAM)
{
    wchar_t name[16] = L"";
    GetClassNameW(window, name, 16);
    if (IsWindowVisible(window) && IsWindowEnabled(window) && std::wstring_view(name) == L"#32770")
        PostMessageW(window, WM_CLOSE, 0, 0);
    return TRUE;
}

} // namespace

StopSignal::StopSignal(const wchar_t* afterwards)
    : m_afterwards(afterwards), m_asked(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      m_ended(CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_worker([this] { Work(); })
{
    current = this;
    SetConsoleCtrlHandler(OnSignal, TRUE);
}

StopSignal::~StopSignal()
{
    SetConsoleCtrlHandler(OnSignal, FALSE);
    current = nullptr;
    SetEvent(m_ended.get());
    m_worker.join();
}

// Runs on a thread of the system's; while one of them works, the next signal may have to wait. So it only passes on.
BOOL WINAPI StopSignal::OnSignal(DWORD kind)
{
    StopSignal* signal = current;
    if (!signal)
        return FALSE;
    const bool again = Wait(signal->m_asked, 0) == WAIT_OBJECT_0;
    cancelled = true;
    SetEvent(signal->m_asked.get());
    if (again && kind <= CTRL_BREAK_EVENT) {
        Complain(std::wstring(L"ended at once; ") + signal->m_afterwards);
        TerminateProcess(GetCurrentProcess(), exit_rollback);
    }
    // A console that closes, or a session that ends, takes the process along when this returns.
    if (kind > CTRL_BREAK_EVENT)
        WaitForSingleObject(GetCurrentThread(), INFINITE);
    return TRUE;
}

void StopSignal::Work()
{
    const HANDLE events[] = {m_ended.get(), m_asked.get()};
    if (WaitForMultipleObjects(2, events, FALSE, INFINITE) == WAIT_OBJECT_0)
        return;
    Complain(std::wstring(L"stopping; Ctrl+C once more ends the program at once, and ") + m_afterwards);
    int idle = 0;
    do {
        const std::scoped_lock lock(m_lock);
        if (IsStuck(idle))
            TerminateProcess(GetCurrentProcess(), static_cast<UINT>(m_script.take_over()));
    } while (Wait(m_ended, look_again) == WAIT_TIMEOUT);
}

bool StopSignal::IsStuck(int& idle)
{
    if (!m_script.interrupt)
        return false;
    m_script.interrupt();
    if (m_script.busy()) {
        EnumThreadWindows(m_thread, CloseDialog, 0);
        idle = 0;
        return false;
    }
    return ++idle > most_idle_looks;
}

StopSignal::Script::Script(StopSignal& signal, ScriptControl control) : m_signal(signal)
{
    const std::scoped_lock lock(signal.m_lock);
    signal.m_script = std::move(control);
    signal.m_thread = GetCurrentThreadId();
}

StopSignal::Script::~Script()
{
    const std::scoped_lock lock(m_signal.m_lock);
    m_signal.m_script = {};
}

} // namespace host
