#include "picker_edit.h"

#include <algorithm>
#include <vector>

#include "late_dialogs.h"

namespace vh {

namespace {

constexpr int message_id = 0x3742; // of the platform's text above the tree

// Heights and gaps, in the dialog's own units.
constexpr int edit_height = 14;
constexpr int gap_below_label = 2;
constexpr int gap_below_edit = 4;
constexpr int gap_above_tree = 3;
// What the tree keeps, however long the labels are.
constexpr int least_tree = 40;

int PixelsOf(HWND dialog, int vertical_units)
{
    RECT place{0, 0, 0, vertical_units};
    late::map_dialog_rect(dialog, &place);
    return static_cast<int>(place.bottom);
}

HWND NextChild(HWND parent, HWND child) { return late::find_child_window(parent, child, nullptr, nullptr); }

bool HoldsTree(HWND window)
{
    if (late::find_child_window(window, nullptr, L"SysTreeView32", nullptr))
        return true;
    for (HWND child = NextChild(window, nullptr); child; child = NextChild(window, child))
        if (HoldsTree(child))
            return true;
    return false;
}

HWND FindTree(HWND dialog)
{
    if (const HWND tree = late::find_child_window(dialog, nullptr, L"SysTreeView32", nullptr))
        return tree;
    for (HWND child = NextChild(dialog, nullptr); child; child = NextChild(dialog, child))
        if (HoldsTree(child))
            return child;
    return nullptr;
}

WPARAM FontOf(HWND dialog) { return static_cast<WPARAM>(late::send_message(dialog, WM_GETFONT, 0u, 0)); }

// A dialog that can be sized lays out its controls when its size is told, which may be the first time.
void LayOut(HWND dialog)
{
    RECT client{};
    late::get_client_rect(dialog, &client);
    late::send_message(dialog, static_cast<UINT>(WM_SIZE), WPARAM{SIZE_RESTORED},
                       LPARAM{MAKELPARAM(client.right, client.bottom)});
}

// A window's device context with a font of the caller's, for measuring.
class font_context {
public:
    font_context(HWND window, HFONT font) : m_window(window), m_context(late::get_dc(window))
    {
        m_before = late::select_object(m_context, font);
    }
    font_context(const font_context&) = delete;
    font_context& operator=(const font_context&) = delete;
    ~font_context()
    {
        if (m_before)
            late::select_object(m_context, m_before);
        late::release_dc(m_window, m_context);
    }

