// UTF-16 text files converted to a code page.
#pragma once

#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

// Writes the text of a file, without its mark, in a code page; characters that it lacks become "?". The target has room
// for as many bytes as the source has, so a code page that needs more, and those that take no default character
// (UTF-8), fail. False for a source that is no UTF-16 text, and for failures, which are in last_file_failure(); a
// target that was opened is empty then.
bool ConvertUnicodeFile(const stringx& source, const stringx& target, UINT code_page);

} // namespace vh
