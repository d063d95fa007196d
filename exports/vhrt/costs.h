/* Costs of items and of the selection: what they need on a drive. Media, items and failures as in components.h. */
#pragma once

#include "types.h"

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
