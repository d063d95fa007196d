// Paths that have to fit into a window.
#pragma once

#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

// Replaces folders by "..." until the path fits into the window's width in the font of its device context, or can't
// become shorter. False without a device context; the text is untouched then.
bool CompactPath(HWND window, stringx& path);

} // namespace vh
