// What file and network reads raise.
#pragma once

#include "../scriptdata/exception.h"
#include "../scriptdata/stringx.h"

namespace vh {

// A failure on a local file.
class file_exception : public virtual win32_exception {
public:
    file_exception(DWORD code, std::wstring_view name) : win32_exception(code), m_name(name) {}
    const stringx& name() const { return m_name; }

private:
    stringx m_name;
};

class internet_exception : public virtual win32_exception {
public:
    explicit internet_exception(DWORD code) : win32_exception(code) {}
};

// A failure on an address behind a vh::file.
class internet_file_exception : public internet_exception, public file_exception {
public:
    internet_file_exception(DWORD code, std::wstring_view name)
        : win32_exception(code), internet_exception(code), file_exception(code, name)
    {
    }
};

} // namespace vh
