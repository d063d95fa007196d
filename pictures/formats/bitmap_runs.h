// Bitmaps whose pixels stand as run lengths of 8 or 4 bits.
#pragma once

#include "bitmap_file.h"

namespace vh {

// Takes `picture` apart into a byte for each pixel, rows bottom first. What the runs leave out has index 0, what they
// have beyond the picture is dropped. False for a picture that is larger than any program shows.
bool UnpackRuns(bitmap_picture& picture);

} // namespace vh
