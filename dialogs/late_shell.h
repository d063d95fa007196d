// Functions of the window system and the shell that the folder picker needs.
#pragma once

#include <windows.h>

#include <ole2.h>
#include <shlobj.h>

#include "../scriptdata/late_windows.h"

namespace vh::late {

inline constinit late_function<decltype(CallWindowProcW)> call_window_proc(user32, "CallWindowProcW");
inline constinit late_function<decltype(DrawTextW)> draw_text(user32, "DrawTextW");
inline constinit late_function<decltype(EnableWindow)> enable_window(user32, "EnableWindow");
inline constinit late_function<decltype(FindWindowExW)> find_child_window(user32, "FindWindowExW");
inline constinit late_function<decltype(GetDlgItem)> get_dialog_item(user32, "GetDlgItem");
inline constinit late_function<decltype(GetMonitorInfoW)> get_monitor_info(user32, "GetMonitorInfoW");
inline constinit late_function<decltype(GetWindow)> get_window(user32, "GetWindow");
inline constinit late_function<decltype(GetWindowLongPtrW)> get_window_long(user32, "GetWindowLongPtrW");
inline constinit late_function<decltype(GetWindowRect)> get_window_rect(user32, "GetWindowRect");
inline constinit late_function<decltype(GetWindowTextLengthW)> get_text_length(user32, "GetWindowTextLengthW");
inline constinit late_function<decltype(GetWindowTextW)> get_text(user32, "GetWindowTextW");
inline constinit late_function<decltype(IsIconic)> is_iconic(user32, "IsIconic");
inline constinit late_function<decltype(IsWindowVisible)> is_visible(user32, "IsWindowVisible");
inline constinit late_function<decltype(MapDialogRect)> map_dialog_rect(user32, "MapDialogRect");
inline constinit late_function<decltype(MapWindowPoints)> map_window_points(user32, "MapWindowPoints");
inline constinit late_function<decltype(MessageBoxW)> message_box(user32, "MessageBoxW");
inline constinit late_function<decltype(MonitorFromWindow)> monitor_from_window(user32, "MonitorFromWindow");
inline constinit late_function<decltype(SendMessageW)> send_message(user32, "SendMessageW");
inline constinit late_function<decltype(SetWindowLongPtrW)> set_window_long(user32, "SetWindowLongPtrW");
inline constinit late_function<decltype(SetWindowPos)> set_window_pos(user32, "SetWindowPos");
inline constinit late_function<decltype(SetWindowTextW)> set_text(user32, "SetWindowTextW");

inline constinit late_function<decltype(OleInitialize)> ole_initialize(ole32, "OleInitialize");
inline constinit late_function<decltype(OleUninitialize)> ole_uninitialize(ole32, "OleUninitialize");

inline constinit late_library shell32(L"shell32.dll");
inline constinit late_function<decltype(SHBrowseForFolderW)> browse_for_folder(shell32, "SHBrowseForFolderW");
inline constinit late_function<decltype(SHGetPathFromIDListW)> path_from_id_list(shell32, "SHGetPathFromIDListW");
inline constinit late_function<decltype(SHGetSpecialFolderLocation)>
    special_folder_location(shell32, "SHGetSpecialFolderLocation");

} // namespace vh::late
