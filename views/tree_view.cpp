#include "tree_view.h"

#include "../scriptdata/live_objects.h"
#include "dpi_control_utils.h"
#include "late_views.h"

namespace {

constexpr const wchar_t* tree_property = L"PTREEVIEWCMPT";
constexpr const wchar_t* procedure_property = L"OLDWNDPROC";

// What the control keeps for each item.
struct TreeItemData {
    bool selected = false;
    bool locked = false;
    stringx name;
    // The media is told of the item's end, with this number.
    bool advised = false;
    int32_t cookie = 0;
};

vh::live_objects<TreeView>& LiveTrees()
{
    static vh::live_objects<TreeView> live;
    return live;
}

template <class Parameter>
LRESULT Send(HWND tree, UINT message, WPARAM wparam, Parameter lparam)
{
    return vh::late::send_message(tree, message, wparam, reinterpret_cast<LPARAM>(lparam));
}

HTREEITEM Next(HWND tree, WPARAM relation, HTREEITEM from = nullptr)
{
    return reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, relation, from));
}

// Data and state of an item; without data it can't be read.
struct ReadItem {
    ReadItem(HWND tree, HTREEITEM item)
    {
        TVITEMW facts{};
        facts.mask = TVIF_HANDLE | TVIF_PARAM | TVIF_STATE;
        facts.hItem = item;
        facts.stateMask = TVIS_STATEIMAGEMASK | TVIS_EXPANDED;
        if (!item || !Send(tree, TVM_GETITEMW, 0, &facts))
            return;
        data = reinterpret_cast<TreeItemData*>(facts.lParam);
        picture = static_cast<int32_t>((facts.state & TVIS_STATEIMAGEMASK) >> 12);
        expanded = (facts.state & TVIS_EXPANDED) != 0;
    }

    TreeItemData* data = nullptr;
    int32_t picture = 0;
    bool expanded = false;
};

int32_t PictureOf(bool selected, bool locked)
{
    return locked ? TreeView::locked : selected ? TreeView::checked : TreeView::clear;
}

void SetPicture(HWND tree, HTREEITEM item, int32_t picture)
{
    TVITEMW facts{};
    facts.mask = TVIF_HANDLE | TVIF_STATE;
    facts.hItem = item;
    facts.stateMask = TVIS_STATEIMAGEMASK;
    facts.state = INDEXTOSTATEIMAGEMASK(static_cast<UINT>(picture));
    Send(tree, TVM_SETITEMW, 0, &facts);
}

} // namespace

