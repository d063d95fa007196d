/* Paths and URLs taken apart. None of these takes the object context; a null text counts as empty.

   Text results go to a buffer of `size` units with the terminator. Result: 0; length + 1 with nothing written when
   it does not fit; -1 for a null buffer. */
#pragma once

#include "types.h"

/* "c:" of "c:\a\b.txt", "\\server\share" of a network path. */
VHRT_FUNCTION(int32_t) PathGetDrive(const wchar_t* path, wchar_t* buffer, int32_t size);

/* "\a\" of "c:\a\b.txt": the path part without the root. */
VHRT_FUNCTION(int32_t) PathGetDir(const wchar_t* path, wchar_t* buffer, int32_t size);

/* "c:\a\" of "c:\a\b.txt", with the last backslash. */
VHRT_FUNCTION(int32_t) PathGetPath(const wchar_t* path, wchar_t* buffer, int32_t size);

/* "b.txt", "b" and "txt" of "c:\a\b.txt". */
VHRT_FUNCTION(int32_t) PathGetFile(const wchar_t* path, wchar_t* buffer, int32_t size);
VHRT_FUNCTION(int32_t) PathGetFileName(const wchar_t* path, wchar_t* buffer, int32_t size);
VHRT_FUNCTION(int32_t) PathGetFileExt(const wchar_t* path, wchar_t* buffer, int32_t size);

/* Every short name replaced by its long one; the path as it stands when one of its parts can't be found. */
VHRT_FUNCTION(int32_t) PathGetLongFromShort(const wchar_t* path, wchar_t* buffer, int32_t size);

/* Replaces folders by "..." until the text fits the width of the window's client area, or no folder is left.
   Result: also -1 when the window gives no device context. */
VHRT_FUNCTION(int32_t) PathCompactPathPixel(HWND window, const wchar_t* path, wchar_t* buffer, int32_t size);

/* Components of a URL, as InternetCrackUrlW finds them. */
typedef struct VHRTUrlParts {
    wchar_t scheme[128];
    int32_t schemeType; /* as INTERNET_SCHEME */
    wchar_t host[1024];
    int32_t port;
    wchar_t user[1024];
    wchar_t password[1024];
    wchar_t path[1024];
    wchar_t extra[2048];
} VHRTUrlParts;
VHRT_RECORD_SIZE(VHRTUrlParts, 12552);

/* Result: 0; -1 at the first component that does not fit, with the earlier ones written and no numbers. A text
   that is no URL gives empty texts, leaves the numbers alone and answers 0. */
VHRT_FUNCTION(int32_t) PathCrackUrl(const wchar_t* url, VHRTUrlParts* parts);

/* Result: 1 for a path or URL that could be valid, 0 for another, or a system error code. */
VHRT_FUNCTION(int32_t) PathIsValidSyntax(const wchar_t* text);
