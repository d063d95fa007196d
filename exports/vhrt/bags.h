/* Property bags: named values that belong to the engine and may live on another thread.

   None of these takes the object context. Reads and writes give 0 or the bag's own failure. A null name
   counts as empty. */
#pragma once

#include "types.h"

/* Takes the bag out of the marshalled stream and sets *stream to null. Result: 0; 0x80004003 for a null
   argument; the failure of the unmarshalling, with a null bag. The caller owns the bag. */
VHRT_FUNCTION(int32_t) __VHRTGetPropertyBag(IStream** stream, ISetupPropertyBag** bag);

/* Gives the bag back. Result: the references that are left. */
VHRT_FUNCTION(int32_t) __VHRTReleasePropertyBag(ISetupPropertyBag* bag);

/* Values are changed to the wanted type where that can be done. Truth is 1 or 0. */
VHRT_FUNCTION(int32_t) ReadNumberProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t* value);
VHRT_FUNCTION(int32_t) ReadBoolProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t* value);

/* *size is the buffer's size in units. Result: 0; 0x80070057 with the size that is needed in *size. */
VHRT_FUNCTION(int32_t)
_ReadStringProperty(ISetupPropertyBag* bag, const wchar_t* name, wchar_t* buffer, int32_t* size);

/* *value is cleared and takes the value over; null gives 0x80004003. */
VHRT_FUNCTION(int32_t) ReadArrayProperty(ISetupPropertyBag* bag, const wchar_t* name, VARIANT* value);

VHRT_FUNCTION(int32_t) WriteNumberProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t value);
VHRT_FUNCTION(int32_t) WriteBoolProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t value);
VHRT_FUNCTION(int32_t) WriteStringProperty(ISetupPropertyBag* bag, const wchar_t* name, const wchar_t* text);
VHRT_FUNCTION(int32_t) WriteArrayProperty(ISetupPropertyBag* bag, const wchar_t* name, VARIANT* value);
