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

inline constinit late_library gdi32(L"gdi32.dll");
inline constinit late_function<decltype(GetTextExtentPoint32W)> get_text_extent(gdi32, "GetTextExtentPoint32W");
inline constinit late_function<decltype(GetDeviceCaps)> get_device_caps(gdi32, "GetDeviceCaps");
inline constinit late_function<decltype(DeleteObject)> delete_object(gdi32, "DeleteObject");
inline constinit late_function<decltype(SelectObject)> select_object(gdi32, "SelectObject");

inline constinit late_library ole32(L"ole32.dll");
inline constinit late_function<decltype(CoGetInterfaceAndReleaseStream)>
    get_interface_and_release_stream(ole32, "CoGetInterfaceAndReleaseStream");
inline constinit late_function<decltype(CoLoadLibrary)> co_load_library(ole32, "CoLoadLibrary");
inline constinit late_function<decltype(CoCreateInstance)> co_create_instance(ole32, "CoCreateInstance");
inline constinit late_function<decltype(CoCreateGuid)> co_create_guid(ole32, "CoCreateGuid");
inline constinit late_function<decltype(CoTaskMemFree)> co_task_mem_free(ole32, "CoTaskMemFree");
inline constinit late_function<decltype(StringFromGUID2)> string_from_guid(ole32, "StringFromGUID2");
inline constinit late_function<decltype(CreateItemMoniker)> create_item_moniker(ole32, "CreateItemMoniker");
inline constinit late_function<decltype(GetRunningObjectTable)> get_running_object_table(ole32,
                                                                                         "GetRunningObjectTable");

} // namespace vh::late
