// The functions of the window system that the library calls outside of its dialogs.
#pragma once

#include <windows.h>

#include "../scriptdata/late_library.h"

namespace vh::late {

inline constinit late_library user32(L"user32.dll");
inline constinit late_function<decltype(GetDC)> get_dc(user32, "GetDC");
inline constinit late_function<decltype(ReleaseDC)> release_dc(user32, "ReleaseDC");
inline constinit late_function<decltype(GetClientRect)> get_client_rect(user32, "GetClientRect");

inline constinit late_library gdi32(L"gdi32.dll");
inline constinit late_function<decltype(GetTextExtentPoint32W)> get_text_extent(gdi32, "GetTextExtentPoint32W");

} // namespace vh::late
