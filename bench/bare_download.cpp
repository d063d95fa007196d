#include "bare_download.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace late = vh::late;

namespace bench {

bare_download::bare_download(const wchar_t* address, signals how)
    : m_how(how), m_completed(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      m_session(late::internet_open(L"vhrt_bench", static_cast<DWORD>(INTERNET_OPEN_TYPE_PRECONFIG), nullptr, nullptr,
                                    static_cast<DWORD>(INTERNET_FLAG_ASYNC)))
{
    late::internet_set_status_callback(m_session.get(), &Report);
    Begin();
    Finish(late::internet_open_url(
               m_session.get(), address, nullptr, 0u,
               static_cast<DWORD>(INTERNET_FLAG_RELOAD | INTERNET_FLAG_KEEP_CONNECTION | INTERNET_FLAG_PRAGMA_NOCACHE),
               reinterpret_cast<DWORD_PTR>(this)) != nullptr);
}

void CALLBACK bare_download::Report(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD)
{
    auto* const self = reinterpret_cast<bare_download*>(context);
    const auto* const result = static_cast<INTERNET_ASYNC_RESULT*>(information);
    if (status == INTERNET_STATUS_HANDLE_CREATED) {
        // The connection's comes first and goes with the session.
        static_cast<void>(self->m_request.release());
        self->m_request.reset(reinterpret_cast<HINTERNET>(result->dwResult));
    } else if (status == INTERNET_STATUS_REQUEST_COMPLETE) {
        self->m_error = result->dwResult ? 0 : result->dwError;
        if (self->m_how == signals::always || GetCurrentThreadId() != self->m_thread)
            SetEvent(self->m_completed.get());
    }
}

void bare_download::Begin()
{
    if (m_how == signals::always)
        ResetEvent(m_completed.get());
}

void bare_download::Finish(bool done)
{
    if (done)
        return;
    DWORD error = GetLastError();
    if (error == ERROR_IO_PENDING) {
        WaitForSingleObject(m_completed.get(), INFINITE);
        error = m_error;
    }
    if (error) {
        std::printf("the bare download fails with %lu\n", error);
        std::exit(3);
    }
}

DWORD bare_download::Read(char* buffer, DWORD size, DWORD step, DWORD small_ms, DWORD large_step)
{
    const DWORD begun = GetTickCount();
    DWORD count = 0;
    while (count < size) {
        if (small_ms != INFINITE && GetTickCount() - begun >= small_ms)
            step = large_step;
        DWORD more = 0;
        Begin();
        Finish(late::internet_read_file(m_request.get(), buffer + count, std::min(step, size - count), &more) != FALSE);
        if (!more)
            break;
        count += more;
    }
    return count;
}

} // namespace bench
