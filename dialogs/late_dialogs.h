// Functions of the window system and the shell that dialogs need.
#pragma once

#include <windows.h>

#include <ole2.h>
#include <shellapi.h>
#include <shlobj.h>

#include "../pictures/late_drawing.h"
#include "../scriptdata/late_libraries.h"

namespace vh::late {

inline constinit late_function<decltype(OleInitialize)> ole_initialize(ole32, "OleInitialize");
inline constinit late_function<decltype(OleUninitialize)> ole_uninitialize(ole32, "OleUninitialize");

inline constinit late_function<decltype(SHBrowseForFolderW)> browse_for_folder(shell32, "SHBrowseForFolderW");
inline constinit late_function<decltype(SHGetPathFromIDListW)> path_from_id_list(shell32, "SHGetPathFromIDListW");
inline constinit late_function<decltype(SHGetSpecialFolderLocation)>
    special_folder_location(shell32, "SHGetSpecialFolderLocation");
inline constinit late_function<decltype(ShellExecuteW)> shell_execute(shell32, "ShellExecuteW");

} // namespace vh::late
