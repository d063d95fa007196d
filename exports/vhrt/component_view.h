/* The hand-painted selection list of a media inside a script dialog. */
#pragma once

#include "types.h"

/* One view; it ends with ComponentViewDestroy, at the latest with its context. A pointer to a view that has ended gives
   -1 everywhere. */
typedef struct ComponentView ComponentView;

/* Numbers of ComponentViewSetInfo, ComponentViewSetInfoEx and _ComponentViewQueryInfo. */
enum {
    ViewUnit = 2,
    ViewDecimals = 3,
    ViewReserved = 5,
    ViewShowSizes = 6,
    ViewExclusive = 7,
    ViewParent = 20,
    ViewChild = 21,
    ViewDescription = 22,
    ViewSpaceRequired = 23,
    ViewSpaceFree = 24,
    ViewTargetDirectory = 25,
    ViewMedia = 26,
    ViewParentItem = 27,
    ViewChangeButton = 28,
    ViewPath1 = 29,
    ViewPath2 = 30
};

/* Makes the view for a placeholder control. Result: null on failure. */
VHRT_FUNCTION(ComponentView*) _ComponentViewCreate(ObjectContext* context, HWND dialog, int32_t control);

/* Puts the view's window in the placeholder's place. Result: 0 or -1. */
VHRT_FUNCTION(int32_t) ComponentViewCreateWindow(ComponentView* view);

/* `number` is a control id, a flag or, for parent and child, a view; `text` a directory, media or item. Result:
   1; for the target directory and the parent item 0 or -1; 0 for another info number. */
VHRT_FUNCTION(int32_t) ComponentViewSetInfo(ComponentView* view, int32_t info, int64_t number, const wchar_t* text);

/* Unit and decimals, for all views of the process. Result: 1; 0 for another info number. */
VHRT_FUNCTION(int32_t) ComponentViewSetInfoEx(ObjectContext* context, int32_t info, int32_t number);

/* Texts go to a buffer of `size` units; a null output is left out. Result: 0; -1 for another info number. */
VHRT_FUNCTION(int32_t)
_ComponentViewQueryInfo(ComponentView* view, int32_t info, int64_t* number, wchar_t* text, int32_t size);

/* Result: 0 or -1. */
VHRT_FUNCTION(int32_t) ComponentViewRefresh(ComponentView* view);

/* Result: 0; -1 when an exclusive view should select several items. */
VHRT_FUNCTION(int32_t) ComponentViewSelectAll(ComponentView* view, int32_t select);

/* Frees the view; its window ends with the dialog. Result: 0; -1 for null. */
VHRT_FUNCTION(int32_t) ComponentViewDestroy(ComponentView* view);
