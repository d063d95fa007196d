// Result forms that many families share.
#pragma once

#include <cstdint>
#include <string_view>

namespace vh {

// A script's text argument: null counts as empty.
constexpr std::wstring_view View(const wchar_t* text) { return text ? text : L""; }
constexpr bool IsEmpty(const wchar_t* text) { return !text || !*text; }

// An engine's code as a result: successes of every kind are 0.
constexpr int32_t FailureOnly(int32_t code) { return code < 0 ? code : 0; }

// A text to a caller's buffer of `size` units. A text that does not fit is not written, and the result is
// its length plus 1; a null buffer gives -1.
inline int32_t CopyOut(std::wstring_view text, wchar_t* buffer, int32_t size)
{
    const auto length = static_cast<int32_t>(text.size());
    if (length >= size)
        return length + 1;
    if (!buffer)
        return -1;
    text.copy(buffer, text.size());
    buffer[text.size()] = L'\0';
    return 0;
}

// The same for a buffer whose size only the caller knows.
inline int32_t CopyOutUnlimited(std::wstring_view text, wchar_t* buffer) { return CopyOut(text, buffer, INT32_MAX); }

} // namespace vh
