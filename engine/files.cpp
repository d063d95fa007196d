#include "files.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include <objbase.h>

#include "../scriptdata/folder_link.h"
#include "../scriptdata/late_version.h"

namespace vh::engine {

namespace {

constexpr std::size_t plain_path_limit = 240;

uint64_t Whole(DWORD high, DWORD low) { return static_cast<uint64_t>(high) << 32 | low; }

FileFacts FactsFrom(DWORD attributes, DWORD sizeHigh, DWORD sizeLow, const FILETIME& written)
{
    return {attributes, Whole(sizeHigh, sizeLow), Whole(written.dwHighDateTime, written.dwLowDateTime)};
}

} // namespace

std::wstring LongPath(const std::wstring& path)
{
    if (path.size() < plain_path_limit || path.starts_with(L"\\\\?\\"))
        return path;
    if (path.starts_with(L"\\\\"))
        return L"\\\\?\\UNC" + path.substr(1);
    return L"\\\\?\\" + path;
}

std::wstring TempFolder()
{
    std::array<wchar_t, MAX_PATH + 1> path{};
    const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
    return FullPath(std::wstring(path.data(), length));
}

std::wstring NewIdentifier()
{
    GUID id{};
    std::array<wchar_t, 39> text{};
    if (FAILED(CoCreateGuid(&id)) || !StringFromGUID2(id, text.data(), static_cast<int>(text.size())))
        throw engine_error(E_FAIL, {}, L"the system gives no identifier");
    return text.data();
}

FileFacts FactsOf(const std::wstring& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(LongPath(path).c_str(), GetFileExInfoStandard, &data))
        return {};
    return FactsFrom(data.dwFileAttributes, data.nFileSizeHigh, data.nFileSizeLow, data.ftLastWriteTime);
}

std::wstring FileVersion(const std::wstring& path)
{
    DWORD unused = 0;
    const DWORD size = vh::late::query_version ? vh::late::get_version_size(LongPath(path).c_str(), &unused) : 0;
    if (!size)
        return {};
    const auto block = std::make_unique<std::byte[]>(size);
    VS_FIXEDFILEINFO* info = nullptr;
    UINT length = 0;
    if (!vh::late::get_version(LongPath(path).c_str(), DWORD{0}, size, static_cast<void*>(block.get())) ||
        !vh::late::query_version(static_cast<void*>(block.get()), L"\\", reinterpret_cast<void**>(&info), &length) ||
        length < sizeof *info)
        return {};
    return Number(HIWORD(info->dwFileVersionMS)) + L'.' + Number(LOWORD(info->dwFileVersionMS)) + L'.' +
           Number(HIWORD(info->dwFileVersionLS)) + L'.' + Number(LOWORD(info->dwFileVersionLS));
}

