// The tree view on a media that the script built, in a dialog of the test's own.
#include <windows.h>

#include <commctrl.h>

#include "../../views/late_views.h"
#include "../../views/tree_view.h"
#include "../support/bare_context.h"
#include "../support/handle_counts.h"
#include "../support/locked_media.h"

namespace {

struct TreeViews : testing::Test {
    static constexpr int control = 10;

    TreeViews()
    {
        InitCommonControls();
        for (const wchar_t* item : {L"a", L"a\\b", L"a\\b\\c", L"a\\d", L"e"})
            _ComponentAddItem(context, L"M", item, 1, 0);
        media.locked = {L"a\\d"};
        Open();
    }
    ~TreeViews() override { Close(); }

    void Open()
    {
        m_dialog = NewWindow(L"#32770", WS_POPUP | WS_VISIBLE, {0, 0, 400, 300});
        AddTree(control);
    }
    void AddTree(int id) const
    {
        NewWindow(WC_TREEVIEWW, WS_CHILD | WS_VISIBLE | TVS_HASBUTTONS, {0, 0, 200, 200}, m_dialog, id);
    }
    void Close() { DestroyWindow(std::exchange(m_dialog, nullptr)); }

    TreeView* Make(int32_t depth, const wchar_t* root = L"a", int id = control) const
    {
        return _TreeViewCreate(context, m_dialog, id, L"M", root, depth);
    }
    HWND Tree(int id = control) const { return GetDlgItem(m_dialog, id); }
    HTREEITEM Next(UINT relation, HTREEITEM from = nullptr) const
    {
        return TreeView_GetNextItem(Tree(), from, relation);
    }
    void PressSpace() const { SendMessageW(Tree(), WM_KEYDOWN, VK_SPACE, 0); }
    // Each item as "text" and the number of its picture, children in parentheses.
    std::wstring Shown(HTREEITEM item) const
    {
        std::wstring all;
        for (; item; item = Next(TVGN_NEXT, item)) {
            wchar_t text[64] = L"";
            TVITEMW facts{};
            facts.mask = TVIF_TEXT | TVIF_STATE;
            facts.hItem = item;
            facts.stateMask = TVIS_STATEIMAGEMASK;
            facts.pszText = text;
            facts.cchTextMax = 64;
            SendMessageW(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&facts));
            all += std::wstring(text) + std::to_wstring(facts.state >> 12);
            if (const HTREEITEM child = Next(TVGN_CHILD, item))
                all += L"(" + Shown(child) + L")";
        }
        return all;
    }
    std::wstring Shown() const { return Shown(Next(TVGN_ROOT)); }
    // A click is where the cursor is, so it is told as the control would tell it.
    void ClickAt(HTREEITEM item, bool on_picture) const
    {
        RECT place{};
        TreeView_GetItemRect(Tree(), item, &place, TRUE);
        POINT point{on_picture ? place.left - 6 : place.left + 3, (place.top + place.bottom) / 2};
        ClientToScreen(Tree(), &point);
        SetCursorPos(static_cast<int>(point.x), static_cast<int>(point.y));
        PostMessageW(m_dialog, WM_APP, 0, 0);
        MSG message{};
        ASSERT_TRUE(GetMessageW(&message, m_dialog, WM_APP, WM_APP));
        const NMHDR click{Tree(), control, static_cast<UINT>(NM_CLICK)};
        SendMessageW(m_dialog, WM_NOTIFY, control, reinterpret_cast<LPARAM>(&click));
    }
    static int32_t StateOf(TreeView* tree)
    {
        int32_t state = -9;
        EXPECT_EQ(GetSelectedItemState(tree, &state), 0);
        return state;
    }

    BareContext context;
    LockedMedia& media = LockedMedia::AddTo(*context);
    HWND m_dialog = nullptr;
};

