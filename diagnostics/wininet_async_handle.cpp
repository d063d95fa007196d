#include "wininet_async_handle.h"

#include "message_pump.h"

namespace vh {

namespace {

unique_handle AutoResetEvent()
{
    unique_handle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    if (!event)
        throw win32_exception(GetLastError());
    return event;
}

} // namespace

wininet_async_handle::wininet_async_handle(DWORD timeout_ms)
    : m_complete_event(AutoResetEvent()), m_closed_event(AutoResetEvent()), m_timeout_ms(timeout_ms)
{
}

wininet_async_handle::~wininet_async_handle() = default;

LONG wininet_async_handle::add_ref() { return m_references.fetch_add(1) + 1; }

LONG wininet_async_handle::release()
{
    const LONG left = m_references.fetch_sub(1) - 1;
    if (left == 1)
        close_handle();
    else if (left == 0)
        delete this;
    return left;
}

bool wininet_async_handle::wait(DWORD timeout_ms, HANDLE event, bool closing)
{
    if (const DWORD error = GetLastError(); error != ERROR_IO_PENDING) {
        // A call that failed at once has no completion to tell of it.
        if (error != ERROR_SUCCESS)
            set_last_error(error);
        return error == ERROR_SUCCESS;
    }
    const DWORD signal = wait_for(timeout_ms, event);
    if (signal == WAIT_TIMEOUT) {
        if (!closing)
            close_handle();
        set_last_error(ERROR_INTERNET_TIMEOUT);
    } else if (signal == WAIT_FAILED) {
        set_last_error(GetLastError());
    }
    const DWORD error = last_error();
    SetLastError(error);
    return error == ERROR_SUCCESS;
}

DWORD wininet_async_handle::wait_for(DWORD timeout_ms, HANDLE event)
{
    message_pump messages;
    const bool for_completion = event == complete_event();
    // The event of an earlier completion may still be signalled: only the flag says that this one has come.
    while (!for_completion || !m_completed.exchange(false)) {
        const DWORD signal =
            late::msg_wait_for_multiple_objects(1u, &event, FALSE, timeout_ms, static_cast<DWORD>(QS_ALLINPUT));
        if (signal == WAIT_OBJECT_0 + 1)
            messages.run();
        else if (signal != WAIT_OBJECT_0 || !for_completion)
            return signal;
    }
    return WAIT_OBJECT_0;
}

void wininet_async_handle::close_handle()
{
    // A request that has no handle yet is given up: one that still comes is closed where it arrives.
    if (!handle())
        m_context.end();
    const HINTERNET closing = handle();
    if (!closing)
        return;
    ResetEvent(m_closed_event.get());
    if (!late::internet_close_handle(closing))
        wait(m_timeout_ms, m_closed_event.get(), true);
    m_context.end();
    m_handle.store(nullptr, std::memory_order_release);
    // WinInet may still write to it; the next request gets another.
    m_read.reset();
    if (m_references.load() == 1)
        release();
    else
        m_references.fetch_sub(1);
}

// A request opened by its address makes two handles, of which the later one counts; the object holds one reference.
void wininet_async_handle::handle_created(HINTERNET handle)
{
    if (!m_handle.exchange(handle))
        add_ref();
}

void wininet_async_handle::request_complete(const INTERNET_ASYNC_RESULT& result)
{
    if (result.dwResult == 1) {
        on_request_complete();
        set_last_error(ERROR_SUCCESS);
    } else {
        set_last_error(result.dwError);
        if (result.dwResult == 0 && result.dwError == ERROR_INTERNET_EXTENDED_ERROR)
            fetch_response_text();
    }
    m_completed = true;
    // A call that completes in its own thread needs no signal, and signals cost more than a small read.
    if (GetCurrentThreadId() != m_calling_thread)
        SetEvent(m_complete_event.get());
}

void wininet_async_handle::fetch_response_text()
{
    constexpr DWORD units = 1024;
    if (!m_response_text)
        m_response_text.reset(new (std::nothrow) wchar_t[units]);
    DWORD size = units;
    DWORD error = 0;
    if (m_response_text && !late::internet_get_last_response_info(&error, m_response_text.get(), &size))
        m_response_text[0] = L'\0';
}

void wininet_async_handle::call_begins(std::shared_ptr<read_block> block)
{
    m_completed = false;
    m_calling_thread = GetCurrentThreadId();
    m_context.call_begins(std::move(block));
}

} // namespace vh
