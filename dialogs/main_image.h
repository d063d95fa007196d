// The picture in the place of a dialog's image control; one for all dialogs of a context, the newest has it.
#pragma once

#include "image_spec.h"
#include "resource_modules.h"
#include "window_image.h"

namespace vh {

class MainImage {
public:
    // Takes the control's place. What can't be shown leaves the place empty.
    void Show(HWND dialog, HWND control, const ImageSpec& spec, const ResourceModules& modules, HPALETTE palette);

private:
    CSetupWindowImage m_window;
};

} // namespace vh