HRESULT ComponentEventHandler::QueryInterface(REFIID id, void** object)
{
    if (!object)
        return E_POINTER;
    const bool known = id == iid || id == vh::iid_of<IUnknown>;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT ComponentEventHandler::OnStateChanged(LONG64 item, long selected, long locked)
{
    const auto handle = reinterpret_cast<HTREEITEM>(item);
    if (TreeItemData* data = ReadItem(m_tree, handle).data) {
        data->selected = selected != 0;
        data->locked = locked != 0;
        SetPicture(m_tree, handle, PictureOf(data->selected, data->locked));
    }
    return S_OK;
}

std::shared_ptr<TreeView> TreeView::Live(const void* tree) { return LiveTrees().Find(tree); }

TreeView::TreeView(const vh::ViewScene& scene, HWND dialog, int32_t control, HWND tree, std::wstring_view media,
                   std::wstring_view root)
    : m_media(media), m_root(root), m_tree(tree), m_dialog(dialog), m_control(control), m_scene(scene), m_events(tree)
{
}

TreeView* TreeView::Create(const vh::ViewScene& scene, HWND dialog, int32_t control, std::wstring_view media,
                           std::wstring_view root, int32_t depth)
{
    const HWND tree = vh::late::get_dialog_item(dialog, int{control});
    if (!tree)
        return nullptr;
    Replace(dialog, tree);
    const std::shared_ptr<TreeView> made(new TreeView(scene, dialog, control, tree, media, root));
    if (made->MakePictures()) {
        made->DropPictures();
        return nullptr;
    }
    vh::late::set_focus(tree);
    made->m_other = Live(vh::late::get_prop(dialog, tree_property));
    if (!vh::late::set_prop(dialog, tree_property, static_cast<HANDLE>(made.get())))
        return nullptr;
    if (!vh::late::get_prop(dialog, procedure_property)) {
        const auto ours = reinterpret_cast<LONG_PTR>(&Procedure);
        const LONG_PTR before = vh::late::set_window_long(dialog, GWLP_WNDPROC, ours);
        vh::late::set_prop(dialog, procedure_property, reinterpret_cast<HANDLE>(before));
    }
    LiveTrees().Add(made);
    // What can't be filled stays empty; nobody is told.
    made->Fill(depth);
    return Live(made.get()).get();
}

int32_t TreeView::MakePictures()
{
    constexpr int states[] = {CDpiControlUtils::checked, CDpiControlUtils::clear, CDpiControlUtils::checked,
                              CDpiControlUtils::checked_disabled};
    constexpr int box = CDpiControlUtils::check_box;
    const auto module = reinterpret_cast<HMODULE>(vh::late::get_class_long(m_tree, GCLP_HMODULE));
    const CDpiControlUtils boxes(m_tree, L"Button");
    m_checks = vh::image_list(module, boxes.GetSize(box, CDpiControlUtils::checked), ILC_COLOR32, 2, 2);
    for (const int state : states)
        if (!m_checks.Add(boxes.GetBitmap(box, state).get()))
            return no_picture;
    // A control that keeps none is no tree.
    Send(m_tree, TVM_SETIMAGELIST, TVSIL_STATE, m_checks.get());
    if (reinterpret_cast<HIMAGELIST>(Send(m_tree, TVM_GETIMAGELIST, TVSIL_STATE, nullptr)) != m_checks.get())
        return no_picture;

    m_items = vh::image_list(module, {vh::item_picture_size, vh::item_picture_size}, ILC_MASK, 1, 10);
    int width = 0;
    switch (m_items.AddTiles(m_scene.supportDir, width)) {
    case vh::tiles::refused:
        return no_picture;
    case vh::tiles::missing:
        m_imagesUsable = false;
        break;
    case vh::tiles::added:
        Send(m_tree, TVM_SETIMAGELIST, TVSIL_NORMAL, m_items.get());
        break;
    }
    return 0;
}

int32_t TreeView::Fill(int32_t depth)
{
    SetRedraw(false);
    const int32_t failed = media().AddTreeItem(*this, m_root.view(), 0, depth);
    HTREEITEM root = nullptr;
    if (!failed) {
        root = Next(m_tree, TVGN_ROOT);
        Send(m_tree, TVM_SELECTITEM, TVGN_CARET, root);
        EnsureVisible(reinterpret_cast<vh::tree_item>(Next(m_tree, TVGN_FIRSTVISIBLE)));
        for (const int bar : {SB_HORZ, SB_VERT})
            vh::late::set_scroll_position(m_tree, bar, 0, BOOL{TRUE});
    }
    SetRedraw(true);
    return failed ? failed : root ? 0 : -1;
}

const stringx* TreeView::Caret() const
{
    const TreeItemData* data = ReadItem(m_tree, Next(m_tree, TVGN_CARET)).data;
    return data ? &data->name : nullptr;
}

vh::tree_item TreeView::Insert(vh::tree_item parent, const vh::tree_node& node)
{
    auto data = std::make_unique<TreeItemData>();
    data->selected = node.selected;
    data->locked = node.partly_selected;
    data->name = node.name;
    // The top of a media has no name of its own; that of the control, which nobody sees, stands for it.
    stringx label(node.label);
    if (node.name.empty()) {
        wchar_t text[260] = L"";
        vh::late::get_text(m_tree, text, static_cast<int>(std::size(text)));
        label = *text ? text : m_media.c_str();
    }
    TVINSERTSTRUCTW made{};
    made.hParent = parent ? reinterpret_cast<HTREEITEM>(parent) : TVI_ROOT;
    made.hInsertAfter = TVI_LAST;
    made.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_STATE | TVIF_CHILDREN;
    made.item.pszText = label.data();
    made.item.lParam = reinterpret_cast<LPARAM>(data.get());
    made.item.stateMask = TVIS_STATEIMAGEMASK;
    made.item.state = INDEXTOSTATEIMAGEMASK(static_cast<UINT>(PictureOf(data->selected, data->locked)));
    made.item.cChildren = node.visible_children > 0;
    int32_t order = 0;
    if (m_imagesUsable && media().GetDisplayOrder(node.name, order) >= 0) {
        made.item.mask |= TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        made.item.iImage = made.item.iSelectedImage = int{order};
    }
    const auto inserted = static_cast<vh::tree_item>(Send(m_tree, TVM_INSERTITEMW, 0, &made));
    if (inserted)
        static_cast<void>(data.release());
    return inserted;
}

void TreeView::EnsureVisible(vh::tree_item item)
{
    Send(m_tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<HTREEITEM>(item));
}

void TreeView::KeepCookie(vh::tree_item item, int32_t cookie)
{
    if (TreeItemData* data = ReadItem(m_tree, reinterpret_cast<HTREEITEM>(item)).data) {
        data->advised = true;
        data->cookie = cookie;
    }
}

// The lists go with this object.
void TreeView::DropPictures() const
{
    for (const WPARAM kind : {TVSIL_STATE, TVSIL_NORMAL})
        Send(m_tree, TVM_SETIMAGELIST, kind, HIMAGELIST{nullptr});
}

void TreeView::SetRedraw(bool on) const
{
    vh::late::send_message(m_tree, UINT{WM_SETREDRAW}, static_cast<WPARAM>(on), LPARAM{0});
}

LRESULT CALLBACK TreeView::Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam)
{
    const auto before = reinterpret_cast<WNDPROC>(vh::late::get_prop(dialog, procedure_property));
    HWND unfinished = nullptr;
    try {
        if (message == WM_NOTIFY && lparam) {
            const auto& header = *reinterpret_cast<const NMHDR*>(lparam);
            auto tree = Live(vh::late::get_prop(dialog, tree_property));
            while (tree && (header.idFrom != static_cast<UINT_PTR>(tree->m_control) || header.hwndFrom != tree->m_tree))
                tree = tree->m_other;
            if (tree) {
                unfinished = header.code == TVN_ITEMEXPANDINGW ? tree->m_tree : nullptr;
                tree->OnNotify(header);
            }
        } else if (message == WM_DESTROY) {
            End(dialog);
        }
    } catch (const std::exception&) {
        // Not through the window system's frames: the item stays as it is.
    }
    const LRESULT answer = before ? vh::late::call_window_proc(before, dialog, message, wparam, lparam)
                                  : vh::late::def_window_proc(dialog, message, wparam, lparam);
    // Who forbids the expansion gets no end of it.
    if (unfinished && answer)
        vh::late::send_message(unfinished, UINT{WM_SETREDRAW}, WPARAM{TRUE}, LPARAM{0});
    return answer;
}

