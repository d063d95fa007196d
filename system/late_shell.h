// The shell's verbs, the print dialog and the windows that may own it, bound on first use.
#pragma once

#include <windows.h>

#include <commdlg.h>
#include <shellapi.h>

#include "../scriptdata/late_libraries.h"
#include "../scriptdata/late_windows.h"

namespace vh::late {

inline constinit late_library comdlg32(L"comdlg32.dll");
inline constinit late_function<decltype(PrintDlgW)> print_dialog(comdlg32, "PrintDlgW");
inline constinit late_function<decltype(ShellExecuteExW)> shell_execute_ex(shell32, "ShellExecuteExW");
inline constinit late_function<decltype(EnumWindows)> enum_windows(user32, "EnumWindows");

} // namespace vh::late
