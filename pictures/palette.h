// Palettes for displays that have one.
#pragma once

#include "gdi_objects.h"

namespace vh {

// From a RIFF file; empty when that can't be read.
unique_palette LoadPalette(const wchar_t* path);

} // namespace vh
