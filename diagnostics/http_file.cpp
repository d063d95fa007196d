#include "http_file.h"

#include <mutex>

namespace vh {

namespace {

constexpr DWORD http_error_base = 54208;
constexpr DWORD partial_content = 206;
constexpr DWORD range_refused = 416;

// WinInet 1.1 bears one session in a process only. All readers share it, and it goes with the last one.
class process_session {
public:
    inet_session acquire(const inet_settings& settings)
    {
        const std::lock_guard guard(m_lock);
        if (m_uses++ == 0 || !m_session.handle())
            m_session = inet_session(settings);
        return m_session;
    }
    void release()
    {
        const std::lock_guard guard(m_lock);
        if (--m_uses == 0)
            m_session = inet_session();
    }

private:
    std::mutex m_lock;
    LONG m_uses = 0;
    inet_session m_session;
} the_process_session;

} // namespace

http_file::http_file(const inet_settings& settings, DWORD timeout_ms) : inet_file(timeout_ms)
{
    if (wininet_version().minor == 1) {
        use_session(the_process_session.acquire(settings));
        m_uses_shared_session = true;
    } else {
        use_session(inet_session(settings));
    }
}

http_file::~http_file()
{
    if (!m_uses_shared_session)
        return;
    close_connection();
    use_session(inet_session());
    the_process_session.release();
}

bool http_file::wait(DWORD timeout_ms, HANDLE event, bool closing)
{
    return inet_file::wait(timeout_ms, event, closing) && (closing || check_response());
}

bool http_file::query(DWORD what, void* value, DWORD size) const
{
    return late::http_query_info(handle(), what, value, &size, nullptr) != FALSE;
}

// A server that gives another part than the one asked for, or all of it, has not answered the request.
bool http_file::is_asked_part() const
{
    wchar_t range[128] = L"";
    if (!query(HTTP_QUERY_CONTENT_RANGE, range, sizeof(range) - sizeof(wchar_t)))
        return true;
    const std::wstring_view unit = L"bytes ";
    return std::wstring_view(range).starts_with(unit) &&
           std::wcstoull(range + unit.size(), nullptr, 10) == start_offset();
}

bool http_file::check_response()
{
    DWORD status = 0;
    if (!query(HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, sizeof(status)))
        return true;
    if (status >= 200 && status <= 299) {
        if (!start_offset() || (status == partial_content && is_asked_part()))
            return true;
        status = range_refused;
    }
    const DWORD error = (status + http_error_base) | answered_failure;
    set_last_error(error);
    SetLastError(error);
    return false;
}

bool http_file::ask(DWORD what, void* value, DWORD size)
{
    const bool known = connect_with_retries() && query(what, value, size);
    const DWORD error = GetLastError();
    // What has been read already is not read again.
    restart_at(position());
    SetLastError(error);
    return known;
}

DWORD http_file::size()
{
    const DWORD begins_at = start_offset();
    DWORD length = 0;
    return ask(HTTP_QUERY_CONTENT_LENGTH | HTTP_QUERY_FLAG_NUMBER, &length, sizeof(length)) ? begins_at + length
                                                                                            : INVALID_FILE_SIZE;
}

bool http_file::last_modified(FILETIME* time)
{
    SYSTEMTIME written{};
    return ask(HTTP_QUERY_LAST_MODIFIED | HTTP_QUERY_FLAG_SYSTEMTIME, &written, sizeof(written)) &&
           SystemTimeToFileTime(&written, time);
}

DWORD http_file::seek(LONG offset, DWORD whence)
{
    auto target = static_cast<DWORD>(offset);
    if (whence == FILE_CURRENT) {
        target += position();
    } else if (whence == FILE_END) {
        const DWORD length = size();
        if (length == INVALID_FILE_SIZE)
            return INVALID_SET_FILE_POINTER;
        target += length;
    }
    if (target != position())
        restart_at(target);
    return target;
}

} // namespace vh
