// Files of the system folder by their full path.
#pragma once

#include <string>
#include <string_view>

#include <windows.h>

namespace vh {

// Empty when the system doesn't say where it is.
inline std::wstring SystemFile(std::wstring_view name)
{
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return {};
    return std::wstring(folder, length).append(1, L'\\').append(name);
}

} // namespace vh
