#include "inet_file.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "../scriptdata/late_windows.h"

namespace vh {

namespace {

// Index of the slash that ends the host part of an address; the text's length when there is none.
std::size_t ThirdSlash(std::wstring_view url)
{
    std::size_t at = url.find(L'/');
    for (int more = 0; more < 2 && at != url.npos; ++more)
        at = url.find(L'/', at + 1);
    return std::min(at, url.size());
}

// The system turns the backslash between domain and user into a slash.
void RestoreDomainBackslash(stringx& url)
{
    const std::size_t at = url.view().find(L'@');
    if (at == 0 || at == stringx::npos)
        return;
    for (std::size_t i = ThirdSlash(url); i < at; ++i)
        if (url[i] == L'/')
            url.data()[i] = L'\\';
}

bool Canonicalize(const wchar_t* url, stringx& canonical)
{
    constexpr DWORD flags = ICU_BROWSER_MODE | ICU_DECODE;
    auto size = static_cast<DWORD>(std::wcslen(url)) + 20;
    for (int tries = 0; tries < 2; ++tries) {
        // The size counts the terminator, for which the text keeps a place of its own.
        canonical.resize(size);
        if (late::internet_canonicalize_url(url, canonical.data(), &size, flags)) {
            canonical.resize(std::wcslen(canonical.c_str()));
            return true;
        }
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            break;
    }
    return false;
}

bool CrackUrl(const wchar_t* url, URL_COMPONENTSW& parts)
{
    parts = {};
    parts.dwStructSize = sizeof(parts);
    // A length without a place asks for a pointer into the address.
    parts.dwSchemeLength = parts.dwHostNameLength = parts.dwUserNameLength = 1;
    parts.dwPasswordLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = 1;
    return late::internet_crack_url(url, 0u, 0u, &parts) != FALSE;
}

stringx Part(const wchar_t* text, DWORD length)
{
    return stringx(std::wstring_view(text ? text : L"", text ? length : 0));
}

} // namespace

inet_file::inet_file(DWORD timeout_ms) : wininet_async_handle(timeout_ms)
{
    LARGE_INTEGER frequency;
    if (QueryPerformanceFrequency(&frequency) && frequency.QuadPart > 0) {
        m_counter_frequency = static_cast<uint64_t>(frequency.QuadPart);
        m_have_counter = true;
    }
}

inet_file::~inet_file() = default;

bool inet_file::set(int selector, DWORD value)
{
    switch (selector) {
    case max_retries_setting:
        m_max_retries = static_cast<int>(value);
        return true;
    case autodial_flags_setting:
        m_autodial_flags = value;
        return true;
    default:
        return false;
    }
}

uint64_t inet_file::clock() const
{
    LARGE_INTEGER now;
    return m_have_counter && QueryPerformanceCounter(&now) ? static_cast<uint64_t>(now.QuadPart) : GetTickCount();
}

bool inet_file::open(const wchar_t* url, const wchar_t* headers, DWORD flags)
{
    if (!m_session.handle()) {
        SetLastError(ERROR_INTERNET_INTERNAL_ERROR);
        return false;
    }
    if (!m_session.watch())
        return false;
    m_open_flags = flags;
    m_rate.clear();
    if (!m_connection)
        m_connection.reset(new wininet_async_handle(timeout_ms()));
    m_extra_headers = headers;
    const std::wstring_view given(url);
    const bool has_credentials = given.substr(0, ThirdSlash(given)).find(L'@') != given.npos;
    if (!Canonicalize(url, m_url))
        return false;
    if (has_credentials)
        RestoreDomainBackslash(m_url);
    return true;
}

bool inet_file::be_online()
{
    DWORD flags = 0;
    if (late::internet_get_connected_state(&flags, 0u) ||
        !(flags & (INTERNET_CONNECTION_MODEM | INTERNET_CONNECTION_CONFIGURED)))
        return true;
    const DWORD error = late::internet_autodial(m_autodial_flags, m_parent_window) ? ERROR_SUCCESS : GetLastError();
    if (error == ERROR_SUCCESS)
        return true;
    set_last_error(error);
    SetLastError(error);
    return false;
}

void inet_file::make_headers()
{
    m_headers.clear();
    if (m_start_offset) {
        m_headers += L"Range: bytes=";
        // Signed: an offset from 2 GB on shows as a negative number.
        m_headers += std::to_wstring(static_cast<int32_t>(m_start_offset));
        m_headers += L"-";
        if (!m_extra_headers.empty())
            m_headers += L"\r\n";
    }
    m_headers += m_extra_headers;
}

bool inet_file::send(HINTERNET request)
{
    call_begins();
    const bool sent =
        late::http_send_request(request, m_headers.c_str(), static_cast<DWORD>(m_headers.size()), nullptr, 0u) != FALSE;
    const DWORD error = sent ? ERROR_SUCCESS : GetLastError();
    if (error != ERROR_IO_PENDING)
        call_ended();
    SetLastError(error);
    return sent;
}

bool inet_file::connect(bool resend)
{
    // Asking for the connection takes longer than many reads: an open request has it, or its read fails.
    if (handle() && !resend)
        return true;
    if (!be_online())
        return false;
    make_headers();
    if (const HINTERNET request = handle())
        return send(request) ? check_response() : wait(timeout_ms(), complete_event(), false);
    for (;;) {
        const DWORD_PTR number = new_context();
        call_begins();
        const HINTERNET opened = open_url(m_session.handle(), m_url.c_str(), m_headers.c_str(),
                                          static_cast<DWORD>(m_headers.size()), m_open_flags, number);
        const DWORD error = opened ? ERROR_SUCCESS : GetLastError();
        if (error != ERROR_IO_PENDING)
            call_ended();
        if (opened)
            return check_response();
        if (error != ERROR_INVALID_PARAMETER || !(m_open_flags & INTERNET_FLAG_PRAGMA_NOCACHE)) {
            SetLastError(error);
            return wait(timeout_ms(), complete_event(), false);
        }
        // Old versions don't know it.
        m_open_flags &= ~static_cast<DWORD>(INTERNET_FLAG_PRAGMA_NOCACHE);
    }
}

HINTERNET inet_file::open_url(HINTERNET session, const wchar_t* url, const wchar_t* headers, DWORD headers_length,
                              DWORD flags, DWORD_PTR context)
{
    URL_COMPONENTSW parts;
    if (!CrackUrl(url, parts))
        return nullptr;
    // WinInet would leave such a request open for ever.
    if (parts.dwHostNameLength == 0) {
        SetLastError(ERROR_INTERNET_INVALID_URL);
        return nullptr;
    }
    switch (parts.nScheme) {
    case INTERNET_SCHEME_HTTPS:
        return open_secure(session, parts, headers, headers_length, flags | INTERNET_FLAG_SECURE, context);
    case INTERNET_SCHEME_FTP:
    case INTERNET_SCHEME_GOPHER:
    case INTERNET_SCHEME_HTTP:
        return late::internet_open_url(session, url, headers, headers_length, flags, context);
    default: {
        // What WinInet would say, said in its place: it would leave the request open for ever.
        INTERNET_ASYNC_RESULT unknown{0, ERROR_INTERNET_UNRECOGNIZED_SCHEME};
        inet_status_callback(session, context, INTERNET_STATUS_REQUEST_COMPLETE, &unknown, sizeof(unknown));
        SetLastError(ERROR_INTERNET_UNRECOGNIZED_SCHEME);
        return nullptr;
    }
    }
}

HINTERNET inet_file::open_secure(HINTERNET session, const URL_COMPONENTSW& parts, const wchar_t* headers,
                                 DWORD headers_length, DWORD flags, DWORD_PTR context)
{
    const stringxi host(Part(parts.lpszHostName, parts.dwHostNameLength));
    if (m_connection->handle() && m_connected_host != host)
        m_connection->close_handle();
    if (!m_connection->handle()) {
        const stringx user = Part(parts.lpszUserName, parts.dwUserNameLength);
        const stringx password = Part(parts.lpszPassword, parts.dwPasswordLength);
        const HINTERNET connection =
            late::internet_connect(session, host.c_str(), parts.nPort, user.empty() ? nullptr : user.c_str(),
                                   password.empty() ? nullptr : password.c_str(),
                                   static_cast<DWORD>(INTERNET_SERVICE_HTTP), 0u, m_connection->new_context());
        if (!connection)
            return nullptr;
        if (!m_connection->handle())
            m_connection->handle_created(connection);
        m_connected_host = host;
    }
    // Path and extra information stand side by side in the address.
    stringx target = Part(parts.lpszUrlPath, parts.dwUrlPathLength + parts.dwExtraInfoLength);
    if (!parts.lpszUrlPath || target.empty())
        target = L"/";
    const HINTERNET request = late::http_open_request(m_connection->handle(), L"GET", target.c_str(), nullptr, nullptr,
                                                      nullptr, flags, context);
    if (!request)
        return nullptr;
    return late::http_send_request(request, headers, headers_length, nullptr, 0u) ? request : nullptr;
}

bool inet_file::connect_with_retries()
{
    for (m_attempt = 0; m_attempt <= m_max_retries; ++m_attempt) {
        if (connect(m_attempt > 0))
            return true;
        if (on_error() != ERROR_INTERNET_FORCE_RETRY)
            return false;
    }
    return false;
}

void inet_file::restart_at(DWORD position)
{
    close_handle();
    m_start_offset = m_position = position;
}

bool inet_file::read(void* buffer, DWORD size, DWORD* count)
{
    *count = 0;
    if (read_with_retries(buffer, size, count))
        return true;
    // What is left of the request is a refusal's page, or would look like the end of the data.
    const DWORD error = GetLastError();
    restart_at(m_position);
    SetLastError(error);
    return false;
}

bool inet_file::read_with_retries(void* buffer, DWORD size, DWORD* count)
{
    m_attempt = 0;
    auto* place = static_cast<std::byte*>(buffer);
    for (; m_attempt <= m_max_retries; ++m_attempt) {
        if (!connect(m_attempt > 0)) {
            if (on_error() != ERROR_INTERNET_FORCE_RETRY)
                return false;
            continue;
        }
        DWORD more = 0;
        const bool done = transfer(place, size, more);
        *count += more;
        if (done)
            return true;
        if (on_error() != ERROR_INTERNET_FORCE_RETRY || m_attempt >= m_max_retries || *count > size)
            return false;
        place += *count;
        size -= *count;
        restart_at(m_position);
    }
    return false;
}

bool inet_file::transfer(std::byte* buffer, DWORD size, DWORD& count)
{
    while (count < size) {
        const auto wanted = static_cast<DWORD>(std::min<uint64_t>(m_rate.chunk(GetTickCount()), size - count));
        const uint64_t begun = clock();
        if (!read_chunk(wanted))
            return false;
        const uint64_t passed = clock() - begun;
        const DWORD got = std::min(m_read->count, wanted);
        if (got == 0)
            return true;
        std::memcpy(buffer + count, m_read->bytes.get(), got);
        count += got;
        m_position += got;
        m_rate.add(got, passed ? passed : 5, m_counter_frequency);
    }
    return true;
}

bool inet_file::read_chunk(DWORD wanted)
{
    constexpr DWORD least = 1500;
    if (!m_read || m_read->capacity < wanted)
        m_read = std::make_shared<read_block>(std::max(wanted, least));
    if (!m_read->capacity)
        m_read = std::make_shared<read_block>(least);
    if (!m_read->capacity)
        ThrowOutOfMemory();
    wanted = static_cast<DWORD>(std::min<std::size_t>(wanted, m_read->capacity));
    m_read->count = 0;
    call_begins(m_read);
    const bool done = late::internet_read_file(handle(), m_read->bytes.get(), wanted, &m_read->count) != FALSE;
    const DWORD error = done ? ERROR_SUCCESS : GetLastError();
    if (error != ERROR_IO_PENDING)
        call_ended();
    SetLastError(error);
    return done || wait(timeout_ms(), complete_event(), false);
}

DWORD inet_file::on_error()
{
    const DWORD error = GetLastError();
    DWORD answer = ERROR_SUCCESS;
    if (m_retry_handler)
        answer = m_retry_handler->on_error(*this);
    if (answer != ERROR_INTERNET_FORCE_RETRY && answer != ERROR_CANCELLED) {
        constexpr DWORD flags =
            FLAGS_ERROR_UI_FILTER_FOR_ERRORS | FLAGS_ERROR_UI_FLAGS_CHANGE_OPTIONS | FLAGS_ERROR_UI_FLAGS_GENERATE_DATA;
        const HWND owner = m_parent_window ? m_parent_window : late::get_desktop_window();
        // A request to retry also when the dialog had nothing to show.
        answer = late::internet_error_dialog(owner, handle(), last_error(), flags, nullptr) == ERROR_CANCELLED
                     ? ERROR_CANCELLED
                     : ERROR_INTERNET_FORCE_RETRY;
    }
    SetLastError(error);
    return answer;
}

} // namespace vh
