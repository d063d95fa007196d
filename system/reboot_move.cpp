#include "reboot_move.h"

#include <algorithm>
#include <string>
#include <vector>

#include "../scriptdata/exception.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/unique.h"

namespace vh {

namespace {

constexpr const wchar_t* section_name = L"rename";

stringx ShortPath(const wchar_t* path)
{
    const DWORD needed = GetShortPathNameW(path, nullptr, 0);
    if (needed == 0)
        throw win32_exception(GetLastError());
    stringx shortened;
    shortened.resize(needed);
    const DWORD length = GetShortPathNameW(path, shortened.data(), needed);
    if (length == 0 || length >= needed)
        throw win32_exception(length == 0 ? GetLastError() : ERROR_INSUFFICIENT_BUFFER);
    shortened.resize(length);
    return shortened;
}

// The target need not exist yet, but its folder does.
stringx ShortTarget(const stringxi& target)
{
    if (target.empty())
        return L"NUL";
    const std::wstring_view file = PathFile(target.view());
    stringx path = ShortPath(stringx(target.view().substr(0, target.size() - file.size())).c_str());
    PathAppend(path, file);
    return path;
}

// The file is there and can be written, as far as that can be done.
stringx InitFile()
{
    wchar_t folder[MAX_PATH + 1] = L"";
    if (const UINT length = GetWindowsDirectoryW(folder, MAX_PATH); length == 0 || length >= MAX_PATH)
        throw win32_exception(GetLastError());
    stringx path(folder);
    PathAppend(path, std::wstring_view(L"WININIT.INI"));
    unique_file made(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    made.reset();
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    return path;
}

// The section as the system keeps it, lines that end in zeros, with `line` behind them and one more zero at the end.
std::vector<wchar_t> SectionWith(const stringx& line, const stringx& file)
{
    constexpr std::size_t first_room = 8191;
    constexpr std::size_t most = 1 << 28;
    std::vector<wchar_t> section(first_room);
    std::size_t used = 0;
    const auto read = [&] {
        used =
            GetPrivateProfileSectionW(section_name, section.data(), static_cast<DWORD>(section.size()), file.c_str());
        return used + line.size() + 2 <= section.size();
    };
    // A text that was cut leaves no room either.
    while (!read()) {
        if (section.size() > most)
            throw win32_exception(ERROR_NOT_ENOUGH_MEMORY);
        section.resize(section.size() * 2);
    }
    std::copy_n(line.data(), line.size(), section.begin() + static_cast<std::ptrdiff_t>(used));
    section[used + line.size()] = L'\0';
    section[used + line.size() + 1] = L'\0';
    return section;
}

DWORD ScheduleInFile(const stringxi& source, const stringxi& target)
{
    try {
        const stringx line = Concat(ShortTarget(target), L"=", ShortPath(source.c_str()));
        const stringx file = InitFile();
        return WritePrivateProfileSectionW(section_name, SectionWith(line, file).data(), file.c_str()) ? 0
                                                                                                       : GetLastError();
    } catch (const win32_exception&) {
        return 0;
    }
}

} // namespace

DWORD ScheduleAtReboot(const stringxi& source, const stringxi& target)
{
    if (MoveFileExW(source.c_str(), target.empty() ? nullptr : target.c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_DELAY_UNTIL_REBOOT))
        return 0;
    const DWORD error = GetLastError();
    return error == ERROR_CALL_NOT_IMPLEMENTED ? ScheduleInFile(source, target) : error;
}

namespace {

constexpr const wchar_t* session_key = L"System\\CurrentControlSet\\Control\\Session Manager";
constexpr const wchar_t* operations_name = L"PendingFileRenameOperations";

// The value as it stands: source and target in turn, each with a zero behind it. A target may be empty.
LSTATUS ReadOperations(HKEY key, std::wstring& operations)
{
    DWORD size = 0;
    LSTATUS error = RegQueryValueExW(key, operations_name, nullptr, nullptr, nullptr, &size);
    // It may have grown meanwhile.
    while (!error) {
        operations.resize(size / sizeof(wchar_t));
        error =
            RegQueryValueExW(key, operations_name, nullptr, nullptr, reinterpret_cast<BYTE*>(operations.data()), &size);
        if (error == ERROR_MORE_DATA) {
            error = ERROR_SUCCESS;
            continue;
        }
        operations.resize(size / sizeof(wchar_t));
        break;
    }
    return error;
}

// Without the pairs of these sources, which the list has under the names of the kernel.
std::wstring WithoutSources(const std::wstring& operations, const std::set<stringxi>& sources)
{
    constexpr std::wstring_view kernel_root = L"\\??\\";
    constexpr std::wstring_view long_root = L"\\\\?\\";
    std::set<stringxi> named;
    for (const stringxi& source : sources) {
        const std::wstring_view path = source.view();
        named.emplace(Concat(kernel_root, path.substr(path.starts_with(long_root) ? long_root.size() : 0)).view());
    }
    std::wstring kept;
    for (std::size_t at = 0; at < operations.size() && operations[at];) {
        const std::size_t middle = std::min(operations.find(L'\0', at), operations.size() - 1) + 1;
        const std::size_t end = std::min(operations.find(L'\0', middle), operations.size() - 1) + 1;
        if (!named.contains(stringxi(std::wstring_view(operations).substr(at, middle - at - 1))))
            kept.append(operations, at, end - at);
        at = end;
    }
    return kept;
}

} // namespace

LSTATUS WithdrawAtReboot(const std::set<stringxi>& sources)
{
    unique_key key;
    std::wstring operations;
    LSTATUS error = RegOpenKeyExW(HKEY_LOCAL_MACHINE, session_key, 0, KEY_QUERY_VALUE, key.put());
    if (!error)
        error = ReadOperations(key.get(), operations);
    if (error)
        return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
    const std::wstring kept = WithoutSources(operations, sources);
    if (kept.size() + 1 >= operations.size())
        return ERROR_SUCCESS;
    key.reset();
    error = RegOpenKeyExW(HKEY_LOCAL_MACHINE, session_key, 0, KEY_SET_VALUE, key.put());
    if (error)
        return error;
    if (kept.empty())
        return RegDeleteValueW(key.get(), operations_name);
    return RegSetValueExW(key.get(), operations_name, 0, REG_MULTI_SZ, reinterpret_cast<const BYTE*>(kept.c_str()),
                          static_cast<DWORD>((kept.size() + 1) * sizeof(wchar_t)));
}

} // namespace vh
