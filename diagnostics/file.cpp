#include "file.h"

#include "http_file.h"
#include "retry_handlers.h"
#include "url.h"

namespace vh {

namespace {

// Fresh from the server, over connections that stay, and through caches that know no "no-cache" but "pragma".
constexpr DWORD url_flags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_KEEP_CONNECTION | INTERNET_FLAG_PRAGMA_NOCACHE;

} // namespace

void file::release_http::operator()(http_file* reader) const { reader->release(); }

void file::fail() const
{
    const DWORD error = GetLastError();
    if (is_url())
        throw internet_file_exception(error, m_name);
    throw file_exception(error, m_name);
}

DWORD file::open(const wchar_t* path, DWORD access, DWORD share, DWORD attributes, DWORD disposition,
                 SECURITY_ATTRIBUTES* security, HANDLE pattern)
{
    close();
    m_name = path;
    m_code_page = 0;
    auto made = std::make_shared<opened>();

    if (IsWebUrl(m_name)) {
        made->inet.reset(new http_file);
        made->inet->set_retry_handler(m_retry_handler ? m_retry_handler : &process_retry_handler());
        if (!made->inet->open(m_name.c_str(), nullptr, url_flags)) {
            const DWORD error = GetLastError();
            return error ? error : ERROR_INTERNET_INVALID_URL;
        }
        m_shared = std::move(made);
        return 0;
    }

    made->handle.reset(CreateFileW(m_name.c_str(), access, share, security, disposition, attributes, pattern));
    if (!made->handle)
        return GetLastError();
    m_shared = std::move(made);
    detect_mark();
    return 0;
}

void file::close()
{
    if (!m_shared)
        return;
    if (m_shared.use_count() == 1 && m_shared->handle && !m_shared->handle.try_close())
        fail();
    m_shared.reset();
}

void file::detect_mark()
{
    // What has no size, like a pipe, would lose what is read here.
    LARGE_INTEGER length{};
    if (!GetFileSizeEx(handle(), &length) || length.QuadPart < 2)
        return;
    unsigned char start[3] = {};
    DWORD count = 0;
    // A file that is open for writing only can't be looked at, which is no failure.
    if (ReadFile(handle(), start, sizeof(start), &count, nullptr) && count) {
        if (count >= 2 && start[0] == 0xFF && start[1] == 0xFE)
            m_code_page = 1200;
        else if (count >= 2 && start[0] == 0xFE && start[1] == 0xFF)
            m_code_page = 1201;
        else if (count == 3 && start[0] == 0xEF && start[1] == 0xBB && start[2] == 0xBF)
            m_code_page = 65001;
        SetFilePointer(handle(), 0, nullptr, FILE_BEGIN);
    }
}

DWORD file::read_bytes(void* buffer, DWORD count)
{
    DWORD read = 0;
    const bool done =
        is_url() ? m_shared->inet->read(buffer, count, &read) : ReadFile(handle(), buffer, count, &read, nullptr) != 0;
    if (!done)
        fail();
    return read;
}

DWORD file::write_bytes(const void* buffer, DWORD count)
{
    DWORD written = 0;
    if (!WriteFile(handle(), buffer, count, &written, nullptr))
        fail();
    return written;
}

void file::set_end()
{
    if (!SetEndOfFile(handle()))
        fail();
}

DWORD file::seek(LONG offset, DWORD whence, LONG* high)
{
    SetLastError(NO_ERROR);
    if (is_url()) {
        const DWORD position = m_shared->inet->seek(offset, whence);
        if (position == INVALID_SET_FILE_POINTER)
            fail();
        if (high)
            *high = 0;
        return position;
    }
    const DWORD position = SetFilePointer(handle(), offset, high, whence);
    if (position == INVALID_SET_FILE_POINTER && (!high || GetLastError() != NO_ERROR))
        fail();
    return position;
}

DWORD file::size(DWORD* high)
{
    SetLastError(NO_ERROR);
    const DWORD low = is_url() ? m_shared->inet->size() : GetFileSize(handle(), high);
    if (is_url() && high)
        *high = 0;
    if (low == INVALID_FILE_SIZE && (is_url() || GetLastError() != NO_ERROR))
        fail();
    return low;
}

FILETIME file::last_write_time()
{
    FILETIME time{};
    const bool done =
        is_url() ? m_shared->inet->last_modified(&time) : GetFileTime(handle(), nullptr, nullptr, &time) != 0;
    if (!done)
        fail();
    return time;
}

stringx make_temp_name(std::wstring_view path)
{
    const std::size_t slash = path.rfind(L'\\');
    const stringx folder(slash == path.npos ? std::wstring_view(L".") : path.substr(0, slash + 1));
    const stringx prefix(slash == path.npos ? path : path.substr(slash + 1));
    wchar_t name[MAX_PATH];
    if (!GetTempFileNameW(folder.c_str(), prefix.c_str(), 0, name) || !DeleteFileW(name))
        throw win32_exception(GetLastError());
    return name;
}

} // namespace vh
