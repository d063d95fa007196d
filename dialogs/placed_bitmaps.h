// Bitmaps that a script places on the main window, each under a number of its own.
#pragma once

#include "dialog_scene.h"
#include "window_facts.h"

namespace vh {

class PlacedBitmaps {
public:
    PlacedBitmaps(ISetupWindow* window, WindowFacts& facts) : m_window(window), m_facts(facts) {}

    // Flag 0x8000 takes the bitmap of that number away; others say where a new one stands, and 32 that the text ends in
    // ";r,g,b", the colour that is left out. 0 or the engine's failure; E_FAIL without a window.
    int32_t Place(std::wstring_view text, int32_t id, int32_t x, int32_t y, int32_t flags);

private:
    ISetupWindow* m_window;
    WindowFacts& m_facts;
};

} // namespace vh
