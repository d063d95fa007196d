// Numbers as configuration files write them.
#pragma once

#include <cstdint>
#include <cwchar>
#include <string_view>

namespace vh {

// Hexadecimal behind "0x", else decimal; "0X" is no prefix. Stops at the first unit that does not belong, and the
// text must end with a NUL.
inline int32_t NumberOfText(const wchar_t* text)
{
    const bool hexadecimal = std::wstring_view(text).starts_with(L"0x");
    if (hexadecimal)
        return static_cast<int32_t>(std::wcstoul(text + 2, nullptr, 16));
    return static_cast<int32_t>(std::wcstol(text, nullptr, 10));
}

} // namespace vh