// Ends what was made for the same control before: its items belong to the one that made them.
void TreeView::Replace(HWND dialog, HWND control)
{
    auto first = Live(vh::late::get_prop(dialog, tree_property));
    std::shared_ptr<TreeView>* at = &first;
    while (*at && (*at)->m_tree != control)
        at = &(*at)->m_other;
    if (!*at)
        return;
    const auto ended = *at;
    Send(control, TVM_DELETEITEM, 0, TVI_ROOT);
    ended->DropPictures();
    *at = ended->m_other;
    vh::late::set_prop(dialog, tree_property, static_cast<HANDLE>(first.get()));
    LiveTrees().Remove(ended.get());
}

// All trees of a dialog, and what they put on it.
void TreeView::End(HWND dialog)
{
    auto tree = Live(vh::late::get_prop(dialog, tree_property));
    for (const TreeView* each = tree.get(); each; each = each->m_other.get())
        Send(each->m_tree, TVM_DELETEITEM, 0, TVI_ROOT);
    vh::late::remove_prop(dialog, tree_property);
    // Somebody who stands above, such as a skin, keeps the way down: the procedure passes on to the one before.
    const auto ours = reinterpret_cast<LONG_PTR>(&Procedure);
    if (vh::late::get_window_long(dialog, GWLP_WNDPROC) == ours)
        vh::late::set_window_long(dialog, GWLP_WNDPROC,
                                  reinterpret_cast<LONG_PTR>(vh::late::remove_prop(dialog, procedure_property)));
    for (; tree; tree = tree->m_other) {
        tree->DropPictures();
        LiveTrees().Remove(tree.get());
    }
}

