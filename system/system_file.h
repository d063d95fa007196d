// Files of the system folder by their full path.
#pragma once

#include <string_view>

#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

// Empty when the system doesn't say where it is.
inline stringx SystemFile(std::wstring_view name)
{
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return {};
    return Concat(folder, L"\\", name);
}

} // namespace vh
