// VHRT.dll, loaded late so that switches set by the host are read, with its exports by name.
#pragma once

#include <string>

#include "scriptdata/unique.h"

namespace host {

class Library {
public:
    // Throws std::runtime_error that names the file and the reason.
    explicit Library(const std::wstring& path);

    // The export's address; throws std::runtime_error when the library has none of that name.
    FARPROC Entry(const char* name) const;

    template <class Function>
    Function* Entry(const char* name) const
    {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(Entry(name)));
    }

private:
    std::wstring m_path;
    vh::unique_module m_module;
};

} // namespace host
