#include "text.h"

#include <algorithm>

#include <windows.h>

namespace host {

std::string Utf8(std::wstring_view text)
{
    const int units = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), units, result.data(), bytes, nullptr, nullptr);
    return result;
}

std::wstring Wide(std::string_view text)
{
    const int bytes = static_cast<int>(text.size());
    const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, result.data(), units);
    return result;
}

std::wstring Hex(uint32_t code)
{
    std::wstring digits(8, L'0');
    for (std::size_t i = 8; i-- > 0; code >>= 4)
        digits[i] = L"0123456789ABCDEF"[code & 15];
    return L"0x" + digits;
}

std::wstring ShortHex(uint32_t number)
{
    const std::wstring digits = Hex(number).substr(2);
    return L"0x" + digits.substr(std::min(digits.find_first_not_of(L'0'), digits.size() - 1));
}

std::wstring ResultText(int32_t result)
{
    constexpr int32_t most = 0xFFFF;
    return result >= -most && result <= most ? std::to_wstring(result) : Hex(static_cast<uint32_t>(result));
}

std::wstring SystemText(uint32_t code)
{
    wchar_t text[512];
    const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length = FormatMessageW(flags, nullptr, code, 0, text, 512, nullptr);
    while (length > 0 && (text[length - 1] == L'\r' || text[length - 1] == L'\n' || text[length - 1] == L'.'))
        --length;
    const std::wstring shown = ResultText(static_cast<int32_t>(code));
    return length ? std::wstring(text, length) + L" (" + shown + L")" : L"error " + shown;
}

std::wstring Quoted(const std::wstring& word)
{
    std::wstring quoted = L"\"";
    std::size_t slashes = 0;
    for (const wchar_t unit : word) {
        // Backslashes count as such unless a quotation mark follows.
        if (unit == L'"')
            quoted.append(slashes + 1, L'\\');
        slashes = unit == L'\\' ? slashes + 1 : 0;
        quoted += unit;
    }
    return quoted.append(slashes, L'\\') + L'"';
}

std::wstring LongPath(const std::wstring& path)
{
    constexpr std::size_t plain_limit = 240;
    if (path.size() < plain_limit || path.starts_with(L"\\\\?\\"))
        return path;
    return path.starts_with(L"\\\\") ? L"\\\\?\\UNC" + path.substr(1) : L"\\\\?\\" + path;
}

std::wstring FullPath(const std::wstring& path)
{
    const DWORD needed = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    if (needed == 0)
        return path;
    std::wstring full(needed, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), needed, full.data(), nullptr));
    while (full.size() > 3 && full.back() == L'\\')
        full.pop_back();
    // LongPath() sets the prefix of long paths where one is needed; names that only the prefix allows keep it.
    constexpr std::wstring_view prefix = L"\\\\?\\";
    constexpr std::wstring_view share = L"\\\\?\\UNC\\";
    if (!full.starts_with(prefix))
        return full;
    const std::wstring plain =
        full.starts_with(share) ? L"\\\\" + full.substr(share.size()) : full.substr(prefix.size());
    const bool absolute = plain.starts_with(L"\\\\") || (plain.size() > 2 && plain[1] == L':' && plain[2] == L'\\');
    return absolute && FullPath(plain) == plain ? plain : full;
}

std::wstring Join(const std::wstring& folder, std::wstring_view name)
{
    std::wstring path = folder;
    if (!path.empty() && path.back() != L'\\')
        path += L'\\';
    return path.append(name);
}

std::wstring ProgramFile()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::wstring ProgramFolder()
{
    const std::wstring path = ProgramFile();
    const std::size_t slash = path.find_last_of(L'\\');
    return slash == std::wstring::npos ? std::wstring(L".") : path.substr(0, slash);
}

std::wstring ProgramName()
{
    const std::wstring path = ProgramFile();
    const std::wstring name = path.substr(path.find_last_of(L'\\') + 1);
    return name.substr(0, name.find_last_of(L'.'));
}

} // namespace host
