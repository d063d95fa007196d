// A download as the documents of WinInet's asynchronous mode show it: each call is followed by a wait for its event.
#pragma once

#include <windows.h>

#include "../diagnostics/late_wininet.h"
#include "../scriptdata/unique.h"

namespace bench {

// How the loop waits. The quiet one does without the two calls to the server that each pass of the plain one makes.
enum class signals { always, from_other_threads };

class bare_download {
public:
    // A failure ends the program.
    bare_download(const wchar_t* address, signals how);
    bare_download(const bare_download&) = delete;
    bare_download& operator=(const bare_download&) = delete;

    // Reads `step` bytes at a time, and after `small_ms` milliseconds `large_step`. Fewer than `size` are the end.
    DWORD Read(char* buffer, DWORD size, DWORD step, DWORD small_ms = INFINITE, DWORD large_step = 0);

private:
    static void CALLBACK Report(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD);
    void Begin();
    void Finish(bool done);

    signals m_how;
    DWORD m_thread = GetCurrentThreadId();
    DWORD m_error = 0;
    vh::unique_handle m_completed;
    vh::unique_inet m_session;
    vh::unique_inet m_request;
};

} // namespace bench
