// What a context remembers of the main window's title, bitmaps and font.
#pragma once

#include <map>

#include "../Src/inc/engine_window.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/stringx.h"
#include "../scriptdata/unique_gdi.h"

namespace vh {

struct WindowFacts {
    // Made on first use, by the engine's window.
    com_ptr<ISetupTitle> title;
    stringx face = L"Times New Roman";
    // Bold, italic and shadow to begin with.
    int32_t font_style = 20544;
    std::map<int32_t, com_ptr<ISetupBitmap>> bitmaps;
    int32_t effect = 0;
    int32_t width = 0;
    int32_t height = 0;
    // Goes first of all this, whoever leaves one here.
    unique_font font;
};

} // namespace vh
