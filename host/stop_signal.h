// Ctrl+C and its like: asks a run or a removal to stop, and stops a script that can't be asked.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

#include <windows.h>

#include "scriptdata/unique.h"

namespace host {

// Somebody wants to stop. Calls of the library fail from then on, transfers and removals end.
inline std::atomic<bool> cancelled{false};

// What the signal's thread does about a script; all of it is called on that thread.
struct ScriptControl {
    // Asks the script engine to end the script, which not every engine does.
    std::function<void()> interrupt;
    // Whether the script is in a call of the host, which will notice by itself.
    std::function<bool()> busy;
    // Undoes the run beside a script that does not end, and gives the exit code.
    std::function<int()> take_over;
};

// From its making to its end the first Ctrl+C asks to stop, and the second ends the process at once. There is one.
class StopSignal {
public:
    // What somebody is told who ends the process, such as "the next run undoes this one".
    explicit StopSignal(const wchar_t* afterwards);
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    ~StopSignal();

    // A script runs on the thread that made this.
    class Script {
    public:
        Script(StopSignal& signal, ScriptControl control);
        Script(const Script&) = delete;
        Script& operator=(const Script&) = delete;
        // Waits forever when the signal's thread has taken the run over.
        ~Script();

    private:
        StopSignal& m_signal;
    };

private:
    static BOOL WINAPI OnSignal(DWORD kind);
    void Work();
    // One look at the script; true when it is not going to end by itself.
    bool IsStuck(int& idle);

    const wchar_t* m_afterwards;
    vh::unique_handle m_asked;
    vh::unique_handle m_ended;
    std::mutex m_lock;
    // What is running, and on which thread; guarded by the lock.
    ScriptControl m_script;
    DWORD m_thread = 0;
    std::thread m_worker;
};

} // namespace host
