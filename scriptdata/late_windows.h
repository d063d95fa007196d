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

inline constinit late_library gdi32(L"gdi32.dll");
inline constinit late_function<decltype(GetTextExtentPoint32W)> get_text_extent(gdi32, "GetTextExtentPoint32W");
inline constinit late_function<decltype(DeleteObject)> delete_object(gdi32, "DeleteObject");

inline constinit late_library ole32(L"ole32.dll");
inline constinit late_function<decltype(CoGetInterfaceAndReleaseStream)>
    get_interface_and_release_stream(ole32, "CoGetInterfaceAndReleaseStream");
inline constinit late_function<decltype(CoLoadLibrary)> co_load_library(ole32, "CoLoadLibrary");
inline constinit late_function<decltype(CoCreateGuid)> co_create_guid(ole32, "CoCreateGuid");
inline constinit late_function<decltype(CoTaskMemFree)> co_task_mem_free(ole32, "CoTaskMemFree");
inline constinit late_function<decltype(StringFromGUID2)> string_from_guid(ole32, "StringFromGUID2");
inline constinit late_function<decltype(CreateItemMoniker)> create_item_moniker(ole32, "CreateItemMoniker");
inline constinit late_function<decltype(GetRunningObjectTable)> get_running_object_table(ole32,
                                                                                         "GetRunningObjectTable");

} // namespace vh::late
