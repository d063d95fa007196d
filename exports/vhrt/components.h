/* Components and features: items of a named media, their attributes, selection, sizes and costs.

   `media` names the media ("DATA" is the product's features, "VHSUPPORTFILES" the support files), `item` an item
   by its path with backslashes; case counts in both. Results are 0 or a failure that scripts know: -102 exists
   already, -103 selection refused, -105 no such item, -108 not enough space, -126 not supported by this media,
   -132 no such media, -137 unknown attribute, -140 attribute can't be written. */
#pragma once

#include "types.h"

/* Attributes: numbers go to *number, texts to a buffer of `size` units by the length rule. */
VHRT_FUNCTION(int32_t)
_ComponentGetData(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t attribute, int32_t* number,
                  wchar_t* buffer, int32_t size);
VHRT_FUNCTION(int32_t)
_ComponentSetData(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t attribute, int32_t number,
                  const wchar_t* text);

/* Selects or unselects an item; the empty item stands for all. */
VHRT_FUNCTION(int32_t)
_ComponentSelectItem(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t selected);

/* Selects what is new in an update. */
VHRT_FUNCTION(int32_t) _ComponentSelectNew(ObjectContext* context, const wchar_t* media, int32_t selected);

/* Result: 1 or 0, or a failure. */
VHRT_FUNCTION(int32_t) _ComponentIsItemSelected(ObjectContext* context, const wchar_t* media, const wchar_t* item);

/* Filters by operating system (two bit sets) and by language identifier. */
VHRT_FUNCTION(int32_t)
_ComponentFilterOS(ObjectContext* context, const wchar_t* media, int32_t first, int32_t second, int32_t flag);
VHRT_FUNCTION(int32_t)
_ComponentFilterLanguage(ObjectContext* context, const wchar_t* media, int32_t language, int32_t flag);

/* Adds the children's paths, or the setup types' names, to a text list. The parent "" is the root. */
VHRT_FUNCTION(int32_t)
_ComponentListItems(ObjectContext* context, const wchar_t* media, const wchar_t* parent, ListHandle list);
VHRT_FUNCTION(int32_t) _ComponentSetupTypeEnum(ObjectContext* context, const wchar_t* media, ListHandle list);

/* Attribute 1 is the description, 2 the display name. Failures: -3 no such type, -5 unknown attribute. */
VHRT_FUNCTION(int32_t)
_ComponentSetupTypeGetData(ObjectContext* context, const wchar_t* media, const wchar_t* setupType, int32_t attribute,
                           int32_t* number, wchar_t* buffer, int32_t size);
VHRT_FUNCTION(int32_t) _ComponentSetupTypeSet(ObjectContext* context, const wchar_t* media, const wchar_t* setupType);

/* Size of an item in bytes, at most 0x7FFFFFFF; -1 in *size on failure. */
VHRT_FUNCTION(int32_t)
_ComponentGetItemSize(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t* size);

/* Result: the size in bytes with all below, at most 0x7FFFFFFF; or a failure. `shift` has no effect. */
VHRT_FUNCTION(int32_t)
_ComponentTotalSize(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t wholeTree, int32_t flag2,
                    int32_t shift);

/* Looks for a drive without room for the selection. Result: 0 with *size 0; -108 with the drive's root in a
   buffer of 260 units and the bytes needed, as far as 32 bits hold them, in *size. */
VHRT_FUNCTION(int32_t)
_ComponentCompareSizeRequired(ObjectContext* context, const wchar_t* media, wchar_t* drive, int32_t* size);

/* Checks a key for an item that asks for one. Result: 0; -139 wrong key; -141 none is needed. */
VHRT_FUNCTION(int32_t)
_ComponentValidate(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* key);

/* Adds an item to a script media, which the first item makes. Other media: 0x8004F07E as it stands. */
VHRT_FUNCTION(int32_t)
_ComponentAddItem(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t size, int32_t selected);

/* Cost on the drive of `target` in units of 1024 bytes, rounded, never 0 for what is not empty; the total is
   that of the whole selection. A null target gives -1. */
VHRT_FUNCTION(int32_t)
_ComponentGetCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* target,
                  int32_t* cost);
VHRT_FUNCTION(int32_t)
_ComponentGetTotalCost(ObjectContext* context, const wchar_t* media, const wchar_t* target, int32_t* cost);

/* The same as text with two decimals (32 units), in kilobytes, megabytes or gigabytes: *unit is 10, 20 or 30.
   No cost gives the empty text. */
VHRT_FUNCTION(int32_t)
_ComponentGetCostEx(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* target,
                    wchar_t* text, int32_t* unit);
VHRT_FUNCTION(int32_t)
_ComponentGetTotalCostEx(ObjectContext* context, const wchar_t* media, const wchar_t* target, wchar_t* text,
                         int32_t* unit);

/* The cost in bytes, in 31-bit halves. */
VHRT_FUNCTION(int32_t)
_FeatureGetCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* target, int32_t* high,
                int32_t* low);

/* Adds bytes to an item's cost, at a path or for removal. The context is not tested. Result: 0 or -1. */
VHRT_FUNCTION(int32_t)
_FeatureAddCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* path, int32_t low,
                int32_t high);
VHRT_FUNCTION(int32_t)
_FeatureAddUninstallCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t low, int32_t high);

/* The last error of a media: its code, the item or text in a buffer of `size` units, and two details without a
   limit (1024 units each will do). Result: 0; length + 1 when the text does not fit. */
VHRT_FUNCTION(int32_t)
_ComponentError(ObjectContext* context, const wchar_t* media, wchar_t* buffer, int32_t size, wchar_t* detail1,
                wchar_t* detail2, int32_t* code);

/* The engine's error object of the media that was used last, whose name goes to `media` (260 units). */
VHRT_FUNCTION(int32_t) _ComponentErrorInfo(ObjectContext* context, VARIANT* error, wchar_t* media);

/* Adds the item's files that fit the pattern to a text list. A pattern may start with a directory. */
VHRT_FUNCTION(int32_t)
_ComponentFileEnum(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* pattern,
                   ListHandle list, int32_t flag);

/* One fact of a file of the item. *number takes a number; for the facts that give several it holds a number
   list on entry, which gets them. Text (1024 units) takes texts, dates and times. Result: 0; -1 for a file fact
   without a file; or a failure. */
VHRT_FUNCTION(int32_t)
_ComponentFileInfo(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* group,
                   const wchar_t* path, int32_t fact, int64_t* number, wchar_t* text);

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

/* Result: the code as it stands. The context is not tested. */
VHRT_FUNCTION(int32_t) _MediaGetInfo(ObjectContext* context, const wchar_t* media, VHRTMediaInfo* info);

/* Adds the filtering numbers of a kind to a number list. Result: the code as it stands. The context is not
   tested. */
VHRT_FUNCTION(int32_t)
_MediaGetFilteringInfo(ObjectContext* context, const wchar_t* media, int32_t kind, ListHandle list);
