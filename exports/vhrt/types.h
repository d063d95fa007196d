/* Types and calling convention of all exported functions. */
#pragma once

#include <stdint.h>

#include <windows.h>

#include <oaidl.h>

#ifdef __cplusplus
#define VHRT_FUNCTION(result) extern "C" result __stdcall
#define VHRT_RECORD_SIZE(record, bytes) static_assert(sizeof(record) == (bytes), "layout is shared with scripts")
#else
#define VHRT_FUNCTION(result) extern result __stdcall
#define VHRT_RECORD_SIZE(record, bytes) _Static_assert(sizeof(record) == (bytes), "layout is shared with scripts")
#endif

/* The state of one script run; opaque to the host. Every function that takes a context answers -1 for a
   null context and touches nothing, unless its own description says otherwise. */
typedef struct ObjectContext ObjectContext;

/* Interfaces of the setup engine that a host hands over; Src/inc declares them. */
typedef struct ISetupHost ISetupHost;
typedef struct ISetupPropertyBag ISetupPropertyBag;
typedef struct IServiceProvider IServiceProvider;

/* A list: unique while it lives, never -1 and never 0. */
typedef int64_t ListHandle;

/* An open script file. */
typedef int32_t FileHandle;

/* Results that scripts tell apart. Text results go to a caller's buffer whose size is counted in 16-bit
   units with the terminator: if the text does not fit, nothing is written and the result is its length
   plus 1, the size that is needed. Engine failures of the media family come back as 0xF000 minus their
   low 16 bits (0x8004F084 as -132); all other codes come back as they are. A null text argument counts
   as the empty text. */
enum { VHRT_OK = 0, VHRT_FAILED = -1, VHRT_WRONG_TYPE = -500, VHRT_BAD_HANDLE = -501, VHRT_NO_ITEM = -502 };
