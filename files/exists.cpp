#include "exists.h"

#include <windows.h>

#include "../diagnostics/file.h"
#include "../diagnostics/url.h"
#include "../scriptdata/path_text.h"

namespace vh {

namespace {

bool Absent(const wchar_t* path, DWORD error, unsigned mask)
{
    if ((mask & exists_raise) && error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND)
        throw file_exception(error, path);
    return false;
}

bool IsOfKind(DWORD attributes, unsigned mask)
{
    const bool directory = attributes & FILE_ATTRIBUTE_DIRECTORY;
    switch (mask & (exists_file | exists_directory)) {
    case exists_file:
        return !directory;
    case exists_directory:
        return directory;
    default:
        return true;
    }
}

} // namespace

bool exists(const wchar_t* path, unsigned mask)
{
    if (!path)
        path = L"";
    if ((mask & exists_url) && IsUrl(path)) {
        file address;
        const DWORD error = address.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING);
        return error == 0 || Absent(path, error, mask);
    }
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes != INVALID_FILE_ATTRIBUTES)
        return IsOfKind(attributes, mask);
    DWORD error = GetLastError();
    if (error == ERROR_ACCESS_DENIED) {
        // The folder may still list what can't be asked itself.
        WIN32_FIND_DATAW entry;
        const unique_find search(FindFirstFileW(path, &entry));
        if (search)
            return IsOfKind(entry.dwFileAttributes, mask);
        error = GetLastError();
    }
    return Absent(path, error, mask);
}

int32_t TestPath(const wchar_t* path, unsigned mask, int32_t present, int32_t absent, int32_t other)
{
    try {
        return exists(path, mask) ? present : absent;
    } catch (const win32_exception& failure) {
        return static_cast<int32_t>(failure.code());
    } catch (const std::exception&) {
        return other;
    }
}

int32_t DiskState(std::wstring_view path)
{
    const stringx root(PathRoot(path));
    const int32_t answer = TestPath(root.c_str(), test_either, 0, -1, -1);
    if (answer == ERROR_NOT_READY)
        return -2;
    return answer == 0 ? 0 : -1;
}

} // namespace vh
