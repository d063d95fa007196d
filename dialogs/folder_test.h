// Which folders the folder picker takes from its edit control.
#pragma once

#include <string_view>

#include "../scriptdata/stringx.h"

namespace vh {

// Without the blanks, tabs and line feeds at its ends.
std::wstring_view TrimmedText(std::wstring_view text);

// A typed folder, trimmed and without one backslash at its end; a root keeps its own.
std::wstring_view TypedFolder(std::wstring_view text);

// Whether a new folder could be made at the path and take a file. It is made and taken away again: nothing is left
// behind. A folder that is there already is not new.
bool IsNewFolderPossible(std::wstring_view path);

// The path's disk is there, its syntax holds, and with `verify` it is a new folder that can be made.
bool IsFolderAccepted(const stringx& path, bool verify);

// The text with the path in the place of its first %s or %ls; %% is a percent sign. Nothing else has a meaning.
stringx TextWithPath(std::wstring_view text, std::wstring_view path);

} // namespace vh
