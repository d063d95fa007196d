#include "text.h"

#include <algorithm>
#include <array>

namespace vh::engine {

namespace {

// Most texts are plain ASCII, for which the system need not be asked.
template <class Text>
bool IsAscii(Text text)
{
    return std::all_of(text.begin(), text.end(), [](auto c) { return c >= 0 && c < 0x80; });
}

} // namespace

std::wstring ToWide(std::string_view utf8)
{
    if (IsAscii(utf8))
        return {utf8.begin(), utf8.end()};
    const int size = static_cast<int>(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), length);
    return wide;
}

std::string ToUtf8(std::wstring_view text)
{
    std::string utf8;
    if (IsAscii(text)) {
        utf8.resize(text.size());
        std::transform(text.begin(), text.end(), utf8.begin(), [](wchar_t c) { return static_cast<char>(c); });
        return utf8;
    }
    const int size = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(length));
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

std::wstring Upper(std::wstring_view text)
{
    std::wstring upper(text);
    if (IsAscii(text))
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; });
    else
        CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    return upper;
}

bool SameText(std::wstring_view a, std::wstring_view b)
{
    if (a.size() != b.size() || a.empty())
        return a.size() == b.size();
    const int size = static_cast<int>(a.size());
    return CompareStringOrdinal(a.data(), size, b.data(), size, TRUE) == CSTR_EQUAL;
}

bool MatchesPattern(std::wstring_view text, std::wstring_view pattern)
{
    if (pattern == L"*.*")
        return true;
    const std::wstring have = Upper(text);
    const std::wstring want = Upper(pattern);
    std::size_t i = 0, j = 0, star = std::wstring::npos, resume = 0;
    while (i < have.size()) {
        if (j < want.size() && want[j] == L'*') {
            star = j++;
            resume = i;
        } else if (j < want.size() && (want[j] == L'?' || want[j] == have[i])) {
            ++i;
            ++j;
        } else if (star != std::wstring::npos) {
            j = star + 1;
            i = ++resume;
        } else {
            return false;
        }
    }
    return want.find_first_not_of(L'*', j) == std::wstring::npos;
}

