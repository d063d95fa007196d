// The one way to formatted text: the run-time's wide rules, where %s is a wide string. The standard names
// differ between compilers and are not used.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace vh {

// Writes at most size - 1 units and always a terminator. Result: the units written, or -1 when the text
// was cut or the format is bad.
int FormatTextV(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments);
int FormatText(wchar_t* buffer, std::size_t size, const wchar_t* format, ...);

} // namespace vh
