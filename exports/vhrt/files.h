/* Script files: text read and written by lines, and bytes. Paths that start with http:// or https:// can be read.

   Results are 32-bit values, sign-extended: -1 for failures and the end of the file, -500 when the operation
   does not belong to the mode, -501 when no file has the handle. */
#pragma once

#include "types.h"

/* Modes of _OpenFile. */
enum { FileReadWriteBytes = 1, FileReadText = 2, FileAppendText = 3, FileReadBytes = 4, FileAppendUnicodeText = 5 };

/* Opens a file; `create` makes it, or empties it, and opens it for writing too. Text is UTF-16 with its mark, or
   in the system's code page; FileAppendUnicodeText writes the mark on creation. Result: the handle; -1; -2 for a
   URL in a mode that writes. */
VHRT_FUNCTION(int64_t) _OpenFile(ObjectContext* context, const wchar_t* path, int32_t mode, int32_t create);

/* Result: 0; -1 with the file still open. */
VHRT_FUNCTION(int64_t) _CloseFile(ObjectContext* context, FileHandle file);

/* Takes the next line without its end, cut at `size` units or padded with zeros up to it: a line of `size` units
   or more arrives without a terminator. */
VHRT_FUNCTION(int64_t) _GetLine(ObjectContext* context, FileHandle file, wchar_t* buffer, int32_t size);

/* The length of the next line in units, without terminator; the line stays the next one. */
VHRT_FUNCTION(int64_t) _GetLineSize(ObjectContext* context, FileHandle file, int32_t* size);

/* Adds a line at the end of the file. */
VHRT_FUNCTION(int64_t) _WriteLine(ObjectContext* context, FileHandle file, const wchar_t* text);

/* Reads to, or writes from, buffer + offset: the smaller of `count` and size - offset bytes. Result: the bytes
   done; -1 also for an offset not below the size. */
VHRT_FUNCTION(int64_t)
_ReadBytes(ObjectContext* context, FileHandle file, void* buffer, uint32_t size, uint32_t offset, uint32_t count);
VHRT_FUNCTION(int64_t)
_WriteBytes(ObjectContext* context, FileHandle file, const void* buffer, uint32_t size, uint32_t offset,
            uint32_t count);

enum { SeekFromStart = 1, SeekFromCurrent = 2, SeekFromEnd = 3 };

/* Result: 0; -1 also for another origin. */
VHRT_FUNCTION(int64_t) _SeekBytes(ObjectContext* context, FileHandle file, int32_t distance, int32_t origin);
