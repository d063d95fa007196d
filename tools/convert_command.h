// vhtool convert: UTF-16 text files in a code page.
#pragma once

#include <string>

namespace tools {

// Code page 0 is the system's. Throws std::runtime_error for files that can't be read or written.
int ConvertFile(const std::wstring& source, const std::wstring& target, unsigned code_page);

} // namespace tools
