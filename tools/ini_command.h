// vhtool ini: INI files read, changed and looked over, with the library's own reader.
#pragma once

#include <cstdint>
#include <string>

namespace tools {

struct IniOptions {
    // One unit between key and value.
    std::wstring separator = L"=";
    // Keys without a value are written without the separator.
    bool bare_keys = false;
    // Of files that have no mark; 0 is the system's.
    uint32_t code_page = 0;
    // Where the result goes; empty stands for the file that was read.
    std::wstring output;
};

// All of them throw std::runtime_error for files out of reach, and complain of what they find in a file.

// Prints the value.
int GetIniValue(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                const IniOptions& options);
// Makes file, section and key as far as they are missing.
int SetIniValue(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                const std::wstring& value, const IniOptions& options);
int SortIniFile(const std::wstring& file, const IniOptions& options);
// Sets everything that is in `other`.
int MergeIniFiles(const std::wstring& file, const std::wstring& other, const IniOptions& options);
// Prints encoding, line ends and counts, and whatever a reader would drop or refuse.
int CheckIniFile(const std::wstring& file, const IniOptions& options);

} // namespace tools
