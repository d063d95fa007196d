// One WinInet handle that works in the background, and the wait for it, which keeps the thread's windows alive.
#pragma once

#include <atomic>
#include <memory>

#include "inet_callbacks.h"

namespace vh {

// The order of the virtual functions, here and in the classes below, is fixed.
class wininet_async_handle {
public:
    static constexpr DWORD default_timeout_ms = 30000;

    explicit wininet_async_handle(DWORD timeout_ms = default_timeout_ms);
    wininet_async_handle(const wininet_async_handle&) = delete;
    wininet_async_handle& operator=(const wininet_async_handle&) = delete;

    virtual LONG add_ref();
    // The last but one reference is the WinInet handle's: when only that one is left, the handle is closed, and the
    // object ends with it.
    virtual LONG release();
    // For a call that the thread's last error speaks of: 0 is done, ERROR_IO_PENDING is waited for, any other is a
    // failure. A message that arrives starts the time-out (milliseconds) anew. Result: done; else the last error
    // tells. With `closing` the handle is not closed when the time runs out.
    virtual bool wait(DWORD timeout_ms, HANDLE event, bool closing);

protected:
    virtual ~wininet_async_handle();

public:
    virtual bool on_request_complete() { return false; }

    HINTERNET handle() const { return m_handle.load(std::memory_order_acquire); }
    DWORD last_error() const { return m_last_error.load(std::memory_order_acquire); }
    // What a server had to say about ERROR_INTERNET_EXTENDED_ERROR; empty otherwise.
    const wchar_t* response_text() const { return m_response_text ? m_response_text.get() : L""; }

    // The context value of the next request.
    DWORD_PTR new_context()
    {
        m_context.begin(*this);
        return m_context.value();
    }
    // Gives the handle's reference back, which may be the object's last.
    void close_handle();

    // From WinInet's threads, under the lock of the callbacks.
    void handle_created(HINTERNET handle);
    void handle_closing() { SetEvent(m_closed_event.get()); }
    void request_complete(const INTERNET_ASYNC_RESULT& result);

protected:
    void set_last_error(DWORD error) { m_last_error.store(error, std::memory_order_release); }
    // Around each call that may complete later; `block` is what WinInet then writes to.
    void call_begins(std::shared_ptr<read_block> block = nullptr);
    // The call has completed at once, or failed.
    void call_ended() { m_context.call_ended(); }
    HANDLE complete_event() const { return m_complete_event.get(); }
    DWORD timeout_ms() const { return m_timeout_ms; }
    DWORD_PTR context() const { return m_context.value(); }

    // The bytes of the read in flight.
    std::shared_ptr<read_block> m_read;

private:
    DWORD wait_for(DWORD timeout_ms, HANDLE event);
    void fetch_response_text();

    std::atomic<HINTERNET> m_handle{nullptr};
    std::atomic<DWORD> m_last_error{0};
    unique_handle m_complete_event;
    unique_handle m_closed_event;
    std::unique_ptr<wchar_t[]> m_response_text;
    std::atomic<LONG> m_references{1};
    DWORD m_timeout_ms;
    std::atomic<bool> m_completed{false};
    std::atomic<DWORD> m_calling_thread{0};
    inet_context m_context;
};

struct release_inet {
    void operator()(wininet_async_handle* handle) const { handle->release(); }
};
template <class Reader>
using inet_ptr = std::unique_ptr<Reader, release_inet>;

} // namespace vh
