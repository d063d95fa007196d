/* The picture in a dialog's image control, and the palette. */
#pragma once

#include "types.h"

/* Kinds of _SetAltMainImage: a text; a text that starts with the path of a file; the text before; no picture. */
enum { ImageText = 1, ImageFile = -2, ImagePrevious = -1, ImageNone = 0 };

/* Sets the picture of the status window and of all dialogs from their next creation on. Result: 0, also for another
   kind, which changes nothing; 0x80070004 when there is no such file; the engine's failing code; -1 where the engine
   brings its own windows. */
VHRT_FUNCTION(int32_t) _SetAltMainImage(ObjectContext* context, int32_t kind, const wchar_t* text);

/* The same by file and scale in percent, at least 25; -1 means the picture before, 0 none. Result: also -2 for a
   smaller scale. */
VHRT_FUNCTION(int32_t) _SetAltMainImageEx(ObjectContext* context, int32_t scale, const wchar_t* path);

/* Reads a palette file (RIFF) for pictures on displays of 8 bits or fewer; one that can't be used clears the palette.
   Result: 0. */
VHRT_FUNCTION(int32_t) _SetPaletteFile(ObjectContext* context, const wchar_t* path);
