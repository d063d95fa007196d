// vhtool trace: the library's trace files as plain text.
#pragma once

#include <string>

namespace tools {

// Writes the plain text of a trace file to standard output, or to `output`. A damaged file gives all records
// before the damage, and a message that says where it is. Throws std::runtime_error for files out of reach.
int DecodeTrace(const std::wstring& file, const std::wstring& output);

// Prints what is in the file and then each record as it comes, until Ctrl+C or for so many seconds (0: no
// limit). A file that is not there yet is waited for; one that was made anew is printed from its start.
int FollowTrace(const std::wstring& file, unsigned seconds);

} // namespace tools
