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

/* Leave out what is for these operating systems (a set of the engine's bits, its low and high half), or for this
   language, and for nothing else that takes part. A `flag` of 0 lets them take part again. */
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

/* The last error of a media: its code, the item or text in a buffer of `size` units, and two details without a
   limit (1024 units each will do). Result: 0; length + 1 when the text does not fit. */
VHRT_FUNCTION(int32_t)
_ComponentError(ObjectContext* context, const wchar_t* media, wchar_t* buffer, int32_t size, wchar_t* detail1,
                wchar_t* detail2, int32_t* code);

/* The engine's error object of the media that was used last, whose name goes to `media` (260 units). */
VHRT_FUNCTION(int32_t) _ComponentErrorInfo(ObjectContext* context, VARIANT* error, wchar_t* media);

/* Result: the code as it stands. The context is not tested. */
VHRT_FUNCTION(int32_t) _MediaGetInfo(ObjectContext* context, const wchar_t* media, VHRTMediaInfo* info);

/* Adds the filtering numbers of a kind to a number list. Result: the code as it stands. The context is not
   tested. */
VHRT_FUNCTION(int32_t)
_MediaGetFilteringInfo(ObjectContext* context, const wchar_t* media, int32_t kind, ListHandle list);