TEST_F(TreeViews, FillToADepthAndOnExpansion)
{
    Table<const wchar_t*, int32_t, const wchar_t*> cases = {{L"a", 0, L""},         {L"a", 1, L"a1"},
                                                            {L"a", 2, L"a1(b1d3)"}, {L"a", -1, L"a1(b1(c1)d3)"},
                                                            {L"", 2, L"M1(a1e1)"},  {L"none", 1, L""}};
    for (const auto& [root, depth, shown] : cases) {
        ASSERT_NE(Make(depth, root), nullptr) << "a tree that stays empty is one";
        EXPECT_EQ(Shown(), shown);
        Close();
        Open();
    }
    ASSERT_NE(Make(1, L"e"), nullptr);
    TreeView* tree = Make(1);
    EXPECT_EQ(Shown(), L"a1") << "in the place of the former one";
    wchar_t name[8] = L"";
    EXPECT_GIVES_TEXT(_GetSelectedTreeComponent(tree, name, 8), 0, name, L"a");
    TreeView_Expand(Tree(), Next(TVGN_ROOT), TVE_EXPAND);
    EXPECT_EQ(Shown(), L"a1(b1d3)");
    EXPECT_TRUE(IsWindowVisible(Tree())) << "it draws again";
    TreeView_Expand(Tree(), Next(TVGN_ROOT), TVE_COLLAPSE);
    TreeView_Expand(Tree(), Next(TVGN_ROOT), TVE_EXPAND);
    EXPECT_EQ(Shown(), L"a1(b1d3)") << "filled once";
    TreeView_SelectItem(Tree(), Next(TVGN_CHILD, Next(TVGN_ROOT)));
    EXPECT_EQ(_GetSelectedTreeComponent(tree, name, 3), 4) << "no room";
    EXPECT_GIVES_TEXT(_GetSelectedTreeComponent(tree, name, 8), 0, name, L"a\\b");
    TreeView_SelectItem(Tree(), nullptr);
    EXPECT_EQ(_GetSelectedTreeComponent(tree, name, 8), -121);
}

constinit vh::late_function<decltype(GetWindowTheme)> theme_of(vh::late::uxtheme, "GetWindowTheme");

TEST_F(TreeViews, ToggleByKeyAndClick)
{
    const HTHEME theme = theme_of(Tree());
    TreeView* tree = Make(-1);
    EXPECT_EQ(theme_of(Tree()), theme) << "the control paints itself as before";
    EXPECT_EQ(StateOf(tree), 0);
    PressSpace();
    EXPECT_EQ(StateOf(tree), 2);
    EXPECT_EQ(Shown(), L"a2(b2(c2)d2)") << "what the media reports counts, and nothing is locked any more";
    PressSpace();
    EXPECT_EQ(StateOf(tree), 1);
    EXPECT_EQ(_ComponentIsItemSelected(context, L"M", L"a\\b"), 0);

    media.refused = L"a\\b";
    const HTREEITEM b = Next(TVGN_CHILD, Next(TVGN_ROOT));
    ClickAt(b, true);
    EXPECT_EQ(StateOf(tree), 2);
    EXPECT_EQ(Shown(b).substr(0, 2), L"b1") << "the picture tells the truth";
    media.refused.clear();
    ClickAt(b, true);
    EXPECT_EQ(_ComponentIsItemSelected(context, L"M", L"a\\b"), 1);
    ClickAt(b, false);
    EXPECT_EQ(StateOf(tree), 0);
    EXPECT_EQ(_ComponentIsItemSelected(context, L"M", L"a\\b"), 1);

    ISetupBasicFeatureStateEvents* const events = tree->Events();
    EXPECT_EQ(events->OnStateChanged(reinterpret_cast<LONG64>(b), 2, 1), S_OK);
    ClickAt(b, true);
    EXPECT_EQ(StateOf(tree), 3);
    EXPECT_EQ(Shown(b).substr(0, 2), L"b3");
    EXPECT_EQ(events->OnStateChanged(0, 2, 1), S_OK) << "an item that is none";
    void* object = &object;
    EXPECT_GIVES(events->QueryInterface(IID_IDispatch, &object), E_NOINTERFACE, object, nullptr);
    EXPECT_GIVES(events->QueryInterface(ISetupBasicFeatureStateEvents::iid, &object), S_OK, object, events);
}

