// Functions of the window system, the themes and the common controls that the views need.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <uxtheme.h>

#include "../dialogs/late_dialogs.h"

namespace vh::late {

inline constinit late_function<decltype(CharUpperBuffW)> upper_case(user32, "CharUpperBuffW");
inline constinit late_function<decltype(GetClassLongPtrW)> get_class_long(user32, "GetClassLongPtrW");
inline constinit late_function<decltype(GetKeyState)> get_key_state(user32, "GetKeyState");
inline constinit late_function<decltype(GetMessagePos)> get_message_position(user32, "GetMessagePos");
inline constinit late_function<decltype(GetScrollInfo)> get_scroll_info(user32, "GetScrollInfo");
inline constinit late_function<decltype(GetSystemMetrics)> get_system_metrics(user32, "GetSystemMetrics");
inline constinit late_function<decltype(LoadCursorW)> load_cursor(user32, "LoadCursorW");
inline constinit late_function<decltype(NotifyWinEvent)> notify_event(user32, "NotifyWinEvent");
inline constinit late_function<decltype(SetScrollInfo)> set_scroll_info(user32, "SetScrollInfo");
inline constinit late_function<decltype(SetScrollPos)> set_scroll_position(user32, "SetScrollPos");
inline constinit late_function<decltype(ShowScrollBar)> show_scroll_bar(user32, "ShowScrollBar");

inline constinit late_function<decltype(CreatePen)> create_pen(gdi32, "CreatePen");
inline constinit late_function<decltype(ExtTextOutW)> ext_text_out(gdi32, "ExtTextOutW");
inline constinit late_function<decltype(GetTextExtentExPointW)> get_text_extent_ex(gdi32, "GetTextExtentExPointW");
inline constinit late_function<decltype(Polyline)> poly_line(gdi32, "Polyline");
inline constinit late_function<decltype(RectVisible)> rect_visible(gdi32, "RectVisible");

inline constinit late_function<decltype(OpenThemeData)> open_theme(uxtheme, "OpenThemeData");
inline constinit late_function<decltype(CloseThemeData)> close_theme(uxtheme, "CloseThemeData");
inline constinit late_function<HRESULT WINAPI(HTHEME, HDC, int, int, const RECT*, THEMESIZE, SIZE*)>
    get_theme_part_size(uxtheme, "GetThemePartSize");
inline constinit late_function<decltype(DrawThemeBackground)> draw_theme_background(uxtheme, "DrawThemeBackground");

inline constinit late_library common_controls(L"comctl32.dll");
inline constinit late_function<decltype(ImageList_AddMasked)> image_list_add_masked(common_controls,
                                                                                    "ImageList_AddMasked");
inline constinit late_function<decltype(ImageList_Add)> image_list_add(common_controls, "ImageList_Add");
inline constinit late_function<decltype(ImageList_Create)> image_list_create(common_controls, "ImageList_Create");
inline constinit late_function<decltype(ImageList_Destroy)> image_list_destroy(common_controls, "ImageList_Destroy");
inline constinit late_function<decltype(ImageList_Draw)> image_list_draw(common_controls, "ImageList_Draw");

} // namespace vh::late
