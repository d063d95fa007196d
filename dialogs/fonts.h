// Fonts by face and points.
#pragma once

#include <windows.h>

namespace vh {

// The height of a font of so many points on a device, as LOGFONT takes it.
LONG FontHeight(HDC device, int points);

// The caller owns it.
HFONT MakeFont(HDC device, const wchar_t* face, int points);

} // namespace vh
