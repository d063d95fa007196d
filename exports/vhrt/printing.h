/* Printing of files by the application that belongs to them. */
#pragma once

#include "types.h"

/* Shows the print dialog over `window` and has the file printed; waits up to 10 s. No context. Result: 0; -1 when
   cancelled or failed. */
VHRT_FUNCTION(int32_t) _PrintFile(HWND window, const wchar_t* path);
