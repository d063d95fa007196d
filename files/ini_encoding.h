// Bytes and text of INI documents: marks and code pages, 1200 and 1201 being UTF-16.
#pragma once

#include <string>
#include <string_view>
#include <windows.h>

namespace vh {

// Empty for a code page without a mark.
std::string_view MarkOf(UINT code_page);
// The code page that the mark at the start stands for, or CP_ACP.
UINT CodePageOfMark(std::string_view bytes);

// Without a mark. A failure, such as an unknown code page, raises win32_exception.
std::wstring DecodeText(std::string_view bytes, UINT code_page);
std::string EncodeText(std::wstring_view text, UINT code_page);

} // namespace vh
