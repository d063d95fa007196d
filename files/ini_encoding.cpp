#include "ini_encoding.h"

#include <algorithm>
#include <climits>

#include "../scriptdata/exception.h"
#include "ini_text.h"

namespace vh {

namespace {

constexpr UINT utf16_little = 1200;
constexpr UINT utf16_big = 1201;
constexpr UINT utf8 = CP_UTF8;

struct mark {
    UINT code_page;
    std::string_view bytes;
};

constexpr mark marks[] = {{utf16_little, "\xFF\xFE"}, {utf16_big, "\xFE\xFF"}, {utf8, "\xEF\xBB\xBF"}};

// Text that is all ASCII means the same in the code pages that documents use most.
bool IsPlain(UINT code_page, std::string_view bytes)
{
    return (code_page == CP_ACP || code_page == utf8) &&
           std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

std::string_view MarkOf(UINT code_page)
{
    for (const mark& one : marks)
        if (one.code_page == code_page)
            return one.bytes;
    return {};
}

UINT CodePageOfMark(std::string_view bytes)
{
    for (const mark& one : marks)
        if (bytes.starts_with(one.bytes))
            return one.code_page;
    return CP_ACP;
}

std::wstring DecodeText(std::string_view bytes, UINT code_page)
{
    if (code_page == utf16_little || code_page == utf16_big)
        return UnitsOfUtf16<wchar_t>(std::as_bytes(std::span(bytes)), code_page == utf16_big);
    if (bytes.empty() || IsPlain(code_page, bytes))
        return std::wstring(bytes.begin(), bytes.end());
    const int count = static_cast<int>(bytes.size());
    const int units = MultiByteToWideChar(code_page, 0, bytes.data(), count, nullptr, 0);
    if (units <= 0)
        throw win32_exception(GetLastError());
    std::wstring text(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(code_page, 0, bytes.data(), count, text.data(), units);
    return text;
}

std::string EncodeText(std::wstring_view text, UINT code_page)
{
    if (code_page == utf16_little || code_page == utf16_big) {
        std::string bytes(text.size() * 2, '\0');
        const int low = code_page == utf16_big;
        for (std::size_t i = 0; i < text.size(); ++i) {
            bytes[2 * i + static_cast<std::size_t>(low)] = static_cast<char>(text[i] & 0xFF);
            bytes[2 * i + static_cast<std::size_t>(1 - low)] = static_cast<char>(text[i] >> 8);
        }
        return bytes;
    }
    if (text.empty())
        return {};
    if (text.size() > INT_MAX)
        throw win32_exception(ERROR_FILE_TOO_LARGE);
    const int count = static_cast<int>(text.size());
    const int room = WideCharToMultiByte(code_page, 0, text.data(), count, nullptr, 0, nullptr, nullptr);
    if (room <= 0)
        throw win32_exception(GetLastError());
    std::string bytes(static_cast<std::size_t>(room), '\0');
    WideCharToMultiByte(code_page, 0, text.data(), count, bytes.data(), room, nullptr, nullptr);
    return bytes;
}

} // namespace vh
