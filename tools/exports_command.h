// vhtool exports: what a library exports, and how each function is called.
#pragma once

#include <string>

namespace tools {

// Prints number, name, result and arguments of each export of `library`; says at the end whether the names agree
// with the known functions and, when `definition` is given, whether the numbers agree with that file.
// Throws std::runtime_error for files that can't be read.
int ListExports(const std::wstring& library, const std::wstring& definition);

} // namespace tools
