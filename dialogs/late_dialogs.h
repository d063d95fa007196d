// Functions of the window system and the shell that dialogs need.
#pragma once

#include <windows.h>

#include <ole2.h>
#include <shellapi.h>
#include <shlobj.h>

#include "../pictures/late_drawing.h"

namespace vh::late {

inline constinit late_function<decltype(BeginPaint)> begin_paint(user32, "BeginPaint");
inline constinit late_function<decltype(CallWindowProcW)> call_window_proc(user32, "CallWindowProcW");
inline constinit late_function<decltype(CreateDialogIndirectParamW)>
    create_dialog_indirect(user32, "CreateDialogIndirectParamW");
inline constinit late_function<decltype(DrawTextW)> draw_text(user32, "DrawTextW");
inline constinit late_function<decltype(EnableWindow)> enable_window(user32, "EnableWindow");
inline constinit late_function<decltype(EndPaint)> end_paint(user32, "EndPaint");
inline constinit late_function<decltype(EnumChildWindows)> enum_child_windows(user32, "EnumChildWindows");
inline constinit late_function<decltype(FindWindowExW)> find_child_window(user32, "FindWindowExW");
inline constinit late_function<decltype(GetDlgCtrlID)> get_control_id(user32, "GetDlgCtrlID");
inline constinit late_function<decltype(GetDlgItem)> get_dialog_item(user32, "GetDlgItem");
inline constinit late_function<decltype(GetFocus)> get_focus(user32, "GetFocus");
inline constinit late_function<decltype(GetMessageW)> get_message(user32, "GetMessageW");
inline constinit late_function<decltype(GetMonitorInfoW)> get_monitor_info(user32, "GetMonitorInfoW");
inline constinit late_function<decltype(GetParent)> get_parent(user32, "GetParent");
inline constinit late_function<decltype(GetSysColor)> get_system_color(user32, "GetSysColor");
inline constinit late_function<decltype(GetSysColorBrush)> get_system_brush(user32, "GetSysColorBrush");
inline constinit late_function<decltype(GetWindow)> get_window(user32, "GetWindow");
inline constinit late_function<decltype(GetWindowLongPtrW)> get_window_long(user32, "GetWindowLongPtrW");
inline constinit late_function<decltype(GetWindowRect)> get_window_rect(user32, "GetWindowRect");
inline constinit late_function<decltype(GetWindowTextLengthW)> get_text_length(user32, "GetWindowTextLengthW");
inline constinit late_function<decltype(GetWindowTextW)> get_text(user32, "GetWindowTextW");
inline constinit late_function<decltype(GetWindowThreadProcessId)> get_window_thread(user32,
                                                                                     "GetWindowThreadProcessId");
inline constinit late_function<decltype(InvalidateRect)> invalidate(user32, "InvalidateRect");
inline constinit late_function<decltype(IsChild)> is_child(user32, "IsChild");
inline constinit late_function<decltype(IsDialogMessageW)> is_dialog_message(user32, "IsDialogMessageW");
inline constinit late_function<decltype(IsIconic)> is_iconic(user32, "IsIconic");
inline constinit late_function<decltype(IsWindowVisible)> is_visible(user32, "IsWindowVisible");
inline constinit late_function<decltype(LoadIconW)> load_icon(user32, "LoadIconW");
inline constinit late_function<decltype(LoadImageW)> load_image(user32, "LoadImageW");
inline constinit late_function<decltype(MapDialogRect)> map_dialog_rect(user32, "MapDialogRect");
inline constinit late_function<decltype(MapWindowPoints)> map_window_points(user32, "MapWindowPoints");
inline constinit late_function<decltype(MessageBeep)> message_beep(user32, "MessageBeep");
inline constinit late_function<decltype(MessageBoxW)> message_box(user32, "MessageBoxW");
inline constinit late_function<decltype(MonitorFromWindow)> monitor_from_window(user32, "MonitorFromWindow");
inline constinit late_function<decltype(MoveWindow)> move_window(user32, "MoveWindow");
inline constinit late_function<decltype(RegisterWindowMessageW)> register_window_message(user32,
                                                                                         "RegisterWindowMessageW");
inline constinit late_function<decltype(ScreenToClient)> screen_to_client(user32, "ScreenToClient");
inline constinit late_function<decltype(SendMessageW)> send_message(user32, "SendMessageW");
inline constinit late_function<decltype(SetActiveWindow)> set_active_window(user32, "SetActiveWindow");
inline constinit late_function<decltype(SetFocus)> set_focus(user32, "SetFocus");
inline constinit late_function<decltype(SetWindowLongPtrW)> set_window_long(user32, "SetWindowLongPtrW");
inline constinit late_function<decltype(SetWindowPos)> set_window_pos(user32, "SetWindowPos");
inline constinit late_function<decltype(SetWindowTextW)> set_text(user32, "SetWindowTextW");

inline constinit late_function<decltype(CreateFontIndirectW)> create_font(gdi32, "CreateFontIndirectW");
inline constinit late_function<decltype(CreateICW)> create_information_context(gdi32, "CreateICW");
inline constinit late_function<decltype(EnumFontFamiliesExW)> enum_fonts(gdi32, "EnumFontFamiliesExW");
inline constinit late_function<decltype(GetObjectW)> get_object(gdi32, "GetObjectW");
inline constinit late_function<decltype(GetStockObject)> get_stock_object(gdi32, "GetStockObject");
inline constinit late_function<decltype(GetTextMetricsW)> get_text_metrics(gdi32, "GetTextMetricsW");
inline constinit late_function<decltype(SetBkMode)> set_background_mode(gdi32, "SetBkMode");
inline constinit late_function<decltype(TextOutW)> text_out(gdi32, "TextOutW");

inline constinit late_library uxtheme(L"uxtheme.dll");
inline constinit late_function<DWORD WINAPI()> get_theme_properties(uxtheme, "GetThemeAppProperties");

inline constinit late_function<decltype(OleInitialize)> ole_initialize(ole32, "OleInitialize");
inline constinit late_function<decltype(OleUninitialize)> ole_uninitialize(ole32, "OleUninitialize");

inline constinit late_library shell32(L"shell32.dll");
inline constinit late_function<decltype(SHBrowseForFolderW)> browse_for_folder(shell32, "SHBrowseForFolderW");
inline constinit late_function<decltype(SHGetPathFromIDListW)> path_from_id_list(shell32, "SHGetPathFromIDListW");
inline constinit late_function<decltype(SHGetSpecialFolderLocation)>
    special_folder_location(shell32, "SHGetSpecialFolderLocation");
inline constinit late_function<decltype(ShellExecuteW)> shell_execute(shell32, "ShellExecuteW");

} // namespace vh::late
