// The reader of an address: it goes on after failures from the byte that it had reached.
#pragma once

#include <windows.h>

#include "../scriptdata/stringx.h"
#include "inet_session.h"
#include "transfer_rate.h"
#include "wininet_async_handle.h"

namespace vh {

class inet_file;

// Asked after each failure, with the failure as the file's last_error and as the thread's last error. Results:
// ERROR_INTERNET_FORCE_RETRY tries again, ERROR_CANCELLED gives up, any other leaves it to the system's dialog.
class inet_retry_handler {
public:
    virtual DWORD on_error(inet_file& file) = 0;

protected:
    ~inet_retry_handler() = default;
};

class inet_file : public wininet_async_handle {
public:
    // Marks the error of a status that is no success.
    static constexpr DWORD answered_failure = 0x80040000;

    // What `set` sets.
    enum setting : int { max_retries_setting = 0, autodial_flags_setting = 1 };

    // Prepares; nothing is sent before the first read or question. `headers` may be null; `flags` are those of
    // InternetOpenUrlW. False, with the thread's last error set, for an address that can't be one.
    bool open(const wchar_t* url, const wchar_t* headers, DWORD flags);
    // Up to `size` bytes; fewer are the end of the data. A failure that is tried again goes on behind the bytes
    // that have come. False, with the thread's last error set, when it is given up.
    //
    // The buffer's place for what follows a failure moves by the whole count so far: after a second failure in one
    // call some bytes of the buffer stay unwritten. A move past the buffer's end is a failure. A read that is given
    // up ends its request: the next one asks anew, from the position.
    bool read(void* buffer, DWORD size, DWORD* count);
    // False for a selector that is no setting.
    bool set(int selector, DWORD value);
    // Null shows the system's dialogs.
    void set_retry_handler(inet_retry_handler* handler) { m_retry_handler = handler; }

    const stringx& url() const { return m_url; }
    DWORD position() const { return m_position; }
    // The failure is the server's own word, which another try would hear again.
    bool has_answered_failure() const { return (last_error() & 0xFFFF0000) == answered_failure; }
    // Failed tries of the call in hand.
    int attempt() const { return m_attempt; }

    // The new position, or INVALID_SET_FILE_POINTER with the thread's last error set; whence as for SetFilePointer.
    virtual DWORD seek(LONG offset, DWORD whence) = 0;
    // In bytes; INVALID_FILE_SIZE when the server doesn't tell.
    virtual DWORD size() = 0;
    virtual bool last_modified(FILETIME* time) = 0;
    virtual void on_reset() {}
    virtual DWORD on_error();
    virtual bool check_response() { return true; }
    // The request's handle when it is sent already; null, with the thread's last error set, when it is under way or
    // has failed.
    virtual HINTERNET open_url(HINTERNET session, const wchar_t* url, const wchar_t* headers, DWORD headers_length,
                               DWORD flags, DWORD_PTR context);

protected:
    explicit inet_file(DWORD timeout_ms);
    ~inet_file() override;
    void use_session(const inet_session& session) { m_session = session; }
    // It has to end before its session.
    void close_connection() { m_connection.reset(); }

    // Connects, asking on_error after each failure.
    bool connect_with_retries();
    DWORD start_offset() const { return m_start_offset; }
    // The next request begins here.
    void restart_at(DWORD position);

private:
    bool connect(bool resend);
    bool be_online();
    void make_headers();
    bool send(HINTERNET request);
    bool read_with_retries(void* buffer, DWORD size, DWORD* count);
    bool transfer(std::byte* buffer, DWORD size, DWORD& count);
    bool read_chunk(DWORD wanted);
    HINTERNET open_secure(HINTERNET session, const URL_COMPONENTSW& parts, const wchar_t* headers, DWORD headers_length,
                          DWORD flags, DWORD_PTR context);
    uint64_t clock() const;

    inet_session m_session;
    stringx m_url;
    stringx m_extra_headers;
    stringx m_headers;
    DWORD m_start_offset = 0;
    DWORD m_position = 0;
    DWORD m_open_flags = 0;
    transfer_rate m_rate;
    int m_max_retries = 5;
    int m_attempt = 0;
    DWORD m_autodial_flags = INTERNET_AUTODIAL_FORCE_ONLINE;
    // Owner of dialogs; null is the desktop.
    HWND m_parent_window = nullptr;
    inet_retry_handler* m_retry_handler = nullptr;
    // Units of the clock in a second.
    uint64_t m_counter_frequency = 1000;
    bool m_have_counter = false;
    // Of requests that are made by hand.
    inet_ptr<wininet_async_handle> m_connection;
    stringxi m_connected_host;
};

} // namespace vh
