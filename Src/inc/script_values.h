/* Handles, numbers and records that scripts and the library's classes share. */
#pragma once

#include <stdint.h>

#ifdef __cplusplus
#define VHRT_RECORD_SIZE(record, bytes) static_assert(sizeof(record) == (bytes), "layout is shared with scripts")
#else
#define VHRT_RECORD_SIZE(record, bytes) _Static_assert(sizeof(record) == (bytes), "layout is shared with scripts")
#endif

/* The state of one script run; opaque to the host. Every function that takes a context answers -1 for a
   null context and touches nothing, unless its own description says otherwise. */
typedef struct ObjectContext ObjectContext;

/* A list: unique while it lives, never -1 and never 0. */
typedef int64_t ListHandle;

/* An open script file. */
typedef int32_t FileHandle;

/* Types of a list. */
enum { ListTypeNumber = -1, ListTypeString = 0 };

/* Where a new element goes, seen from the current one. */
enum { ListAddAfter = 0, ListAddBefore = 1 };

/* Special indices of _ListSetIndex. */
enum { ListIndexNext = -101, ListIndexPrevious = -201, ListIndexLast = -301, ListIndexFirst = -401 };

/* Flags of _ListWriteToFile; ListWriteUnicode wins over ListWriteAnsi. */
enum { ListWriteAnsi = 1, ListWriteUnicode = 2, ListWriteAppend = 4 };

/* Media information: fourteen texts of the engine, a number and five truths (1 or 0). */
typedef struct VHRTMediaInfo {
    int32_t number;
    wchar_t text1[256];
    wchar_t text2[256];
    wchar_t text3[256];
    wchar_t text4[1024];
    wchar_t text5[256];
    wchar_t text6[260];
    wchar_t text7[260];
    wchar_t text8[260];
    wchar_t text9[260];
    wchar_t text10[260];
    wchar_t text11[260];
    wchar_t text12[260];
    wchar_t text13[260];
    wchar_t text14[260];
    int32_t truths[5];
} VHRTMediaInfo;
VHRT_RECORD_SIZE(VHRTMediaInfo, 8800);

/* Who installs a driver package; the layout is the driver library's own. A null record is allowed. */
typedef struct INSTALLERINFO {
    const wchar_t* applicationId;
    const wchar_t* displayName;
    const wchar_t* productName;
    const wchar_t* manufacturerName;
} INSTALLERINFO;
VHRT_RECORD_SIZE(INSTALLERINFO, 32);
