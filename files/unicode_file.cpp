#include "unicode_file.h"

#include <climits>

#include "../diagnostics/mapped_file.h"

namespace vh {

namespace {

constexpr wchar_t mark = 0xFEFF;
constexpr DWORD conversion = 0x200 | WC_DEFAULTCHAR;
static_assert(WC_COMPOSITECHECK == 0x200 && conversion == 576);

// The text of the bytes without its mark; nothing when it is none.
std::wstring_view TextOf(std::span<const std::byte> bytes)
{
    if (bytes.size() > INT_MAX || !IsTextUnicode(bytes.data(), static_cast<int>(bytes.size()), nullptr)) {
        last_file_failure().code = ERROR_NO_UNICODE_TRANSLATION;
        return {};
    }
    const std::wstring_view text(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
    return text.substr(text.starts_with(mark) ? 1 : 0);
}

} // namespace

bool ConvertUnicodeFile(const stringx& source, const stringx& target, UINT code_page)
{
    vhmapfilex from;
    uint32_t size = 0;
    if (!from.open(source, size, false))
        return false;
    const std::wstring_view text = TextOf(from.bytes());
    if (!text.data()) {
        last_file_failure().path = source.view();
        return false;
    }
    vhmapfilex to;
    if (!to.open(target, size, true))
        return false;
    const std::span<std::byte> room = to.bytes();
    const int written =
        WideCharToMultiByte(code_page, conversion, text.data(), static_cast<int>(text.size()),
                            reinterpret_cast<char*>(room.data()), static_cast<int>(room.size()), "?", nullptr);
    const DWORD code = GetLastError();
    to.set_size(static_cast<uint32_t>(written));
    if (written == 0)
        last_file_failure() = {code, std::wstring(target.view())};
    return written != 0;
}

} // namespace vh
