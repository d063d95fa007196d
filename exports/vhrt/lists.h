/* Script lists: numbered sequences of 32-bit integers or of texts with one current position.

   All results but that of _ListCreate are 32-bit values, sign-extended. Beyond the results told with each
   function: -501 when no list has the handle, -500 when the operation does not belong to the list's type. */
#pragma once

#include "types.h"

/* Makes an empty list of the type. Result: its handle, -1 for another type or without memory. */
VHRT_FUNCTION(int64_t) _ListCreate(ObjectContext* context, int32_t type);

/* Destroys the list and sets the variable to 0. Result: 0; -501 with the variable left alone. */
VHRT_FUNCTION(int64_t) _ListDestroy(ObjectContext* context, ListHandle* handle);

/* Result: the number of elements. */
VHRT_FUNCTION(int64_t) _ListCount(ObjectContext* context, ListHandle list);

/* Result: -1 for a number list, 0 for a string list. */
VHRT_FUNCTION(int64_t) _ListGetType(ObjectContext* context, ListHandle list);

/* Inserts behind (ListAddAfter) or in front of (ListAddBefore) the current element; the new element
   becomes current. Result: 0; -1 for another mode. */
VHRT_FUNCTION(int64_t) _ListAddItem(ObjectContext* context, ListHandle list, int32_t value, int32_t mode);
VHRT_FUNCTION(int64_t) _ListAddString(ObjectContext* context, ListHandle list, const wchar_t* text, int32_t mode);

/* The current element. Result: 0; 1 when the list is empty, with the output unchanged. */
VHRT_FUNCTION(int64_t) _ListCurrentItem(ObjectContext* context, ListHandle list, int32_t* value);

/* Copies the current text to a buffer of `size` units. Result: 0; length + 1 when it does not fit; -502
   when the list is empty. */
VHRT_FUNCTION(int64_t) _ListCurrentString(ObjectContext* context, ListHandle list, wchar_t* buffer, int32_t size);

/* Replaces the current element. Result: 0; 1 when the list is empty. */
VHRT_FUNCTION(int64_t) _ListSetCurrentItem(ObjectContext* context, ListHandle list, int32_t value);
VHRT_FUNCTION(int64_t) _ListSetCurrentString(ObjectContext* context, ListHandle list, const wchar_t* text);

/* Removes the current element; the one behind it becomes current, or the new last one. Result: 0; 1 when
   the list is empty. */
VHRT_FUNCTION(int64_t) _ListDeleteItem(ObjectContext* context, ListHandle list);
VHRT_FUNCTION(int64_t) _ListDeleteString(ObjectContext* context, ListHandle list);

/* Removes all elements. Result: 0. */
VHRT_FUNCTION(int64_t) _ListDeleteAll(ObjectContext* context, ListHandle list);

/* Moves to the first or next element and delivers it. Result: 0; 1 when there is none, with the position
   and the output unchanged. */
VHRT_FUNCTION(int64_t) _ListGetFirstItem(ObjectContext* context, ListHandle list, int32_t* value);
VHRT_FUNCTION(int64_t) _ListGetNextItem(ObjectContext* context, ListHandle list, int32_t* value);

/* The same for texts, into a buffer of `size` units. Result: 0; -502 when there is no element; length + 1
   when the text does not fit: "next" has then not moved, so a retry gets the same element. */
VHRT_FUNCTION(int64_t) _ListGetFirstString(ObjectContext* context, ListHandle list, wchar_t* buffer, int32_t size);
VHRT_FUNCTION(int64_t) _ListGetNextString(ObjectContext* context, ListHandle list, wchar_t* buffer, int32_t size);

/* Searches from the current element, which is included, to the end; texts compare exactly. Result: 0 with
   the hit current; 1 with the position unchanged. _ListFindItem answers -500 for an unknown handle. */
VHRT_FUNCTION(int64_t) _ListFindItem(ObjectContext* context, ListHandle list, int32_t value);
VHRT_FUNCTION(int64_t) _ListFindString(ObjectContext* context, ListHandle list, const wchar_t* text);

/* Moves to a zero-based index or by one of the special indices. Result: 0; 1 when there is no such
   element; -1 for ListIndexPrevious on the first element. */
VHRT_FUNCTION(int64_t) _ListSetIndex(ObjectContext* context, ListHandle list, int32_t index);

/* The zero-based index of the current element. Result: 0; 1 when the list is empty. */
VHRT_FUNCTION(int64_t) _ListGetIndex(ObjectContext* context, ListHandle list, int32_t* index);

/* Adds the lines of a text file behind the current element; the last line becomes current. Result: 0; the
   result of _OpenFile when the file can't be opened. */
VHRT_FUNCTION(int64_t) _ListReadFromFile(ObjectContext* context, ListHandle list, const wchar_t* path);

/* Writes one line per element. Without ListWriteUnicode and ListWriteAnsi an existing file keeps its
   encoding; with ListWriteAppend it always does. Result: 0 or -1. */
VHRT_FUNCTION(int64_t) _ListWriteToFile(ObjectContext* context, ListHandle list, const wchar_t* path, int32_t flags);
