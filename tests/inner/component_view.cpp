// The component view on a media that the script built: picks beside a model, pixels, and what a view leaves behind.
#include <windows.h>

#include <oleacc.h>

#include "../../views/component_view.h"
#include "../../views/dpi_control_utils.h"
#include "../../views/late_views.h"
#include "../../views/row_painter.h"
#include "../support/bare_context.h"
#include "../support/dialog_driver.h"
#include "../support/handle_counts.h"
#include "../support/locked_media.h"
#include "../support/pixels.h"

namespace {

enum : int { list = 10, list2 = 11, description = 12, required = 13, free_space = 14, change = 15, path1 = 16 };

struct ComponentViews : testing::Test {
    static constexpr int rows = 8;

    ComponentViews()
    {
        for (const int id : {list, list2})
            AddControl(id, {id == list2 ? 200 : 0, 0, id == list2 ? 380 : 180, rows * 17 + 4});
        for (const int id : {description, required, free_space, change, path1})
            AddControl(id, {0, 150, 180, 170}, id == change ? L"Button" : L"Static");
    }
    ~ComponentViews() override
    {
        DestroyWindow(m_dialog);
        ComponentViewSetInfoEx(context, ViewUnit, 1);
        ComponentViewSetInfoEx(context, ViewDecimals, 0);
    }

    void RenewLists() const
    {
        for (const int id : {list, list2}) {
            DestroyWindow(Window(id));
            AddControl(id, {0, 0, 180, rows * 17 + 4});
        }
    }
    void AddControl(int id, const RECT& place, const wchar_t* kind = L"Static") const
    {
        NewWindow(kind, WS_CHILD | WS_VISIBLE, place, m_dialog, id);
    }
    void AddItems(int count, int32_t size = 1024)
    {
        for (int i = 0; i < count; ++i)
            _ComponentAddItem(context, L"M", (L"i" + std::to_wstring(i)).c_str(), size, 0);
    }
    ComponentView* Make(int control, const wchar_t* media_name = L"M") const
    {
        ComponentView* view = _ComponentViewCreate(context, m_dialog, control);
        EXPECT_EQ(ComponentViewSetInfo(view, ViewMedia, 0, media_name), 1);
        return view;
    }
    ComponentView* Shown(int control = list) const
    {
        ComponentView* view = Make(control);
        EXPECT_EQ(ComponentViewCreateWindow(view), 0);
        return view;
    }
    HWND Window(int control = list) const { return GetDlgItem(m_dialog, control); }
    std::wstring Text(int control) const { return TextOf(Window(control)); }
    void Select(int index, bool on) const
    {
        _ComponentSelectItem(context, L"M", (L"i" + std::to_wstring(index)).c_str(), on);
    }
    bool Selected(int index) const
    {
        return _ComponentIsItemSelected(context, L"M", (L"i" + std::to_wstring(index)).c_str()) == 1;
    }
    // At a row that can be seen, on its check picture or behind it.
    static void Click(HWND view, int row, bool on_check, UINT message = WM_LBUTTONDOWN)
    {
        SendMessageW(view, message, 0, MAKELPARAM(on_check ? 6 : 60, 2 + row * 17 + 8));
    }