namespace {

// A file to be read, of so many bytes at most.
struct Opened {
    unique_file file;
    uint64_t size = 0;
};

Opened OpenLimited(const std::wstring& path, uint64_t limit)
{
    Opened opened;
    opened.file.reset(CreateFileW(LongPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size{};
    if (!opened.file || !GetFileSizeEx(opened.file.get(), &size))
        ThrowFileError(path, GetLastError());
    opened.size = static_cast<uint64_t>(size.QuadPart);
    if (opened.size > limit)
        throw engine_error(FromWin32(ERROR_FILE_TOO_LARGE), path,
                           L"is larger than " + Number(static_cast<int64_t>(limit)) + L" bytes");
    return opened;
}

DWORD ReadInto(const unique_file& file, const std::wstring& path, char* room, std::size_t size)
{
    DWORD got = 0;
    if (!ReadFile(file.get(), room, static_cast<DWORD>(size), &got, nullptr))
        ThrowFileError(path, GetLastError());
    return got;
}

} // namespace

std::string ReadWhole(const std::wstring& path, uint64_t limit)
{
    const Opened opened = OpenLimited(path, limit);
    std::string content(static_cast<std::size_t>(opened.size), '\0');
    content.resize(ReadInto(opened.file, path, content.data(), content.size()));
    return content;
}

uint64_t ReadLines(const std::wstring& path, uint64_t limit, const std::function<void(std::string_view)>& line)
{
    constexpr std::size_t step = 64 * 1024;
    const Opened opened = OpenLimited(path, limit);
    // The start of a line whose end is not read yet, and room behind it.
    std::string room;
    std::size_t begun = 0;
    for (uint64_t left = opened.size; left;) {
        room.resize(begun + step);
        const DWORD got = ReadInto(opened.file, path, room.data() + begun, step);
        if (!got)
            break;
        left -= std::min<uint64_t>(left, got);
        std::string_view rest(room.data(), begun + got);
        // What was there already holds no line end.
        for (std::size_t end = rest.find('\n', begun); end != rest.npos; end = rest.find('\n')) {
            line(rest.substr(0, end));
            rest.remove_prefix(end + 1);
        }
        begun = rest.size();
        room.erase(0, static_cast<std::size_t>(rest.data() - room.data()));
    }
    return begun;
}

bool WriteWhole(const std::wstring& path, std::string_view content)
{
    const unique_file file(
        CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD put = 0;
    return file && WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &put, nullptr) &&
           put == content.size();
}

bool SameContent(const std::wstring& a, const std::wstring& b)
{
    constexpr DWORD block = 256 * 1024;
    const auto open = [](const std::wstring& path) {
        return unique_file(CreateFileW(LongPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    };
    const unique_file first = open(a);
    const unique_file second = open(b);
    if (!first || !second)
        return false;
    const auto blocks = std::make_unique<std::byte[]>(std::size_t{2} * block);
    for (;;) {
        DWORD got = 0;
        DWORD gotToo = 0;
        if (!ReadFile(first.get(), blocks.get(), block, &got, nullptr) ||
            !ReadFile(second.get(), blocks.get() + block, block, &gotToo, nullptr) || got != gotToo ||
            std::memcmp(blocks.get(), blocks.get() + block, got) != 0)
            return false;
        if (!got)
            return true;
    }
}

std::vector<std::wstring> MissingFolders(const std::wstring& path)
{
    std::vector<std::wstring> missing;
    for (std::wstring at = path; !at.empty() && at != DriveOf(at); at = FolderOf(at)) {
        const FileFacts facts = FactsOf(at);
        if (facts.folder())
            break;
        if (facts.exists())
            ThrowFileError(at, L"can't make the folder", ERROR_ALREADY_EXISTS);
        missing.push_back(at);
    }
    std::reverse(missing.begin(), missing.end());
    return missing;
}

void MakeFolder(const std::wstring& path)
{
    if (CreateDirectoryW(LongPath(path).c_str(), nullptr))
        return;
    const DWORD code = GetLastError();
    if (code != ERROR_ALREADY_EXISTS || !FactsOf(path).folder())
        ThrowFileError(path, L"can't make the folder", code);
}

void MakeFolders(const std::wstring& path)
{
    for (const std::wstring& folder : MissingFolders(path))
        MakeFolder(folder);
}

bool RemoveFile(const std::wstring& path)
{
    const std::wstring name = LongPath(path);
    if (DeleteFileW(name.c_str()))
        return true;
    if (GetLastError() != ERROR_ACCESS_DENIED)
        return false;
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    SetFileAttributesW(name.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    return DeleteFileW(name.c_str()) != 0;
}

bool MoveOver(const std::wstring& from, const std::wstring& to)
{
    const DWORD attributes = GetFileAttributesW(LongPath(to).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
        SetFileAttributesW(LongPath(to).c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    return MoveFileExW(LongPath(from).c_str(), LongPath(to).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

void RemoveTree(const std::wstring& path)
{
    // A folder is listed when it is met first and removed when it is met again; a link goes without what it leads to.
    struct Visit {
        std::wstring folder;
        bool emptied;
    };
    std::vector<Visit> visits;
    const auto meet = [&](const std::wstring& folder, DWORD attributes) {
        if (attributes != INVALID_FILE_ATTRIBUTES && LeadsElsewhere(attributes))
            RemoveLink(LongPath(folder).c_str());
        else
            visits.push_back({folder, false});
    };
    meet(path, FactsOf(path).attributes);
    while (!visits.empty()) {
        Visit& top = visits.back();
        const std::wstring folder = top.folder;
        if (top.emptied) {
            visits.pop_back();
            RemoveDirectoryW(LongPath(folder).c_str());
            continue;
        }
        top.emptied = true;
        for (const Entry& entry : ListFolder(folder)) {
            const std::wstring full = JoinPath(folder, entry.name);
            if (!entry.facts.folder())
                RemoveFile(full);
            else
                meet(full, entry.facts.attributes);
        }
    }
}

namespace {

// The result tells why there are no more.
DWORD ListInto(std::vector<Entry>& entries, const std::wstring& folder, std::wstring_view pattern)
{
    WIN32_FIND_DATAW found{};
    const unique_find search(FindFirstFileW(LongPath(JoinPath(folder, L"*")).c_str(), &found));
    if (!search)
        return GetLastError();
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L".." && MatchesPattern(name, pattern))
            entries.push_back({name, FactsFrom(found.dwFileAttributes, found.nFileSizeHigh, found.nFileSizeLow,
                                               found.ftLastWriteTime)});
    } while (FindNextFileW(search.get(), &found));
    const DWORD code = GetLastError();
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return code;
}

} // namespace

std::vector<Entry> ListFolder(const std::wstring& folder, std::wstring_view pattern)
{
    std::vector<Entry> entries;
    ListInto(entries, folder, pattern);
    return entries;
}

std::vector<Entry> ReadFolder(const std::wstring& folder)
{
    std::vector<Entry> entries;
    const DWORD code = ListInto(entries, folder, L"*");
    // An empty drive has not even the entry of itself.
    if (code != ERROR_NO_MORE_FILES && code != ERROR_FILE_NOT_FOUND)
        ThrowFileError(folder, L"the folder can't be read", code);
    return entries;
}

void ThrowFileError(const std::wstring& file, DWORD code)
{
    throw engine_error(FromWin32(code), file, SystemText(code));
}

void ThrowFileError(const std::wstring& file, const std::wstring& doing, DWORD code)
{
    throw engine_error(FromWin32(code), file, doing + L": " + SystemText(code));
}

} // namespace vh::engine
