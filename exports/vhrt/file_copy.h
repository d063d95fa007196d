/* File copy and directories through the engine, and small queries on files that may lie on the internet. */
#pragma once

#include "types.h"

/* Copies files; wildcards, URL sources and most flags are the engine's. Traced as "XCopyFile". Result: 0, -1
   without services, or the engine's failing code. */
VHRT_FUNCTION(int32_t)
_FileCopy(ObjectContext* context, const wchar_t* source, const wchar_t* target, int32_t flags);

/* Makes a directory, logged for removal. Traced as "CreateDir". Results as above. */
VHRT_FUNCTION(int32_t) _CreateDir(ObjectContext* context, const wchar_t* path);

/* Size in bytes, low 32 bits, and last-write time of a local file or URL. Result: 0; -1 or, for a URL, the
   failure's code, with nothing written. No context. */
VHRT_FUNCTION(int32_t) _GetInetFileSize(const wchar_t* path, uint32_t* size);
VHRT_FUNCTION(int32_t) _GetInetFileTime(const wchar_t* path, FILETIME* time);

/* Rounds a size, given in 31-bit halves, up to whole clusters and adds it to a sum in the same form; no carry
   goes from low to high. The cluster size must not be 0. Result: 0. No context. */
VHRT_FUNCTION(int32_t)
_CalculateAndAddFileCost(int32_t high, int32_t low, int32_t cluster, int32_t* highSum, int32_t* lowSum);
