/* Existence, disk sizes and file signatures. None of these takes the object context; a null path counts as empty.

   Sizes in 31-bit halves: the low field holds the low 31 bits, the high field the rest. */
#pragma once

#include "types.h"

/* Result: 1 there is such a file, 0 there is not (a directory is none), or a system error code. URLs are tested
   by opening them. */
VHRT_FUNCTION(int32_t) _ExistsFile(const wchar_t* path);

/* Result: 0 there is such a directory, -1 there is not, or a system error code. */
VHRT_FUNCTION(int32_t) _ExistsDir(const wchar_t* path);

/* Tests the root of the path. Result: 0 it exists, -1 it does not, -2 the drive isn't ready. */
VHRT_FUNCTION(int32_t) _ExistsDisk(const wchar_t* path);

/* Bits of VHRTDiskInfo::request. */
enum { DiskClusterSize = 1, DiskTotalSize = 2, DiskFreeSpace = 4, DiskDriveType = 8 };

typedef struct VHRTDiskInfo {
    wchar_t path[260];   /* in: a path on the disk */
    uint32_t request;    /* in: what is wanted */
    int32_t clusterSize; /* bytes */
    int32_t totalHigh;   /* bytes, in 31-bit halves */
    int32_t totalLow;
    int32_t freeHigh; /* bytes free for the caller, in 31-bit halves */
    int32_t freeLow;
    int32_t driveType; /* as GetDriveTypeW */
    int32_t result;    /* of the size query: 0 or -1; untouched without one */
} VHRTDiskInfo;
VHRT_RECORD_SIZE(VHRTDiskInfo, 552);

/* Fills what was requested and leaves the rest alone. Result: -1 for a null record; the size query's result; 0
   when no size was wanted. */
VHRT_FUNCTION(int32_t) _GetDiskInfo(VHRTDiskInfo* info);

/* Free bytes (`which` not 0) or total bytes, shifted right by `shift`. A value of 0x80000000 or more is stored
   as 0x7FFFFFFF. Result: 0 or -1. */
VHRT_FUNCTION(int32_t) _GetDiskSpaceEx(const wchar_t* path, int32_t* high, int32_t* low, int32_t shift, int32_t which);

/* The same as text with two decimals (32 units). With `keep` 0 the shift is chosen and stored: 30, 20 or 10 for
   gigabytes, megabytes, kilobytes. Result: 0 or -1. */
VHRT_FUNCTION(int32_t)
_GetDiskSpaceExEx(const wchar_t* path, wchar_t* text, int32_t* shift, int32_t keep, int32_t which);

/* MD5 (RFC 1321) of a file's content as 32 upper-case digits, in a buffer of 33 units. Result: 0 or a negative
   code. A file that can't be opened also gives 0, with no valid signature in the text: test its existence
   first. */
VHRT_FUNCTION(int32_t) _GenerateFileMD5SignatureHex(const void* reserved, const wchar_t* path, wchar_t* text);
