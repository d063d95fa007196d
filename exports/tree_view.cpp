// Exported functions of the tree view: none can be made yet.
#include "vhrt/tree_view.h"

TreeView* _TreeViewCreate(ObjectContext*, HWND, int32_t, const wchar_t*, const wchar_t*, int32_t) { return nullptr; }
int32_t _GetSelectedTreeComponent(TreeView*, wchar_t*, int32_t) { return -121; }
int32_t GetSelectedItemState(TreeView*, int32_t*) { return -1; }
