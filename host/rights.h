// Rights that a product of the machine needs.
#pragma once

#include <string>

#include <windows.h>

#include <shellapi.h>

#include "exit_codes.h"
#include "scriptdata/late_libraries.h"

namespace host {

namespace late {

inline constinit vh::late_function<decltype(ShellExecuteExW)> shell_execute_ex(vh::late::shell32, "ShellExecuteExW");

} // namespace late

// The first word that a process gets which is started for its rights, and which asks no more; the second is the folder
// that all others are meant in.
inline constexpr const char* rights_option = "--rights-asked-in";

// Starts this program with the words of `command_line` and asks the user for the rights. Result: its exit code, or
// exit_rights when they are not to be had.
ExitCode RunWithMachineRights(const wchar_t* command_line);

// In the process that is started so: goes to that folder and writes to the console of the one that asked. False, and
// told, when the folder can't be reached with these rights.
bool TakeRunOver(const std::wstring& folder);

} // namespace host
