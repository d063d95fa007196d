/* Calls out of the script: foreign libraries and processes. None of these takes the object context. */
#pragma once

#include "types.h"

/* Calls function(value, pointer, third) of a library, which is loaded for the call. The name is narrow text.
   Result: the function's 32-bit result; -1 when library or function is missing. */
VHRT_FUNCTION(int32_t)
CallDLLFn(const wchar_t* library, const char* function, int32_t value, void* pointer, int32_t third);

/* The first child of a process, by rising id. `parent` is an open handle of that process, or null. Result: the
   child's id, or 0. */
VHRT_FUNCTION(int32_t) _GetRunningChildProcess(int32_t process);
VHRT_FUNCTION(int32_t) _GetRunningChildProcessEx(int32_t process, HANDLE parent);

/* The same with all descendants on demand. Result: a handle with all process rights, which the caller closes;
   null when there is none. */
VHRT_FUNCTION(HANDLE) _GetRunningChildProcessEx2(int32_t process, HANDLE parent, int32_t descendants);

/* Ends every process that has one of the executable names, which ";" separates. Result: 0 or a system error
   code. */
VHRT_FUNCTION(int32_t) _KillProcesses(const wchar_t* names);

/* Sets the folder that library loads search, as SetDllDirectoryW; null and the empty text take the current
   folder out of the search. Result: that function's; 1 where the system lacks it. */
VHRT_FUNCTION(int32_t) _SetDllDirectory(const wchar_t* path);
