// Functions of the window system for windows that paint themselves.
#pragma once

#include "../pictures/late_drawing.h"

namespace vh::late {

inline constinit late_function<decltype(BeginPaint)> begin_paint(user32, "BeginPaint");
inline constinit late_function<decltype(EndPaint)> end_paint(user32, "EndPaint");
inline constinit late_function<decltype(InvalidateRect)> invalidate(user32, "InvalidateRect");
inline constinit late_function<decltype(MoveWindow)> move_window(user32, "MoveWindow");

} // namespace vh::late
