// Buttons of a dialog that show pictures: their text says which.
#pragma once

#include <vector>

#include "../scriptdata/unique_gdi.h"
#include "resource_modules.h"

namespace vh {

// What the buttons show; it has to outlive them.
struct ButtonPictures {
    std::vector<unique_icon> icons;
    std::vector<unique_bitmap> bitmaps;
};

// Whether the first of them is a button of a kind that can show one.
bool WantsImageButtons(HWND dialog);

// "@@number;scale" is a picture for that display scale, "@number;flag;color" a bitmap. A bitmap that is not there, or
// a text with another count of fields, ends it: later buttons stay as they are.
void SetUpImageButtons(HWND dialog, const ResourceModules& modules, ButtonPictures& pictures);

} // namespace vh
