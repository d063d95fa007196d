// Exported functions of the tree view.
#include "vhrt/tree_view.h"

#include "../runtime/context.h"
#include "../scriptdata/results.h"
#include "../views/tree_view.h"

TreeView* _TreeViewCreate(ObjectContext* context, HWND dialog, int32_t control, const wchar_t* media,
                          const wchar_t* root, int32_t depth)
{
    if (!context)
        return nullptr;
    return TreeView::Create({context->media, context->modules, context->supportDir, context}, dialog, control,
                            vh::View(media), vh::View(root), depth);
}

int32_t _GetSelectedTreeComponent(TreeView* tree, wchar_t* buffer, int32_t size)
{
    const auto live = TreeView::Live(tree);
    const stringx* name = live ? live->Caret() : nullptr;
    return name ? vh::CopyOut(name->view(), buffer, size) : TreeView::no_caret;
}

int32_t GetSelectedItemState(TreeView* tree, int32_t* state)
{
    const auto live = TreeView::Live(tree);
    if (!live || !state)
        return -1;
    *state = live->last_state();
    return 0;
}
