/* Bytes, numbers, arrays and formatted text. None of these takes the object context. */
#pragma once

#include "types.h"

/* Copies `count` bytes between two buffers, from the lowest index up, so that an overlapping copy repeats
   bytes. Result: 0; offset + count, the size needed, when the destination is too small; -3 when the source is.
   Arithmetic is unsigned 32-bit and wraps. */
VHRT_FUNCTION(int32_t)
_CopyBytes(void* destination, uint32_t destinationOffset, uint32_t destinationSize, const void* source,
           uint32_t sourceOffset, uint32_t sourceSize, uint32_t count);

/* One byte of a buffer; a byte is read sign-extended. Result: 0; -4 when the index exceeds the size. An index
   equal to the size is accepted, so the buffer has to hold one byte more than `size` says. */
VHRT_FUNCTION(int32_t) _GetByte(const void* buffer, uint32_t size, uint32_t index, int32_t* value);
VHRT_FUNCTION(int32_t) _SetByte(void* buffer, uint32_t size, uint32_t index, int32_t value);

/* The quotient with `precision` decimals, and the locale's decimal point. A zero denominator gives the text
   for an infinity or no number. Buffers are not limited. Result: 0. */
VHRT_FUNCTION(int32_t)
_Divide(int32_t numerator, int32_t denominator, int32_t precision, wchar_t* result, wchar_t* decimalPoint);

/* Two numbers given as text, combined by * + - or /; the result has two decimals, its buffer is not limited.
   Result: 0; 0x80070057 for another operator, with nothing written. */
VHRT_FUNCTION(int32_t)
_FloatingPointOperation(const wchar_t* first, const wchar_t* second, wchar_t operation, wchar_t* result);

/* Result: 1 when the first is larger, -1 when it is smaller, else 0. */
VHRT_FUNCTION(int32_t) _CompareDWORD(uint32_t first, uint32_t second);

/* Widens `count` narrow texts into buffers of the caller, each zero-filled and with at least as many units as
   its text has bytes, plus one. Result: 0. */
VHRT_FUNCTION(int32_t) _CHARArrayToWCHARArray(wchar_t** destination, const char* const* source, int32_t count);

/* A new array of narrow copies, never null. _DeleteCHARArray frees the array; the copies stay allocated. */
VHRT_FUNCTION(char**) _WCHARArrayToCHARArray(const wchar_t* const* source, int32_t count);
VHRT_FUNCTION(int32_t) _DeleteCHARArray(char** array);

/* Formats up to 16 arguments, the elements of a one-dimensional array: numbers as 32-bit integers, all else as
   text. `size` counts units with the terminator. Result: the units written; -5 when they do not fit; -1 for
   arguments that can't be used. */
VHRT_FUNCTION(int32_t) _DoSprintf(wchar_t* buffer, int32_t size, const wchar_t* format, VARIANT* arguments);

/* Result: 1 or 0: nothing in it; a dispatch object that is not null in it. */
VHRT_FUNCTION(int32_t) IsEmpty(const VARIANT* value);
VHRT_FUNCTION(int32_t) IsObject(const VARIANT* value);
