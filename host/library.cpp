#include "library.h"

#include <stdexcept>

#include "text.h"

namespace host {

Library::Library(const std::wstring& path) : m_path(path), m_module(LoadLibraryExW(path.c_str(), nullptr, 0))
{
    if (!m_module) {
        const DWORD code = GetLastError();
        throw std::runtime_error(Utf8(path + L": " + SystemText(code)));
    }
}

FARPROC Library::Entry(const char* name) const
{
    const FARPROC entry = GetProcAddress(m_module.get(), name);
    if (!entry)
        throw std::runtime_error(Utf8(m_path) + ": there is no export " + name);
    return entry;
}

} // namespace host
