/* A tree control of a dialog that shows the items of a media with check pictures. */
#pragma once

#include "types.h"

/* One tree; it ends with its dialog. */
typedef struct TreeView TreeView;

/* Fills the control to a depth from a root item. Result: null on failure. */
VHRT_FUNCTION(TreeView*)
_TreeViewCreate(ObjectContext* context, HWND dialog, int32_t control, const wchar_t* media, const wchar_t* root,
                int32_t depth);

/* The selected item's path. Result: 0; length + 1 when it does not fit; -121 when none is selected. */
VHRT_FUNCTION(int32_t) _GetSelectedTreeComponent(TreeView* tree, wchar_t* buffer, int32_t size);

/* The state that the last click gave: 0 none, 1 clear, 2 checked, 3 locked. Result: 0. */
VHRT_FUNCTION(int32_t) GetSelectedItemState(TreeView* tree, int32_t* state);
