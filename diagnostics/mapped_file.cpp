#include "mapped_file.h"

#include <algorithm>

namespace vh {

namespace {

HANDLE OpenFile(const stringx& path, DWORD access, DWORD creation)
{
    if (late::create_file)
        return late::create_file(path.c_str(), access, DWORD{0}, LPSECURITY_ATTRIBUTES{nullptr}, creation,
                                 DWORD{FILE_ATTRIBUTE_NORMAL}, HANDLE{nullptr});
    return late::create_file_narrow(path.AsNarrow(), access, DWORD{0}, LPSECURITY_ATTRIBUTES{nullptr}, creation,
                                    DWORD{FILE_ATTRIBUTE_NORMAL}, HANDLE{nullptr});
}

HANDLE MapFile(HANDLE file, DWORD protection, DWORD size)
{
    if (late::create_mapping)
        return late::create_mapping(file, LPSECURITY_ATTRIBUTES{nullptr}, protection, DWORD{0}, size, LPCWSTR{nullptr});
    return late::create_mapping_narrow(file, LPSECURITY_ATTRIBUTES{nullptr}, protection, DWORD{0}, size,
                                       LPCSTR{nullptr});
}

} // namespace

} // namespace vh

bool vhmapfilex::open(const stringx& path, uint32_t& size, bool writable)
{
    vh::last_file_failure().code = GetLastError();
    close();
    m_size = 0;
    m_writable = writable;
    m_view.reset();
    m_mapping.reset();
    m_file.reset();
    if (!map(path, size)) {
        const DWORD code = GetLastError();
        vh::last_file_failure() = {code, std::wstring(path.view())};
        return false;
    }
    m_mapped = true;
    return true;
}

bool vhmapfilex::map(const stringx& path, uint32_t& size)
{
    m_file.reset(vh::OpenFile(path, m_writable ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ,
                              m_writable ? CREATE_ALWAYS : OPEN_EXISTING));
    if (!m_file)
        return false;
    m_mapping.reset(vh::MapFile(m_file.get(), m_writable ? PAGE_READWRITE : PAGE_READONLY, size));
    if (!m_mapping)
        return false;
    m_view.reset(MapViewOfFile(m_mapping.get(), m_writable ? FILE_MAP_WRITE : FILE_MAP_READ, 0, 0, size));
    if (!m_view)
        return false;
    m_size = size;
    if (size != 0)
        return true;
    DWORD high = 0;
    m_size = GetFileSize(m_file.get(), &high);
    if (high != 0)
        SetLastError(ERROR_FILE_TOO_LARGE);
    if (high != 0 || m_size == INVALID_FILE_SIZE)
        return false;
    size = m_size;
    return true;
}

void vhmapfilex::close()
{
    if (!m_mapped)
        return;
    m_view.reset();
    m_mapping.reset();
    if (m_writable) {
        LARGE_INTEGER end{};
        end.QuadPart = m_size;
        SetFilePointerEx(m_file.get(), end, nullptr, FILE_BEGIN);
        SetEndOfFile(m_file.get());
    }
    m_file.reset();
    m_mapped = false;
    m_size = 0;
}

void vhmapfilex::set_size(uint32_t size) { m_size = std::min(m_size, size); }
