/* Files of an item. Media, items and failures as in components.h. */
#pragma once

#include "types.h"

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
