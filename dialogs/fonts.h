// Fonts by face and points.
#pragma once

#include <cstdint>
#include <windows.h>

namespace vh {

// The height of a font of so many points on a device, as LOGFONT takes it.
LONG FontHeight(HDC device, int points);

// The caller owns it.
HFONT MakeFont(HDC device, const wchar_t* face, int points);

// A font by face and points in the style bits 0x40 bold, 0x1000 italic, 0x2000 underlined, 4 struck out; "Arial" stands
// in for a face that nobody has. The caller owns it.
HFONT MakeStyledFont(const wchar_t* face, int points, int style);

// Not 0 when the display has such a face and can use it.
int32_t IsFaceThere(const wchar_t* face);

} // namespace vh