    BareContext context;
    LockedMedia& media = LockedMedia::AddTo(*context);
    HWND m_dialog = NewWindow(L"#32770", WS_POPUP | WS_VISIBLE, {0, 0, 400, 300});
};

TEST_F(ComponentViews, PickAsAModelDoes)
{
    constexpr int count = 20;
    AddItems(count);
    media.locked = {L"i3", L"i11"};
    for (const bool exclusive : {false, true}) {
        std::vector<bool> selected(count);
        for (int i = 0; i < count; ++i)
            Select(i, false);
        ComponentView* view = Make(exclusive ? list2 : list);
        ComponentViewSetInfo(view, ViewExclusive, exclusive, nullptr);
        ASSERT_EQ(ComponentViewCreateWindow(view), 0);
        const HWND window = Window(exclusive ? list2 : list);
        std::mt19937 random(exclusive ? 1 : 2);
        int current = 0, first = 0;
        const auto keep_one = [&] {
            const auto found = std::find(selected.begin(), selected.end(), true);
            if (!exclusive)
                return;
            if (found == selected.end())
                selected[0] = true;
            else
                std::fill(found + 1, selected.end(), false);
        };
        keep_one();
        const auto flip = [&](int index) {
            if (media.locked.contains(L"i" + std::to_wstring(index)))
                return;
            const bool on = !selected[static_cast<size_t>(index)];
            if (exclusive && on)
                selected.assign(count, false);
            selected[static_cast<size_t>(index)] = on;
            keep_one();
        };
        const auto show = [&](int index) { first = std::clamp(first, index - rows + 1, index); };
        for (int event = 0; event < 500; ++event) {
            const int kind = static_cast<int>(random() % 4), where = static_cast<int>(random() % rows);
            const bool on_check = random() % 2;
            switch (kind) {
            case 0: {
                const WPARAM keys[] = {VK_UP, VK_DOWN, VK_PRIOR, VK_NEXT, VK_HOME, VK_END};
                const int steps[] = {-1, 1, -rows, rows, -count, count};
                const auto key = static_cast<size_t>(random() % 6);
                SendMessageW(window, WM_KEYDOWN, keys[key], 0);
                current = std::clamp(current + steps[key], 0, count - 1);
                if (std::abs(steps[key]) == rows)
                    first = std::clamp(first + steps[key], 0, count - rows);
                show(current);
                break;
            }
            case 1:
            case 2: {
                const UINT message = kind == 1 ? WM_LBUTTONDOWN : WM_LBUTTONDBLCLK;
                Click(window, where, on_check, message);
                const bool was = std::exchange(current, first + where) == first + where;
                if (kind == 1 ? on_check : was)
                    flip(current);
                break;
            }
            default: {
                const int index = static_cast<int>(random() % (count + 4)) - 2;
                const bool there = index >= 0 && index < count;
                ASSERT_EQ(SendMessageW(window, LB_SETCURSEL, static_cast<WPARAM>(index), 0), there ? index : -1);
                if (!there)
                    break;
                if (current == index)
                    flip(index);
                current = index;
                show(index);
            }
            }
            ASSERT_EQ(SendMessageW(window, LB_GETCURSEL, 0, 0), current) << event;
            for (int i = 0; i < count; ++i)
                ASSERT_EQ(Selected(i), selected[static_cast<size_t>(i)]) << event << " item " << i;
            ASSERT_EQ(GetScrollPos(window, SB_VERT), first) << event;
        }
        EXPECT_EQ(ComponentViewDestroy(view), 0);
    }
}

TEST_F(ComponentViews, KeepWhatTheyAreToldAndRefuseTheRest)
{
    ComponentView* view = Make(list);
    ComponentView* other = Make(list2);
    const auto address = reinterpret_cast<int64_t>(other);
    wchar_t text[8];
    int64_t number = 0;
    Table<int32_t, int64_t, const wchar_t*, int32_t, int32_t, int64_t, const wchar_t*> cases = {
        {ViewReserved, 5, L"", 1, -1, 0, L""},
        {ViewShowSizes, 1, L"", 1, -1, 0, L""},
        {ViewExclusive, 1, L"", 1, -1, 0, L""},
        {ViewParent, address, L"", 1, 0, address, L""},
        {ViewChild, address, L"", 1, 0, address, L""},
        {ViewChild, address + 8, L"", 1, 0, 0, L""},
        {ViewDescription, description, L"", 1, 0, description, L""},
        {ViewSpaceRequired, required, L"", 1, 0, required, L""},
        {ViewSpaceFree, free_space, L"", 1, 0, free_space, L""},
        {ViewChangeButton, change, L"", 1, 0, change, L""},
        {ViewPath1, path1, L"", 1, -1, 0, L""},
        {ViewPath2, 99, L"", 1, -1, 0, L""},
        {ViewTargetDirectory, 0, L"C:\\a", 0, 0, 0, L"C:\\a"},
        {ViewTargetDirectory, 0, L"C:\\muchmore", 0, -1, 0, L""},
        {ViewMedia, 0, L"M", 1, 0, 0, L"M"},
        {ViewParentItem, 0, L"parent\\child", 0, 0, 0, L"parent\\"},
        {ViewUnit, 1, L"", 1, -1, 0, L""},
        {ViewDecimals, 0, L"", 1, -1, 0, L""},
        {4, 1, L"", 0, -1, 0, L""},
        {31, 1, L"", 0, -1, 0, L""}};
    for (const auto& [info, value, given, set, asked, told, told_text] : cases) {
        number = 0;
        text[0] = L'\0';
        EXPECT_EQ(ComponentViewSetInfo(view, info, value, given), set) << info;
        EXPECT_GIVES(_ComponentViewQueryInfo(view, info, &number, text, 8), asked, number, told);
        EXPECT_STREQ(text, told_text) << info;
    }
    EXPECT_EQ(ComponentViewSetInfoEx(context, ViewUnit, 0), 1);
    EXPECT_EQ(ComponentViewSetInfoEx(context, ViewShowSizes, 0), 0);

    // The one that goes leaves the chain; what has gone answers nothing.
    ComponentViewSetInfo(view, ViewChild, address, nullptr);
    EXPECT_EQ(ComponentViewDestroy(other), 0);
    EXPECT_EACH(-1, ComponentViewDestroy(other), ComponentViewRefresh(other), ComponentViewSelectAll(nullptr, 1));
    EXPECT_GIVES(_ComponentViewQueryInfo(view, ViewChild, &number, text, 8), 0, number, 0);
    EXPECT_EQ(ComponentViewCreateWindow(Make(99)), -1) << "no placeholder";
    EXPECT_EQ(_ComponentViewCreate(nullptr, m_dialog, list), nullptr);
    ComponentView* nothing = Make(list2, L"unknown");
    EXPECT_EQ(ComponentViewCreateWindow(nothing), -1) << "no such media";
    EXPECT_EQ(ComponentViewCreateWindow(nothing), -1);
    const HWND window = Window(list2);
    ComponentViewSetInfo(nothing, ViewMedia, 0, L"DATA");
    _ComponentAddItem(context, L"DATA", L"item", 1, 0);
    EXPECT_EQ(ComponentViewCreateWindow(nothing), 0);
    EXPECT_TRUE(window == Window(list2) && nothing->count() == 1) << "the window that it has, filled";
}

TEST_F(ComponentViews, SelectAllHasItsLimitInExclusiveMode)
{
    AddItems(2);
    ComponentView* view = Shown();
    EXPECT_EQ(ComponentViewSelectAll(view, 1), 0);
    EXPECT_TRUE(Selected(0) && Selected(1));
    ComponentViewSetInfo(view, ViewExclusive, 1, nullptr);
    EXPECT_EQ(ComponentViewSelectAll(view, 1), -1);
    EXPECT_EQ(ComponentViewSelectAll(view, 0), 0);
    EXPECT_TRUE(Selected(0) && !Selected(1)) << "one of them has to be";
    _ComponentAddItem(context, L"M", L"i0\\only", 1, 0);
    ComponentViewSetInfo(view, ViewParentItem, 0, L"i0");
    EXPECT_EACH(0, ComponentViewRefresh(view), ComponentViewSelectAll(view, 1));
}

TEST_F(ComponentViews, TellTheDialogAndEachOther)
{
    AddItems(3, 1536);
    _ComponentAddItem(context, L"M", L"i1\\below", 512, 0);
    _ComponentSetData(context, L"M", L"i1", attribute_description, 0, L"The second");
    ComponentView* view = Make(list);
    ComponentView* child = Make(list2);
    Table<int32_t, int64_t> infos = {
        {ViewSpaceRequired, required}, {ViewChangeButton, change}, {ViewDescription, description},
        {ViewSpaceFree, free_space},   {ViewPath1, path1},         {ViewChild, reinterpret_cast<int64_t>(child)}};
    for (const auto& [info, value] : infos)
        ComponentViewSetInfo(view, info, value, nullptr);
    ComponentViewSetInfo(child, ViewParent, reinterpret_cast<int64_t>(view), nullptr);
    ComponentViewSetInfo(child, ViewDescription, description, nullptr);
    ASSERT_EQ(ComponentViewCreateWindow(child), 0);
    ASSERT_EQ(ComponentViewCreateWindow(view), 0);
    EXPECT_EQ(child->count(), 0) << "the current row has nothing below";
    ComponentViewSetInfo(child, ViewParentItem, 0, L"i1");
    ASSERT_EQ(ComponentViewRefresh(child), 0);
    EXPECT_EQ(Text(required), L"0 K");
    EXPECT_FALSE(IsWindowEnabled(Window(change)));
    EXPECT_EQ(child->count(), 1);

    Click(Window(), 0, true);
    EXPECT_EQ(child->count(), 1) << "a flip alone leads nowhere else";
    EXPECT_EQ(Text(required), L"2 K");
    EXPECT_EQ(Text(description), L"");
    Click(Window(), 1, false);
    EXPECT_TRUE(IsWindowEnabled(Window(change)));
    EXPECT_EQ(Text(description), L"The second");
    EXPECT_EQ(child->count(), 1);
    Click(Window(), 1, true);
    Click(Window(), 1, true);
    EXPECT_EQ(Text(description), L"The second") << "the view below does not speak for the one above";
    Click(Window(), 2, true);
    EXPECT_EQ(child->count(), 0);
    EXPECT_EQ(Text(required), L"3 K");
    Click(Window(), 1, false);
    // Below, and the view above learns of it.
    Click(Window(list2), 0, true);
    EXPECT_EQ(Text(required), L"5 K") << "with its parent";
    EXPECT_TRUE(Selected(1));

    ComponentViewSetInfoEx(context, ViewDecimals, 1);
    ASSERT_EQ(ComponentViewRefresh(view), 0);
    EXPECT_EQ(Text(required), L"5.0 K");
    ComponentViewSetInfoEx(context, ViewUnit, 0);
    ASSERT_EQ(ComponentViewRefresh(view), 0);
    EXPECT_EQ(Text(required), L"0.1 M");
    // Folders give way where the control is narrow, and all but a network path is in capitals.
    Table<const wchar_t*, const wchar_t*> paths = {
        {L"c:\\a b\\f", L"C:\\A B\\F"},
        {L"\\\\server\\s\\f", L"\\\\server\\s\\f"},
        {L"\\\\", L"\\\\"},
        {L"c:\\a rather long folder\\another long folder\\a third one\\file", L"C:\\...\\A THIRD ONE\\FILE"}};
    for (const auto& [given, shown] : paths) {
        EXPECT_EQ(ComponentViewSetInfo(view, ViewTargetDirectory, 0, given), 0);
        EXPECT_EQ(Text(path1), shown);
    }
    ComponentViewSetInfo(view, ViewTargetDirectory, 0, L"c:\\");
    EXPECT_NE(Text(free_space), L"0.0 M");
    EXPECT_TRUE(Text(free_space).ends_with(L" M"));
}

int g_rows = 0;
int WINAPI CountedFill(HDC context, const RECT* place, HBRUSH brush)
{
    g_rows += place->bottom - place->top == 17 && place->right - place->left > 100;
    return FillRect(context, place, brush);
}

TEST_F(ComponentViews, PaintTheRowsThatChanged)
{
    AddItems(20);
    ComponentView* view = Shown();
    SetFocus(Window());
    UpdateWindow(Window());
    const Replaced counted(late::fill_rect, &CountedFill);
    const auto painted = [](auto&& action) {
        g_rows = 0;
        action();
        return g_rows;
    };
    ComponentViewSetInfo(view, ViewExclusive, 1, nullptr);
    EXPECT_EQ(painted([&] { ComponentViewRefresh(view); }), 1) << "the first becomes selected";
    EXPECT_EQ(painted([&] { ComponentViewRefresh(view); }), 0);
    EXPECT_EQ(painted([&] { Click(Window(), 5, false); }), 2);
    EXPECT_EQ(painted([&] { Click(Window(), 5, true); }), 2) << "two checks";
    EXPECT_EQ(painted([&] { SendMessageW(Window(), WM_KILLFOCUS, 0, 0); }), 1);
    EXPECT_EQ(painted([&] { RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }), rows);
    EXPECT_EQ(painted([&] { SendMessageW(Window(), WM_VSCROLL, SB_LINEDOWN, 0); }), rows);
    EXPECT_EQ(painted([&] { SendMessageW(Window(), WM_VSCROLL, SB_ENDSCROLL, 0); }), 0);
    SendMessageW(Window(), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_EQ(GetScrollPos(Window(), SB_VERT), 1 + 3);
    ComponentViewSetInfo(view, ViewShowSizes, 0, nullptr);
    EXPECT_EQ(painted([&] { ComponentViewRefresh(view); }), rows);
}

TEST_F(ComponentViews, ShowStatesInTheSystemsColours)
{
    AddItems(4);
    media.locked = {L"i2"};
    const std::wstring long_name(300, L'W');
    _ComponentSetData(context, L"M", L"i3", attribute_display_name, 0, long_name.c_str());
    ComponentView* view = Shown();
    UpdateWindow(Window());
    const auto count_of = [&](const RECT& place, int color) {
        return CountPixels(Window(), place, GetSysColor(color));
    };
    const auto row = [](LONG index, LONG left, LONG right) {
        return RECT{left, 2 + index * 17, right, 2 + index * 17 + 17};
    };
    // Left of the check picture, behind the name, at the sizes.
    RECT client{};
    GetClientRect(Window(), &client);
    EXPECT_EACH(2 * 17, count_of(row(0, 2, 4), COLOR_HIGHLIGHT), count_of(row(1, 2, 4), COLOR_WINDOW));
    EXPECT_GT(count_of(row(0, 20, 60), COLOR_HIGHLIGHTTEXT), 5);
    EXPECT_GT(count_of(row(1, 20, 60), COLOR_WINDOWTEXT), 5);
    EXPECT_GT(count_of(row(2, 20, 60), COLOR_GRAYTEXT), 5);
    EXPECT_EQ(count_of(row(2, 20, 60), COLOR_WINDOWTEXT), 0);
    EXPECT_GT(count_of(row(1, client.right - 20, client.right - 3), COLOR_WINDOWTEXT), 5) << "the unit";
    // A name ends before the room that the widest size takes.
    const HDC screen = GetDC(Window());
    const auto width = [screen](const wchar_t* text) {
        SIZE size{};
        GetTextExtentPoint32W(screen, text, lstrlenW(text), &size);
        return size.cx;
    };
    const LONG gap_end = client.right - 3 - width(L"4194303 K");
    EXPECT_EQ(count_of(row(3, gap_end - width(L" "), gap_end), COLOR_WINDOW), 17 * width(L" "));
    EXPECT_GT(count_of(row(3, gap_end - width(L" ") - width(L"W") - 1, gap_end - width(L" ")), COLOR_WINDOWTEXT), 0);
    ComponentViewSetInfo(view, ViewShowSizes, 0, nullptr);
    RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(count_of(row(1, client.right - 40, client.right - 3), COLOR_WINDOWTEXT), 0);
    // The frame: shadow at the top and the left, black in it, white at the bottom and the right.
    EXPECT_EACH(GetSysColor(COLOR_BTNSHADOW), GetPixel(screen, 50, 0), GetPixel(screen, 0, 50));
    EXPECT_EQ(GetPixel(screen, 50, 1), RGB(0, 0, 0));
    EXPECT_EQ(GetPixel(screen, client.right - 1, 50), RGB(255, 255, 255));
    ReleaseDC(Window(), screen);
}

TEST_F(ComponentViews, EndInAnyOrderAndLeaveNothing)
{
    AddItems(600);
    int handles = 0;
    for (int cycle = 0; cycle < 6; ++cycle) {
        ComponentView* first = Shown(list);
        ComponentView* second = Shown(list2);
        EXPECT_EQ(first->count(), 500);
        ComponentViewSetInfo(first, ViewChild, reinterpret_cast<int64_t>(second), nullptr);
        ComponentViewSetInfo(second, ViewChild, reinterpret_cast<int64_t>(first), nullptr);
        Click(Window(list), 1, true);
        ComponentView* pair[] = {first, second};
        ComponentViewDestroy(pair[cycle % 2]);
        // The window without its view is one like any other; the other view still paints.
        EXPECT_EQ(SendMessageW(Window(cycle % 2 ? list2 : list), LB_GETCURSEL, 0, 0), 0);
        Click(Window(cycle % 2 ? list2 : list), 3, true);
        Click(Window(cycle % 2 ? list : list2), 2, true);
        ComponentViewDestroy(pair[1 - cycle % 2]);
        RenewLists();
        if (cycle == 2)
            handles = OpenGdiObjects();
    }
    EXPECT_EQ(OpenGdiObjects(), handles);
    // Left behind, with a dialog that goes before and one that goes after the context.
    Shown(list);
    Shown(list2);
    DestroyWindow(Window(list2));
}

TEST_F(ComponentViews, MayEndInTheMidstOfAClick)
{
    AddItems(3);
    _ComponentAddItem(context, L"M", L"i0\\below", 1, 0);
    // The view above, the one that is clicked, the dialog; while rows are looked at, and while one changes.
    Table<int, std::function<void()> LockedMedia::*> ends = {{list, &LockedMedia::on_look},
                                                             {list, &LockedMedia::on_select},
                                                             {list2, &LockedMedia::on_look},
                                                             {list2, &LockedMedia::on_select},
                                                             {0, &LockedMedia::on_select}};
    for (const auto& [ended, when] : ends) {
        ComponentView* views[] = {Make(list), Make(list2)};
        ComponentView* const ending = views[ended == list2];
        ComponentViewSetInfo(views[0], ViewChild, reinterpret_cast<int64_t>(views[1]), nullptr);
        ComponentViewSetInfo(views[1], ViewParent, reinterpret_cast<int64_t>(views[0]), nullptr);
        ComponentViewSetInfo(ending, ViewSpaceRequired, required, nullptr);
        for (ComponentView* view : views)
            ASSERT_EQ(ComponentViewCreateWindow(view), 0);
        media.*when = [&, control = ended, all = this] {
            EXPECT_EQ(control ? ComponentViewDestroy(ending) : !DestroyWindow(all->m_dialog), 0);
            SetWindowTextW(Window(required), L"mine");
        };
        Click(Window(list2), 0, true);
        EXPECT_EQ(Text(required), ended ? L"mine" : L"") << "it has nothing to say any more";
        EXPECT_EQ(ComponentViewRefresh(ending), ended ? -1 : 0);
        for (ComponentView* view : views)
            ComponentViewDestroy(view);
        RenewLists();
    }
}

TEST_F(ComponentViews, MayShowOtherItemsInTheMidstOfAChange)
{
    AddItems(3);
    _ComponentAddItem(context, L"M", L"i0\\below", 1, 0);
    ComponentView* view = Shown();
    media.on_select = [&] {
        ComponentViewSetInfo(view, ViewParentItem, 0, L"i0");
        ComponentViewRefresh(view);
    };
    EXPECT_EQ(ComponentViewSelectAll(view, 1), 0);
    EXPECT_EQ(view->count(), 1);
    EXPECT_TRUE(Selected(0) && !Selected(1)) << "the rest is not the view's any more";
    SendMessageW(Window(), WM_NCCREATE, 0, 0);
    EXPECT_EQ(SendMessageW(Window(), LB_GETCURSEL, 0, 0), 0) << "it has its view already";
}

TEST_F(ComponentViews, TellTheirRowsToThoseWhoCannotSeeThem)
{
    AddItems(20, 2048);
    media.locked = {L"i2"};
    Select(1, true);
    Shown();
    SetFocus(Window());
    const HMODULE library = LoadLibraryW(L"oleacc.dll");
    const auto object_of = reinterpret_cast<decltype(&ObjectFromLresult)>(
        reinterpret_cast<void*>(GetProcAddress(library, "ObjectFromLresult")));
    IAccessible* view = nullptr;
    const LRESULT answer = SendMessageW(Window(), WM_GETOBJECT, 0, OBJID_CLIENT);
    ASSERT_EQ(object_of(answer, IID_IAccessible, 0, reinterpret_cast<void**>(&view)), S_OK);
    const auto number_of = [&](auto ask, auto... of) {
        VARIANT result{};
        return (view->*ask)(of..., &result) == S_OK && result.vt == VT_I4 ? result.lVal : -1;
    };
    const auto child = [](long number) {
        VARIANT id{};
        id.vt = VT_I4;
        id.lVal = number;
        return id;
    };
    const auto text_of = [&](auto ask, const VARIANT& row) {
        bstr text;
        return (view->*ask)(row, text.put()) == S_OK ? std::wstring(text.view()) : L"none";
    };
    const long base = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
    Table<long, const wchar_t*, long, const wchar_t*> told = {
        {1, L"i0", base | STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED, L"Check"},
        {2, L"i1", base | STATE_SYSTEM_CHECKED, L"Uncheck"},
        {3, L"i2", base | STATE_SYSTEM_UNAVAILABLE, L"Check"},
        {20, L"i19", base | STATE_SYSTEM_OFFSCREEN, L"Check"}};
    long count = 0;
    EXPECT_GIVES(view->get_accChildCount(&count), S_OK, count, 20);
    for (const auto& [number, name, state, action] : told) {
        const VARIANT row = child(number);
        EXPECT_EQ(text_of(&IAccessible::get_accName, row), name);
        EXPECT_EQ(number_of(&IAccessible::get_accState, row), state) << name;
        EXPECT_EQ(number_of(&IAccessible::get_accRole, row), ROLE_SYSTEM_CHECKBUTTON);
        EXPECT_EQ(text_of(&IAccessible::get_accDefaultAction, row), action);
    }
    EXPECT_EQ(text_of(&IAccessible::get_accValue, child(2)), L"2 K");
    EXPECT_EQ(number_of(&IAccessible::get_accRole, child(0)), ROLE_SYSTEM_LIST);
    EXPECT_EQ(view->accDoDefaultAction(child(5)), S_OK);
    EXPECT_TRUE(Selected(4));
    EXPECT_EQ(view->accDoDefaultAction(child(3)), S_OK);
    EXPECT_FALSE(Selected(2));
    EXPECT_EQ(view->accDoDefaultAction(child(21)), E_INVALIDARG);
    EXPECT_EQ(view->accSelect(SELFLAG_TAKESELECTION, child(2)), S_OK);
    for (const auto ask : {&IAccessible::get_accFocus, &IAccessible::get_accSelection})
        EXPECT_EQ(number_of(ask), 2);
    // A row is found where it says that it lies.
    long left = 0, top = 0, width = 0, height = 0;
    EXPECT_EQ(view->accLocation(&left, &top, &width, &height, child(4)), S_OK);
    EXPECT_EQ(height, 17);
    EXPECT_EQ(number_of(&IAccessible::accHitTest, left + 5, top + 5), 4);
    Table<long, long, long> ways = {{NAVDIR_FIRSTCHILD, 0, 1}, {NAVDIR_LASTCHILD, 0, 20}, {NAVDIR_NEXT, 4, 5},
                                    {NAVDIR_PREVIOUS, 4, 3},   {NAVDIR_UP, 1, -1},        {NAVDIR_DOWN, 20, -1}};
    for (const auto& [direction, from, to] : ways)
        EXPECT_EQ(number_of(&IAccessible::accNavigate, direction, child(from)), to) << direction << " from " << from;
    // Who keeps the object longer than the view lives learns that it has gone.
    DestroyWindow(m_dialog);
    __ReleaseObjectContext(context.Take());
    EXPECT_EQ(view->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
    view->Release();
    FreeLibrary(library);
}

// Each pixel of a bitmap of 32 bits.
std::vector<uint32_t> PixelsOf(const unique_bitmap& bitmap)
{
    DIBSECTION facts{};
    GetObjectW(bitmap.get(), sizeof(facts), &facts);
    const auto* bits = static_cast<const uint32_t*>(facts.dsBm.bmBits);
    return {bits, bits + facts.dsBm.bmWidth * facts.dsBm.bmHeight};
}

TEST(CheckBoxes, HaveTheThemesLookOrTheClassicOne)
{
    using Boxes = CDpiControlUtils;
    Table<int, int, UINT, UINT> kinds = {{Boxes::check_box, Boxes::clear, 4, 0x8000},
                                         {Boxes::check_box, Boxes::checked, 4, 0x8400},
                                         {Boxes::check_box, Boxes::checked_disabled, 4, 0x8500},
                                         {Boxes::check_box, 2, 4, 0},
                                         {1, Boxes::checked, 0, 0}};
    for (const auto& [part, state, kind, look] : kinds) {
        EXPECT_EQ(Boxes::ClassicPart(part), kind);
        EXPECT_EQ(Boxes::ClassicState(part, state), look);
    }
    const Boxes themed(nullptr, L"Button");
    const Replaced no_theme(
        late::open_theme, +[](HWND, const wchar_t*) WINAPI -> HTHEME { return nullptr; });
    const Boxes classic(nullptr, L"Button");
    EXPECT_FALSE(classic.GetThemedBitmap(Boxes::check_box, Boxes::clear));
    for (const Boxes* boxes : {&themed, &classic}) {
        const SIZE size = boxes->GetSize(Boxes::check_box, Boxes::clear);
        const auto clear = PixelsOf(boxes->GetBitmap(Boxes::check_box, Boxes::clear));
        const auto checked = PixelsOf(boxes->GetBitmap(Boxes::check_box, Boxes::checked));
        EXPECT_EQ(std::ssize(clear), size.cx * size.cy);
        EXPECT_NE(clear, checked);
        EXPECT_TRUE(std::ranges::all_of(checked, [](uint32_t pixel) { return pixel >> 24 == 0xFF; })) << "opaque";
    }
    EXPECT_EQ(PixelsOf(classic.GetBitmap(Boxes::check_box, Boxes::clear)),
              PixelsOf(classic.GetClassicBitmap(Boxes::check_box, Boxes::clear)));
    EXPECT_NE(PixelsOf(themed.GetBitmap(Boxes::check_box, Boxes::checked)),
              PixelsOf(classic.GetBitmap(Boxes::check_box, Boxes::checked)));
}

} // namespace
