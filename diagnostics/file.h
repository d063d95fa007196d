// The library's one file: a local path, or an http:// or https:// address for reading.
#pragma once

#include <memory>

#include <windows.h>

#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"
#include "file_exception.h"

namespace vh {

class http_file;
class inet_retry_handler;

// Copies share what is open; the last one to close ends it.
class file {
public:
    file() = default;
    file(const file&) = default;
    file& operator=(const file&) = default;
    virtual ~file() = default;

    // Arguments as for CreateFileW; for an address only the path counts. Result: 0 or a system error code.
    // A local file's byte-order mark is looked at, and the position is 0 afterwards.
    DWORD open(const wchar_t* path, DWORD access, DWORD share, DWORD attributes, DWORD disposition,
               SECURITY_ATTRIBUTES* security = nullptr, HANDLE pattern = nullptr);
    // A close that the system refuses raises file_exception; the file then still counts as open.
    void close();
    // Decides about failures of addresses that are opened from here on; null leaves it to the process's handler, or
    // to the system's dialog.
    void set_retry_handler(inet_retry_handler* handler) { m_retry_handler = handler; }
    bool is_open() const { return m_shared != nullptr; }
    bool is_url() const { return m_shared && m_shared->inet; }

    // Bytes read. A count of -1 stands for one element. Failures raise file_exception, or
    // internet_file_exception for an address.
    template <class Element>
    DWORD read(Element* buffer, int count = -1)
    {
        return read_bytes(buffer, count == -1 ? static_cast<DWORD>(sizeof(Element)) : static_cast<DWORD>(count));
    }
    DWORD read_bytes(void* buffer, DWORD count);
    template <class Element>
    DWORD write(const Element* buffer, int count = -1)
    {
        return write_bytes(buffer, count == -1 ? static_cast<DWORD>(sizeof(Element)) : static_cast<DWORD>(count));
    }
    DWORD write_bytes(const void* buffer, DWORD count);

    // The file ends where its position is.
    void set_end();

    // The new position; whence as for SetFilePointer.
    DWORD seek(LONG offset, DWORD whence, LONG* high = nullptr);
    // The low half of the size in bytes.
    DWORD size(DWORD* high = nullptr);
    FILETIME last_write_time();

    const stringx& name() const { return m_name; }
    // 1200, 1201 or 65001 by the file's mark, else 0.
    UINT code_page() const { return m_code_page; }
    bool has_byte_order_mark() const { return m_code_page != 0; }

private:
    struct release_http {
        void operator()(http_file* reader) const;
    };
    struct opened {
        std::unique_ptr<http_file, release_http> inet;
        unique_file handle;
    };

    void detect_mark();
    [[noreturn]] void fail() const;
    HANDLE handle() const { return m_shared ? m_shared->handle.get() : INVALID_HANDLE_VALUE; }

    std::shared_ptr<opened> m_shared;
    stringx m_name;
    inet_retry_handler* m_retry_handler = nullptr;
    UINT m_code_page = 0;
};

// A name for a temporary file beside `path`, with its file name as prefix; nothing exists under it.
// A failure raises win32_exception.
stringx make_temp_name(std::wstring_view path);

} // namespace vh