void TreeView::EndAll(const ObjectContext* context)
{
    const auto of_context = [context](const TreeView& tree) { return tree.m_scene.context == context; };
    for (const auto& tree : LiveTrees().Those(of_context))
        if (Live(tree.get()))
            End(tree->m_dialog);
}

void TreeView::OnNotify(const NMHDR& header)
{
    const auto& notice = reinterpret_cast<const NMTREEVIEWW&>(header);
    switch (header.code) {
    case TVN_DELETEITEMW:
        if (const std::unique_ptr<TreeItemData> data(reinterpret_cast<TreeItemData*>(notice.itemOld.lParam));
            data && data->advised)
            media().Unadvise(data->name.view(), data->cookie);
        break;
    case TVN_ITEMEXPANDINGW:
        OnExpanding(notice);
        break;
    case TVN_ITEMEXPANDEDW:
        if (notice.action == TVE_COLLAPSE ||
            (notice.action == TVE_EXPAND && ReadItem(m_tree, notice.itemNew.hItem).expanded))
            SetRedraw(true);
        break;
    case TVN_KEYDOWN:
        if (reinterpret_cast<const NMTVKEYDOWN&>(header).wVKey == VK_SPACE)
            Toggle(Next(m_tree, TVGN_CARET));
        break;
    case NM_CLICK:
        OnClick();
        break;
    default:
        break;
    }
}

void TreeView::OnExpanding(const NMTREEVIEWW& notice)
{
    if (notice.action != TVE_EXPAND && notice.action != TVE_COLLAPSE)
        return;
    SetRedraw(false);
    const HTREEITEM item = notice.itemNew.hItem;
    const ReadItem read(m_tree, item);
    if (notice.action != TVE_EXPAND || read.expanded || !read.data || Next(m_tree, TVGN_CHILD, item))
        return;
    media().AddTreeChildren(*this, read.data->name.view(), reinterpret_cast<vh::tree_item>(item), 1);
    SetRedraw(true);
}

void TreeView::OnClick()
{
    const DWORD position = vh::late::get_message_position();
    TVHITTESTINFO hit{};
    hit.pt = {static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
    vh::late::screen_to_client(m_tree, &hit.pt);
    Send(m_tree, TVM_HITTEST, 0, &hit);
    if (hit.flags & TVHT_ONITEMSTATEICON)
        Toggle(hit.hItem);
    else
        m_lastState = none;
}

void TreeView::Toggle(HTREEITEM item)
{
    const ReadItem read(m_tree, item);
    if (!read.data)
        return;
    if (read.data->locked) {
        m_lastState = locked;
        return;
    }
    const bool selects = read.picture == clear;
    m_lastState = selects ? checked : clear;
    SetPicture(m_tree, item, m_lastState);
    // The call may report back, and change this item among others.
    const stringx name(read.data->name);
    if (media().SelectItem(name.view(), selects, m_scene.context) == 0)
        return;
    bool selected = !selects;
    media().IsSelected(name.view(), selected);
    SetPicture(m_tree, item, selected ? checked : clear);
}
