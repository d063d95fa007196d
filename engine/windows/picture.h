// A bitmap from a file or a resource library.
#pragma once

#include "../core.h"
#include "gdi.h"

namespace vh::engine {

// `text` is a bitmap file, or a library with ";" and a number. Throws engine_error.
unique_bitmap LoadPicture(const Core& core, std::wstring_view text);
// A numbered bitmap of a library that is loaded; empty when there is none.
unique_bitmap PictureOf(HMODULE library, int number);
// A copy in another size.
unique_bitmap Scaled(HBITMAP picture, SIZE size);
// The picture beside and below itself, at least so many pixels on each side; empty for one without pixels.
unique_bitmap Repeated(HBITMAP picture, long least);

// Draws a bitmap at `place`, stretched where the sizes differ; a colour other than -1 is left out.
void DrawPicture(HDC to, const RECT& place, HBITMAP picture, long transparent = -1);

} // namespace vh::engine
