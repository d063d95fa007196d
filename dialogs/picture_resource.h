// Pictures of the resource libraries as icons for buttons and labels.
#pragma once

#include "../scriptdata/unique_gdi.h"
#include "resource_modules.h"

namespace vh {

// The library that has a picture of that number, as a bitmap or else as a PNG; null when there is none.
HMODULE FindPicture(const ResourceModules& modules, int number);

// The picture drawn for the display: smaller where the display's scale is below the one, in percent, that it is made
// for. Empty when it can't be had.
unique_icon LoadPictureIcon(const ResourceModules& modules, int number, int design_scale);

} // namespace vh
