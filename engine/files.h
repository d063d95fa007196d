// The engine's dealings with the file system: wide paths of any length, reasons for every failure.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "../scriptdata/unique.h"
#include "messages.h"
#include "text.h"

namespace vh::engine {

// What a directory entry says about a file.
struct FileFacts {
    DWORD attributes = INVALID_FILE_ATTRIBUTES;
    uint64_t size = 0;
    uint64_t time = 0; // last write, as in a FILETIME

    bool exists() const { return attributes != INVALID_FILE_ATTRIBUTES; }
    bool folder() const { return exists() && (attributes & FILE_ATTRIBUTE_DIRECTORY); }
    bool file() const { return exists() && !folder(); }
};

// The form that lifts the length limit of 260 characters; short paths stay as they are.
std::wstring LongPath(const std::wstring& path);

// The system's folder for temporary files.
std::wstring TempFolder();
// In braces; a name that nothing has yet.
std::wstring NewIdentifier();
FileFacts FactsOf(const std::wstring& path);
std::wstring FileVersion(const std::wstring& path);
// At most `limit` bytes; more are an error.
std::string ReadWhole(const std::wstring& path, uint64_t limit);
// Gives each line without its end; a longer file than `limit` is an error. Result: how many bytes stand behind the last
// line end.
uint64_t ReadLines(const std::wstring& path, uint64_t limit, const std::function<void(std::string_view)>& line);
// False, with the thread's last error set, when the file can't be written whole.
bool WriteWhole(const std::wstring& path, std::string_view content);

// Reads both to the end; false also when one can't be read.
bool SameContent(const std::wstring& a, const std::wstring& b);

// Folders of the path that are not there, the outermost first. Throws when something else stands in their place.
std::vector<std::wstring> MissingFolders(const std::wstring& path);
// One folder; it may have come into being meanwhile.
void MakeFolder(const std::wstring& path);
// Makes the folder and those above it.
void MakeFolders(const std::wstring& path);
bool RemoveFile(const std::wstring& path);
// In one step, so that at every moment one of the two has the name; also over a read-only file.
bool MoveOver(const std::wstring& from, const std::wstring& to);
// Makes the files and folders that the copies and backups of a run leave behind go away; junctions are not followed.
void RemoveTree(const std::wstring& path);

struct Entry {
    std::wstring name;
    FileFacts facts;
};
// Entries of a folder that match a pattern, in order of their names; "." and ".." are left out. Empty when
// there is no such folder, or when it can't be read.
std::vector<Entry> ListFolder(const std::wstring& folder, std::wstring_view pattern = L"*");
// All entries, for those who take the content along: what can't be read to its end is an error.
std::vector<Entry> ReadFolder(const std::wstring& folder);

// A value of GetLastError as an exception that names the file.
[[noreturn]] void ThrowFileError(const std::wstring& file, DWORD code);
// The same with the words of what was being done in front.
[[noreturn]] void ThrowFileError(const std::wstring& file, const std::wstring& doing, DWORD code);

} // namespace vh::engine
