// Places of windows: on the screen, and inside their parent.
#pragma once

#include <windows.h>

namespace vh {

constexpr int WidthOf(const RECT& place) { return static_cast<int>(place.right - place.left); }
constexpr int HeightOf(const RECT& place) { return static_cast<int>(place.bottom - place.top); }

// In screen coordinates.
RECT PlaceOf(HWND window);

// In client coordinates of the parent.
RECT PlaceIn(HWND parent, HWND child);

// Moves and sizes without a change of order.
void Place(HWND window, const RECT& place);

// What a window may take of its monitor.
RECT WorkAreaOf(HWND window);

// Over the owner when that can be seen, else in the middle of the monitor; a child window in the middle of its parent
// `owner`. Never beyond the edges.
void Centre(HWND window, HWND owner);

} // namespace vh
