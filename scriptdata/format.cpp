#include "format.h"

#include <cwchar>

namespace vh {

int FormatTextV(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments)
{
    if (size == 0)
        return -1;
    const int written = _vsnwprintf(buffer, size, format, arguments);
    if (written >= 0 && static_cast<std::size_t>(written) < size)
        return written;
    buffer[size - 1] = L'\0';
    return -1;
}

int FormatText(wchar_t* buffer, std::size_t size, const wchar_t* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int written = FormatTextV(buffer, size, format, arguments);
    va_end(arguments);
    return written;
}

} // namespace vh
