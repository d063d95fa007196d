/* The trace log, which the registry key HKEY_CURRENT_USER\VHlogit switches on when the library loads. */
#pragma once

#include "types.h"

/* Writes one line. `text` is a format without arguments: a percent sign in it is written twice. Null counts as
   empty. No context. Result: 0, also when tracing is off. */
VHRT_FUNCTION(int32_t) _SetupTraceWrite(const wchar_t* category, const wchar_t* subcategory, const wchar_t* text);