std::wstring SystemText(DWORD code)
{
    std::array<wchar_t, 512> buffer{};
    const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    const DWORD length =
        FormatMessageW(flags, nullptr, code, 0, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    std::wstring text(buffer.data(), length);
    while (!text.empty() && text.back() <= L' ')
        text.pop_back();
    if (!text.empty())
        return text;
    if (code <= 0xFFFF)
        return L"error " + Number(code);
    // As people look such codes up.
    const std::array<char, 4> bytes{static_cast<char>(code >> 24), static_cast<char>(code >> 16),
                                    static_cast<char>(code >> 8), static_cast<char>(code)};
    return L"error 0x" + ToHex({bytes.data(), bytes.size()});
}

std::wstring ToHex(std::string_view bytes)
{
    constexpr wchar_t digits[] = L"0123456789ABCDEF";
    std::wstring text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::string FromHex(std::wstring_view digits)
{
    const auto digit = [](wchar_t c) { return c <= L'9' ? c - L'0' : (c | 32) - L'a' + 10; };
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(digit(digits[i]) << 4 | digit(digits[i + 1]));
    return bytes;
}

std::wstring JoinPath(std::wstring_view folder, std::wstring_view name)
{
    std::wstring path(folder);
    if (name.empty())
        return path;
    if (!path.empty() && path.back() != L'\\' && path.back() != L'/')
        path += L'\\';
    return path.append(name);
}

std::wstring FolderOf(std::wstring_view path)
{
    const std::size_t slash = path.find_last_of(L"\\/");
    return std::wstring(path.substr(0, slash == std::wstring_view::npos ? 0 : slash));
}

std::wstring FileNameOf(std::wstring_view path)
{
    const std::size_t slash = path.find_last_of(L"\\/");
    return std::wstring(slash == std::wstring_view::npos ? path : path.substr(slash + 1));
}

std::wstring DriveOf(std::wstring_view path)
{
    if (path.size() >= 2 && path[1] == L':')
        return Upper(path.substr(0, 2));
    if (path.substr(0, 2) != L"\\\\")
        return {};
    const std::size_t share = path.find(L'\\', 2);
    if (share == std::wstring_view::npos)
        return std::wstring(path);
    return std::wstring(path.substr(0, path.find(L'\\', share + 1)));
}

std::wstring FullPath(const std::wstring& path)
{
    if (path.empty())
        return {};
    std::array<wchar_t, MAX_PATH> room;
    const DWORD size = GetFullPathNameW(path.c_str(), room.size(), room.data(), nullptr);
    std::wstring full(room.data(), size < room.size() ? size : 0);
    if (size >= room.size()) {
        full.resize(size);
        full.resize(GetFullPathNameW(path.c_str(), size, full.data(), nullptr));
    }
    while (full.size() > 3 && full.back() == L'\\')
        full.pop_back();
    return full;
}

bool LiesIn(std::wstring_view path, std::wstring_view folder)
{
    while (!folder.empty() && folder.back() == L'\\')
        folder.remove_suffix(1);
    return path.size() >= folder.size() && SameText(path.substr(0, folder.size()), folder) &&
           (path.size() == folder.size() || path[folder.size()] == L'\\');
}

namespace {

// A device's name stays one with any extension and with blanks before it.
bool IsDeviceName(std::wstring_view part)
{
    std::wstring name = Upper(part.substr(0, part.find(L'.')));
    name.erase(name.find_last_not_of(L' ') + 1);
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"})
        if (name == device)
            return true;
    const std::wstring_view numbers = L"123456789\u00b9\u00b2\u00b3";
    return name.size() == 4 && (name.starts_with(L"COM") || name.starts_with(L"LPT")) &&
           numbers.find(name[3]) != std::wstring_view::npos;
}

std::wstring PartFault(std::wstring_view part, bool wildcards)
{
    if (part.empty() || part == L"." || part == L"..")
        return L"must be relative, without empty parts and without \"..\"";
    for (wchar_t c : part)
        if (c < L' ' || std::wstring_view(L":<>\"|").find(c) != std::wstring_view::npos ||
            (!wildcards && (c == L'*' || c == L'?')))
            return L"must be relative and hold no character that file names can't have";
    if (part.back() == L'.' || part.back() == L' ')
        return L"has a part with a dot or blank at its end, which Windows takes away";
    return IsDeviceName(part) ? L"holds \"" + std::wstring(part) + L"\", the name of a device" : L"";
}

} // namespace

std::wstring PathFault(std::wstring_view path, bool wildcardsInLastPart)
{
    std::size_t slash = 0;
    do {
        slash = path.find_first_of(L"\\/");
        const bool last = slash == std::wstring_view::npos;
        if (std::wstring fault = PartFault(path.substr(0, slash), last && wildcardsInLastPart); !fault.empty())
            return fault;
        path.remove_prefix(last ? 0 : slash + 1);
    } while (slash != std::wstring_view::npos);
    return {};
}

namespace {

std::array<unsigned long, 4> VersionParts(std::wstring_view text)
{
    std::array<unsigned long, 4> parts{};
    std::size_t part = 0;
    for (wchar_t c : text) {
        if (c == L'.' || c == L',') {
            if (++part == parts.size())
                break;
        } else if (c >= L'0' && c <= L'9') {
            parts[part] = parts[part] * 10 + static_cast<unsigned long>(c - L'0');
        }
    }
    return parts;
}

} // namespace

int CompareVersions(std::wstring_view a, std::wstring_view b)
{
    const auto left = VersionParts(a);
    const auto right = VersionParts(b);
    return left < right ? -1 : left > right ? 1 : 0;
}

bool IsVersion(std::wstring_view text)
{
    std::size_t dots = 0, digits = 0;
    for (wchar_t c : text) {
        if (c == L'.') {
            if (!digits || ++dots > 3)
                return false;
            digits = 0;
        } else if (c < L'0' || c > L'9' || ++digits > 9) {
            return false;
        }
    }
    return digits > 0;
}

std::wstring Number(int64_t value) { return std::to_wstring(value); }

} // namespace vh::engine
