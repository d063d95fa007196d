// Functions of the window system and of COM that few calls need.
#pragma once

#include <windows.h>

#include <objbase.h>

#include "late_library.h"

namespace vh::late {

inline constinit late_library user32(L"user32.dll");
inline constinit late_function<decltype(GetDC)> get_dc(user32, "GetDC");
inline constinit late_function<decltype(ReleaseDC)> release_dc(user32, "ReleaseDC");
inline constinit late_function<decltype(GetClientRect)> get_client_rect(user32, "GetClientRect");
inline constinit late_function<decltype(FindWindowW)> find_window(user32, "FindWindowW");
inline constinit late_function<decltype(ShowWindow)> show_window(user32, "ShowWindow");
inline constinit late_function<decltype(WaitForInputIdle)> wait_for_input_idle(user32, "WaitForInputIdle");
inline constinit late_function<decltype(IsWindow)> is_window(user32, "IsWindow");
inline constinit late_function<decltype(PostMessageW)> post_message(user32, "PostMessageW");
inline constinit late_function<decltype(GetClassNameW)> get_class_name(user32, "GetClassNameW");
inline constinit late_function<decltype(GetClassInfoW)> get_class_info(user32, "GetClassInfoW");
inline constinit late_function<decltype(RegisterClassW)> register_class(user32, "RegisterClassW");
inline constinit late_function<decltype(UnregisterClassW)> unregister_class(user32, "UnregisterClassW");
inline constinit late_function<decltype(CreateWindowExW)> create_window_ex(user32, "CreateWindowExW");
inline constinit late_function<decltype(DestroyIcon)> destroy_icon(user32, "DestroyIcon");
inline constinit late_function<decltype(DestroyWindow)> destroy_window(user32, "DestroyWindow");
inline constinit late_function<decltype(DefWindowProcW)> def_window_proc(user32, "DefWindowProcW");
inline constinit late_function<decltype(SetPropW)> set_prop(user32, "SetPropW");
inline constinit late_function<decltype(GetPropW)> get_prop(user32, "GetPropW");
inline constinit late_function<decltype(RemovePropW)> remove_prop(user32, "RemovePropW");
inline constinit late_function<decltype(PeekMessageW)> peek_message(user32, "PeekMessageW");
inline constinit late_function<decltype(TranslateMessage)> translate_message(user32, "TranslateMessage");
inline constinit late_function<decltype(DispatchMessageW)> dispatch_message(user32, "DispatchMessageW");
inline constinit late_function<decltype(PostQuitMessage)> post_quit_message(user32, "PostQuitMessage");
inline constinit late_function<decltype(MsgWaitForMultipleObjects)>
    msg_wait_for_multiple_objects(user32, "MsgWaitForMultipleObjects");
inline constinit late_function<decltype(GetDesktopWindow)> get_desktop_window(user32, "GetDesktopWindow");
inline constinit late_function<decltype(MonitorFromPoint)> monitor_from_point(user32, "MonitorFromPoint");
inline constinit late_function<decltype(LoadStringW)> load_string(user32, "LoadStringW");
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
inline constinit late_function<decltype(UpdateWindow)> update_window(user32, "UpdateWindow");

inline constinit late_library gdi32(L"gdi32.dll");
inline constinit late_function<decltype(GetTextExtentPoint32W)> get_text_extent(gdi32, "GetTextExtentPoint32W");
inline constinit late_function<decltype(GetDeviceCaps)> get_device_caps(gdi32, "GetDeviceCaps");
inline constinit late_function<decltype(DeleteObject)> delete_object(gdi32, "DeleteObject");
inline constinit late_function<decltype(SelectObject)> select_object(gdi32, "SelectObject");
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
inline constinit late_function<HRESULT WINAPI(HWND, const wchar_t*, const wchar_t*)> set_window_theme(uxtheme,
                                                                                                      "SetWindowTheme");

inline constinit late_library ole32(L"ole32.dll");
inline constinit late_function<decltype(CoGetInterfaceAndReleaseStream)>
    get_interface_and_release_stream(ole32, "CoGetInterfaceAndReleaseStream");
inline constinit late_function<decltype(CoLoadLibrary)> co_load_library(ole32, "CoLoadLibrary");
inline constinit late_function<decltype(CoCreateInstance)> co_create_instance(ole32, "CoCreateInstance");
inline constinit late_function<decltype(CoCreateGuid)> co_create_guid(ole32, "CoCreateGuid");
inline constinit late_function<decltype(CoGetObject)> co_get_object(ole32, "CoGetObject");
inline constinit late_function<decltype(CLSIDFromProgID)> class_from_prog_id(ole32, "CLSIDFromProgID");
inline constinit late_function<decltype(CoTaskMemFree)> co_task_mem_free(ole32, "CoTaskMemFree");
inline constinit late_function<decltype(StringFromGUID2)> string_from_guid(ole32, "StringFromGUID2");
inline constinit late_function<decltype(CreateItemMoniker)> create_item_moniker(ole32, "CreateItemMoniker");
inline constinit late_function<decltype(GetRunningObjectTable)> get_running_object_table(ole32,
                                                                                         "GetRunningObjectTable");

} // namespace vh::late