WNDPROC g_below = nullptr;
LRESULT CALLBACK Above(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    return CallWindowProcW(g_below, window, message, wparam, lparam);
}

TEST_F(TreeViews, EndWithTheirDialogs)
{
    EXPECT_EQ(_TreeViewCreate(nullptr, m_dialog, control, L"M", L"a", 1), nullptr);
    EXPECT_EQ(Make(1, L"a", 99), nullptr) << "no such control";
    NewWindow(L"Button", WS_CHILD, {0, 0, 9, 9}, m_dialog, 12);
    EXPECT_EQ(Make(1, L"a", 12), nullptr) << "no tree";
    const auto procedure = GetWindowLongPtrW(m_dialog, GWLP_WNDPROC);
    int handles = 0;
    TreeView* tree = nullptr;
    for (int cycle = 0; cycle < 5; ++cycle) {
        AddTree(11);
        tree = Make(-1);
        TreeView* other = Make(-1, L"e", 11);
        EXPECT_EQ(GetPropW(m_dialog, L"PTREEVIEWCMPT"), other);
        EXPECT_EQ(reinterpret_cast<LONG_PTR>(GetPropW(m_dialog, L"OLDWNDPROC")), procedure);
        PressSpace();
        SendMessageW(Tree(11), WM_KEYDOWN, VK_SPACE, 0);
        EXPECT_EQ(_ComponentIsItemSelected(context, L"M", L"e"), cycle % 2 == 0) << "each has its own keys";
        Close();
        // Nothing listens any more, and the record has gone.
        EXPECT_EQ(_ComponentSelectItem(context, L"M", L"a", cycle % 2 != 0), 0);
        EXPECT_EQ(_GetSelectedTreeComponent(tree, nullptr, 0), -121);
        EXPECT_EQ(GetSelectedItemState(other, nullptr), -1);
        Open();
        if (cycle == 1)
            handles = OpenGdiObjects();
    }
    EXPECT_EQ(OpenGdiObjects(), handles);
    // In the midst of its own click, and of its filling.
    tree = Make(-1);
    media.on_select = [this] { Close(); };
    ClickAt(Next(TVGN_ROOT), true);
    EXPECT_EQ(GetSelectedItemState(tree, nullptr), -1);
    Open();
    media.on_look = [this] { Close(); };
    EXPECT_EQ(Make(-1), nullptr);
    Open();
    // Who stands above when the tree ends stays there, and what was below is still reached.
    tree = Make(-1);
    const auto above = reinterpret_cast<LONG_PTR>(&Above);
    g_below = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(m_dialog, GWLP_WNDPROC, above));
    SendMessageW(m_dialog, WM_DESTROY, 0, 0);
    EXPECT_EQ(GetSelectedItemState(tree, nullptr), -1);
    EXPECT_EQ(GetWindowLongPtrW(m_dialog, GWLP_WNDPROC), above);
    SetWindowTextW(m_dialog, L"still named");
    EXPECT_EQ(GetWindowTextLengthW(m_dialog), 11);
    Close();
    Open();
    // A dialog that stays longer than its context is left as it was.
    tree = Make(-1);
    __ReleaseObjectContext(context.Take());
    EXPECT_EQ(TreeView_GetCount(Tree()), 0u);
    EXPECT_EQ(GetPropW(m_dialog, L"PTREEVIEWCMPT"), nullptr);
    EXPECT_EQ(GetWindowLongPtrW(m_dialog, GWLP_WNDPROC), procedure);
    EXPECT_EQ(_GetSelectedTreeComponent(tree, nullptr, 0), -121);
}

} // namespace
