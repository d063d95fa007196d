/* Types and calling convention of all exported functions. */
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "../../Src/inc/script_values.h"

#ifdef __cplusplus
#define VHRT_FUNCTION(result) extern "C" result __stdcall
#else
#define VHRT_FUNCTION(result) extern result __stdcall
#endif

/* Interfaces of the setup engine that a host hands over; Src/inc declares them. */
typedef struct ISetupHost ISetupHost;
typedef struct ISetupPropertyBag ISetupPropertyBag;
typedef struct IServiceProvider IServiceProvider;

/* Results that scripts tell apart. Text results go to a caller's buffer whose size is counted in 16-bit
   units with the terminator: if the text does not fit, nothing is written and the result is its length
   plus 1, the size that is needed. Engine failures of the media family come back as 0xF000 minus their
   low 16 bits (0x8004F084 as -132); all other codes come back as they are. A null text argument counts
   as the empty text. */
enum { VHRT_OK = 0, VHRT_FAILED = -1, VHRT_WRONG_TYPE = -500, VHRT_BAD_HANDLE = -501, VHRT_NO_ITEM = -502 };