    int height_of(const stringx& text, int width) const
    {
        RECT place{0, 0, width, 0};
        late::draw_text(m_context, text.c_str(), static_cast<int>(text.size()), &place,
                        static_cast<UINT>(DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS));
        return HeightOf(place);
    }

private:
    HWND m_window;
    HDC m_context;
    HGDIOBJ m_before = nullptr;
};

} // namespace

RECT PickerEdit::Anchor() const
{
    if (m_tree)
        return PlaceIn(m_dialog, m_tree);
    RECT place{};
    if (const HWND message = late::get_dialog_item(m_dialog, message_id)) {
        place = PlaceIn(m_dialog, message);
        place.top = place.bottom;
    } else {
        late::get_client_rect(m_dialog, &place);
        place.bottom = place.top;
    }
    return place;
}

int PickerEdit::HeightOfLabel(const stringx& text, int width) const
{
    if (text.empty())
        return 0;
    return font_context(m_dialog, reinterpret_cast<HFONT>(FontOf(m_dialog))).height_of(text, width);
}

void PickerEdit::MakeRoom(const RECT& anchor, int height)
{
    struct child_place {
        HWND window;
        RECT before;
    };
    std::vector<child_place> below;
    for (HWND child = NextChild(m_dialog, nullptr); child; child = NextChild(m_dialog, child))
        if (const RECT place = PlaceIn(m_dialog, child); place.top >= anchor.top && child != m_tree)
            below.push_back({child, place});

    RECT place = PlaceOf(m_dialog);
    const int added = std::clamp(HeightOf(WorkAreaOf(m_dialog)) - HeightOf(place), 0, height);
    place.bottom += added;
    Place(m_dialog, place);

    // A dialog that can be sized has just moved its controls itself.
    for (const auto& [window, before] : below) {
        RECT now = PlaceIn(m_dialog, window);
        if (now.top != before.top)
            continue;
        now.top += added;
        now.bottom += added;
        Place(window, now);
    }
    if (!m_tree)
        return;
    RECT tree = PlaceIn(m_dialog, m_tree);
    if (tree.bottom == anchor.bottom)
        tree.bottom += added;
    tree.top = std::min(anchor.top + height, tree.bottom);
    Place(m_tree, tree);
    m_top_of_tree = static_cast<int>(tree.top);
}

HWND PickerEdit::Add(const wchar_t* type, DWORD style, DWORD extended_style, int id, const stringx& text,
                     HWND behind) const
{
    const HWND control =
        late::create_window_ex(extended_style, type, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, m_dialog,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    late::send_message(control, static_cast<UINT>(WM_SETFONT), FontOf(m_dialog), LPARAM{0});
    late::set_window_pos(control, behind, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return control;
}

void PickerEdit::Create(HWND dialog, const stringx& label, const stringx& second_label, const stringx& text)
{
    m_dialog = dialog;
    m_tree = FindTree(dialog);
    LayOut(dialog);
    const RECT anchor = Anchor();
    const int width = WidthOf(anchor);
    const int fixed = PixelsOf(dialog, gap_below_label + edit_height + gap_below_edit + gap_above_tree + least_tree);
    const int room = HeightOf(WorkAreaOf(dialog)) - HeightOf(PlaceOf(dialog)) + HeightOf(anchor) - fixed;
    const int most = std::max(room / 2, 0);
    const int label_height = std::min(HeightOfLabel(label, width), most);
    const int second_height = std::min(HeightOfLabel(second_label, width), most);

    RECT place = anchor;
    const auto take = [&](int height, int gap) {
        RECT taken = place;
        taken.bottom = taken.top + height;
        place.top = taken.bottom + (height ? PixelsOf(dialog, gap) : 0);
        return taken;
    };
    const RECT label_place = take(label_height, gap_below_label);
    const RECT edit_place = take(PixelsOf(dialog, edit_height), second_height ? gap_below_edit : gap_above_tree);
    const RECT second_place = take(second_height, gap_above_tree);
    MakeRoom(anchor, static_cast<int>(place.top - anchor.top));

    // Before the tree in the order of the tab key.
    HWND behind = m_tree ? late::get_window(m_tree, static_cast<UINT>(GW_HWNDPREV)) : nullptr;
    if (!behind)
        behind = HWND_TOP;
    m_label = Add(L"Static", SS_LEFT, 0, label_id, label, behind);
    m_edit = Add(L"Edit", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, edit_id, text, m_label);
    m_second_label = Add(L"Static", SS_LEFT, 0, second_label_id, second_label, m_edit);
    late::send_message(m_edit, static_cast<UINT>(EM_SETLIMITTEXT), static_cast<WPARAM>(max_length), LPARAM{0});
    Place(m_label, label_place);
    Place(m_edit, edit_place);
    Place(m_second_label, second_place);
}

void PickerEdit::Arrange() const
{
    if (!m_tree)
        return;
    RECT tree = PlaceIn(m_dialog, m_tree);
    tree.top = std::min<LONG>(m_top_of_tree, tree.bottom);
    Place(m_tree, tree);
    for (const HWND control : {m_label, m_edit, m_second_label}) {
        RECT place = PlaceIn(m_dialog, control);
        place.left = tree.left;
        place.right = tree.right;
        Place(control, place);
    }
}

int PickerEdit::LeastHeight() const
{
    if (!m_tree)
        return 0;
    return HeightOf(PlaceOf(m_dialog)) - HeightOf(PlaceOf(m_tree)) + PixelsOf(m_dialog, least_tree);
}

stringx PickerEdit::Text() const
{
    stringx text;
    text.resize(static_cast<std::size_t>(late::get_text_length(m_edit)));
    const int length = late::get_text(m_edit, text.data(), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

void PickerEdit::SetText(const wchar_t* text) const { late::set_text(m_edit, text); }

void PickerEdit::Select() const
{
    late::send_message(m_dialog, static_cast<UINT>(WM_NEXTDLGCTL), reinterpret_cast<WPARAM>(m_edit), LPARAM{TRUE});
    late::send_message(m_edit, static_cast<UINT>(EM_SETSEL), WPARAM{0}, LPARAM{-1});
}

} // namespace vh
