// ASCII means the same in every narrow code page of the system, and most text is nothing else.
#pragma once

#include <cstddef>
#include <string_view>

namespace vh {

// Looks at every byte, which is faster than stopping at the first that is none.
inline bool IsAscii(std::string_view text)
{
    unsigned char seen = 0;
    for (const char byte : text)
        seen |= static_cast<unsigned char>(byte);
    return seen < 0x80;
}

inline void WidenAscii(std::string_view text, wchar_t* target)
{
    for (std::size_t i = 0; i < text.size(); ++i)
        target[i] = static_cast<unsigned char>(text[i]);
}

} // namespace vh
