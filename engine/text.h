// Text and path helpers of the engine.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>
#include <windows.h>

namespace vh::engine {

std::wstring ToWide(std::string_view utf8);
// Unpaired surrogates become U+FFFD.
std::string ToUtf8(std::wstring_view text);

// Upper case by the system's ordinal rules, for keys of look-ups.
std::wstring Upper(std::wstring_view text);
bool SameText(std::wstring_view a, std::wstring_view b);
// '*' stands for any run of characters, '?' for one; case does not count.
bool MatchesPattern(std::wstring_view text, std::wstring_view pattern);

// The system's text for an error code, without line ends.
std::wstring SystemText(DWORD code);
// Bytes as hexadecimal digits, two each.
std::wstring ToHex(std::string_view bytes);
std::string FromHex(std::wstring_view digits);
inline HRESULT FromWin32(DWORD code) { return code ? HRESULT_FROM_WIN32(code) : S_OK; }

// Joins with one backslash; an empty part leaves the other one as it is.
std::wstring JoinPath(std::wstring_view folder, std::wstring_view name);
// Part before the last backslash; empty without one.
std::wstring FolderOf(std::wstring_view path);
std::wstring FileNameOf(std::wstring_view path);
// "C:" or "\\server\share"; empty for a relative path.
std::wstring DriveOf(std::wstring_view path);
// Absolute, with backslashes and without dots; empty when the system refuses it.
std::wstring FullPath(const std::wstring& path);
// True when `path` is `folder` or lies below it; both in full form.
bool LiesIn(std::wstring_view path, std::wstring_view folder);
// Why a relative path names no file that it seems to name: it has a drive, a root, "..", a character that no name may
// hold, a device's name, or a part that Windows would rewrite. Empty for a good one.
std::wstring PathFault(std::wstring_view path, bool wildcardsInLastPart = false);

// Up to four numbers with dots; parts that are missing count as 0. Negative, zero or positive.
int CompareVersions(std::wstring_view a, std::wstring_view b);
bool IsVersion(std::wstring_view text);

std::wstring Number(int64_t value);

} // namespace vh::engine
