/* Version resources of files, and the system's kind. */
#pragma once

#include "types.h"

/* The file version as "1.2.3.4" (24 units). No context. Result: 0; -2 no such file; -8 no version. */
VHRT_FUNCTION(int32_t) VerGetFileVersion(const wchar_t* path, wchar_t* version);

/* Adds the translation words of the file to a number list. Result: as above, or the list's failure. */
VHRT_FUNCTION(int32_t) _VerGetFileLanguages(ObjectContext* context, const wchar_t* path, ListHandle list);

/* Copies a file as _FileCopy does; on success the target goes to `buffer`, without a limit. */
VHRT_FUNCTION(int32_t)
_VerUpdateFile(ObjectContext* context, const wchar_t* source, const wchar_t* target, int32_t flags, wchar_t* buffer);

/* Result: 1 on a system of the NT line, else 0. No context. */
VHRT_FUNCTION(int32_t) IsOSTypeNT(void);
