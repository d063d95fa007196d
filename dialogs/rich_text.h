// Text and RTF into a rich edit control.
#pragma once

#include "../scriptdata/stringx.h"

namespace vh {

void StreamRichText(HWND edit, const stringx& text);

// From a file; ".rtf" at its end makes it RTF. The stream's error, the system's for a file that does not open, or -4
// for a null path.
int32_t StreamRichFile(HWND edit, const wchar_t* path);

} // namespace vh
