/* COM objects and managed objects for scripts. None of these takes the object context.

   The VARIANT is cleared and gets type VT_DISPATCH with one reference. Null texts count as empty. Result: 0 or the
   failing code. Traced. */
#pragma once

#include "types.h"

/* A new object by ProgID. */
VHRT_FUNCTION(int32_t) _CreateObject(const wchar_t* progId, VARIANT* object);

/* The object that a moniker or file names or, with an empty name, the running object of a ProgID. Result:
   0x80070057 for a null VARIANT. */
VHRT_FUNCTION(int32_t) _CoGetObject(const wchar_t* name, const wchar_t* progId, VARIANT* object);

/* A managed object in an application domain of the given name, or in the default one. Failures are raised as
   vh::com_exception or vh::win32_exception. */
VHRT_FUNCTION(int32_t)
_DotNetCoCreateObject(const wchar_t* assembly, const wchar_t* className, const wchar_t* domain, VARIANT* object);

/* Unloads all domains of the name. Result: 0; -1 when there was none. */
VHRT_FUNCTION(int32_t) _DotNetUnloadAppDomain(const wchar_t* domain);
