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

/* Attributes of an item, by which _ComponentGetData and _ComponentSetData know them. */
enum {
    AttributeDescription = 0,
    AttributeLongText = 1,
    AttributeVisible = 2,
    AttributeStatus = 5,
    AttributeNeedsValidation = 6,
    AttributeSelected = 8,
    AttributeSize = 10,
    AttributeMiscText = 11,
    AttributeFlagBit = 13,
    AttributeDisplayOrder = 14,
    AttributeDisplayName = 15,
    AttributeText16 = 16,
    AttributeText17 = 17,
    AttributeText18 = 18,
    AttributeText19 = 19,
    AttributeText20 = 20,
    AttributeText21 = 21,
    AttributeText22 = 22,
    AttributeText23 = 23,
    AttributeFlags = 24
};

/* Attributes of a setup type. */
enum { SetupTypeDescription = 1, SetupTypeDisplayName = 2 };

/* Facts about a file of an item; sizes come in halves of 31 bits. */
enum {
    FileFactSizeLow = 1,
    FileFactSizeHigh = 2,
    FileFactDate = 3,
    FileFactTime = 4,
    FileFactAttributes = 5,
    FileFactVersion = 6,
    FileFactLanguage = 7,
    FileFactSource = 8,
    FileFactLongDate = 9,
    FileFactSystems = 10,
    FileFactSignature = 11,
    FileFactPlainSizeLow = 12,
    FileFactPlainSizeHigh = 13,
    FileFactGroupFiles = 14,
    FileFactGroup = 15,
    FileFactTargetFolder = 16,
    FileFactSourceFolder = 17,
    FileFactGroupSizeLow = 18,
    FileFactItem = 19,
    FileFactGroupSizeHigh = 20,
    FileFactShared = 21,
    FileFactPermanent = 22,
    FileFactNeverOverwritten = 23,
    FileFactLanguages = 65536,
    FileFactSystemBits = 131072
};

/* Systems, as bits of _ComponentFilterOS, and what its flag and that of the languages says. */
enum {
    SystemWindows7 = 0x01,
    SystemWindows8 = 0x02,
    SystemWindows8_1 = 0x04,
    SystemWindows10 = 0x08,
    SystemWindows11 = 0x10,
    SystemServer = 0x20
};
enum { FilterLetIn = 0, FilterTakeOut = 1 };

/* Kinds of _MediaGetFilteringInfo. */
enum { FilteringLanguages = 0, FilteringSystems = 1 };

/* Failures of the media family beside -1. */
enum {
    VHRT_ITEM_EXISTS = -102,
    VHRT_SELECTION_REFUSED = -103,
    VHRT_UNKNOWN_ITEM = -105,
    VHRT_DISK_FULL = -108,
    VHRT_NOT_SUPPORTED = -126,
    VHRT_UNKNOWN_MEDIA = -132,
    VHRT_UNKNOWN_ATTRIBUTE = -137,
    VHRT_WRONG_KEY = -139,
    VHRT_READ_ONLY_ATTRIBUTE = -140,
    VHRT_NO_KEY_NEEDED = -141
};

/* Flags of _FileCopy that the embedded engine knows. */
enum {
    CopySubfolders = 0x1,
    CopyExistingStay = 0x4,
    CopyByVersion = 0x10,
    CopyNewerOnly = 0x20,
    CopyUnlogged = 0x100,
    CopyPermanent = 0x200,
    CopyOverReadOnly = 0x4000
};

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
