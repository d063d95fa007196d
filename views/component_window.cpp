// The window of a component view: its messages, what it shows, and how it paints.
#include "../dialogs/window_impl.h"
#include "component_view.h"
#include "late_views.h"
#include "row_painter.h"
#include "view_accessible.h"

namespace {

bool class_registered = false;

struct KeyMove {
    WPARAM key;
    vh::list_move move;
};
constexpr KeyMove key_moves[] = {{VK_UP, vh::list_move::up},         {VK_DOWN, vh::list_move::down},
                                 {VK_PRIOR, vh::list_move::page_up}, {VK_NEXT, vh::list_move::page_down},
                                 {VK_HOME, vh::list_move::home},     {VK_END, vh::list_move::end}};

bool IsDown(int key) { return vh::late::get_key_state(key) < 0; }

// A context of the window for painting, between its begin and its end.
class paint_context {
public:
    explicit paint_context(HWND window) : m_window(window), m_context(vh::late::begin_paint(window, &m_paint)) {}
    paint_context(const paint_context&) = delete;
    paint_context& operator=(const paint_context&) = delete;
    ~paint_context() { vh::late::end_paint(m_window, &m_paint); }

    HDC get() const { return m_context; }

private:
    HWND m_window;
    PAINTSTRUCT m_paint{};
    HDC m_context;
};

} // namespace

bool ComponentView::TakeClass()
{
    if (class_registered)
        return true;
    WNDCLASSW made{};
    made.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
    made.lpfnWndProc = &Procedure;
    made.cbClsExtra = sizeof(void*);
    made.cbWndExtra = sizeof(void*);
    made.hInstance = vh::ThisModule();
    made.hCursor = vh::late::load_cursor(HINSTANCE{nullptr}, LPCWSTR{IDC_ARROW});
    made.lpszClassName = window_class;
    class_registered = vh::late::register_class(&made) != 0;
    return class_registered;
}

void ComponentView::DropClass()
{
    if (std::exchange(class_registered, false))
        vh::late::unregister_class(window_class, vh::ThisModule());
}

// A window without a view that lives, or with the view of another window, is one like any other.
LRESULT CALLBACK ComponentView::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    // The first one is the system's; anybody can send another.
    if (message == WM_NCCREATE && lparam && !vh::late::get_window_long(window, 0)) {
        const auto created = Live(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
        if (created && !created->m_window) {
            created->m_window = window;
            vh::late::set_window_long(window, 0, reinterpret_cast<LONG_PTR>(created.get()));
        }
    }
    const auto view = Live(reinterpret_cast<const void*>(vh::late::get_window_long(window, 0)));
    if (!view || view->m_window != window)
        return vh::late::def_window_proc(window, message, wparam, lparam);
    if (message == WM_DESTROY) {
        vh::late::set_window_long(window, 0, LONG_PTR{0});
        view->m_window = nullptr;
        return 0;
    }
    try {
        return view->Answer(message, wparam, lparam);
    } catch (const std::exception&) {
        // Not through the window system's frames: what could not be done stays undone.
        return 0;
    }
}

LRESULT ComponentView::Answer(UINT message, WPARAM wparam, LPARAM lparam)
{
    LRESULT answer = 0;
    switch (message) {
    case LB_SETCURSEL: {
        const auto index = static_cast<int32_t>(wparam);
        if (index < 0 || index >= count())
            return -1;
        Pick(index, true, vh::pick_point::none);
        ScrollTo(vh::ScrolledTo(m_place, count(), m_visible).first);
        return index;
    }
    case LB_GETCURSEL:
        return m_place.current;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTALLKEYS;
    case WM_SETFONT:
        SetFont(reinterpret_cast<HFONT>(wparam));
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font);
    case WM_SIZE:
        Arrange();
        Redraw(true);
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        OnFocus(message == WM_SETFOCUS);
        return 0;
    case WM_VSCROLL:
        OnScroll(LOWORD(wparam));
        return 0;
    case WM_MOUSEWHEEL:
        ScrollTo(m_place.first - 3 * static_cast<short>(HIWORD(wparam)) / WHEEL_DELTA);
        return 0;
    case WM_KEYDOWN:
        OnKey(wparam, lparam, answer);
        return answer;
    case WM_CHAR:
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        OnButton(lparam, message == WM_LBUTTONDBLCLK);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        Paint();
        return 0;
    case WM_THEMECHANGED:
    case WM_SYSCOLORCHANGE:
        // Another look has other pictures.
        vh::SharedViews::Get().pictures.reset();
        Redraw(true);
        return 0;
    case WM_GETOBJECT:
        if (vh::AnswerAccessible(*this, wparam, lparam, answer))
            return answer;
        break;
    default:
        break;
    }
    return vh::late::def_window_proc(m_window, message, wparam, lparam);
}

void ComponentView::OnKey(WPARAM key, LPARAM details, LRESULT& answer)
{
    if (count() == 0)
        return;
    if (IsDown(VK_SPACE)) {
        Pick(m_place.current, true, vh::pick_point::none);
        return;
    }
    for (const auto& [moving, move] : key_moves) {
        if (key != moving)
            continue;
        const vh::list_place place = vh::Moved(m_place, move, count(), m_visible);
        ScrollTo(place.first);
        Pick(place.current, false, vh::pick_point::none);
        return;
    }
    switch (key) {
    case VK_TAB:
        vh::late::post_message(m_dialog, UINT{WM_NEXTDLGCTL}, WPARAM{IsDown(VK_SHIFT)}, LPARAM{FALSE});
        break;
    case VK_RETURN:
        PressDefaultButton();
        break;
    case VK_ESCAPE:
        vh::late::post_message(m_dialog, UINT{WM_KEYDOWN}, key, details);
        break;
    default:
        answer = vh::late::def_window_proc(m_window, UINT{WM_KEYDOWN}, key, details);
        break;
    }
}

void ComponentView::PressDefaultButton() const
{
    const auto found = static_cast<DWORD>(vh::late::send_message(m_dialog, UINT{DM_GETDEFID}, WPARAM{0}, LPARAM{0}));
    if (HIWORD(found) != DC_HASDEFID)
        return;
    const HWND button = vh::late::get_dialog_item(m_dialog, int{LOWORD(found)});
    vh::late::post_message(m_dialog, UINT{WM_COMMAND}, WPARAM{MAKEWPARAM(LOWORD(found), BN_CLICKED)},
                           reinterpret_cast<LPARAM>(button));
}

void ComponentView::OnButton(LPARAM point, bool twice)
{
    vh::late::set_focus(m_window);
    const LONG x = static_cast<short>(LOWORD(point));
    const int32_t index = RowAt(static_cast<short>(HIWORD(point)));
    if (index < 0)
        return;
    const bool on_check = x < vh::RowPainter::CheckArea(Client(), Pictures().check_size());
    Pick(index, true, twice ? vh::pick_point::none : on_check ? vh::pick_point::check : vh::pick_point::row);
}

void ComponentView::OnScroll(WORD code)
{
    switch (code) {
    case SB_LINEUP:
        return ScrollTo(m_place.first - 1);
    case SB_LINEDOWN:
        return ScrollTo(m_place.first + 1);
    case SB_PAGEUP:
        return ScrollTo(m_place.first - m_visible);
    case SB_PAGEDOWN:
        return ScrollTo(m_place.first + m_visible);
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK: {
        // The message itself has room for 16 bits only.
        SCROLLINFO bar{};
        bar.cbSize = sizeof(bar);
        bar.fMask = SIF_TRACKPOS;
        if (vh::late::get_scroll_info(m_window, SB_VERT, &bar))
            ScrollTo(bar.nTrackPos);
        return;
    }
    default:
        return;
    }
}

void ComponentView::OnFocus(bool focus)
{
    m_focus = focus;
    Mark();
    if (!focus)
        return;
    Tell(EVENT_OBJECT_FOCUS, m_place.current);
    ShowDescription();
}

RECT ComponentView::Client() const
{
    RECT client{};
    vh::late::get_client_rect(m_window, &client);
    return client;
}

void ComponentView::SetFont(HFONT font)
{
    constexpr int least_height = 17;
    if (!font)
        return;
    m_font = font;
    const HDC context = vh::late::get_dc(m_window);
    const HGDIOBJ before = vh::late::select_object(context, HGDIOBJ{font});
    TEXTMETRICW metric{};
    vh::late::get_text_metrics(context, &metric);
    vh::late::select_object(context, before);
    vh::late::release_dc(m_window, context);
    m_rowHeight = std::max(static_cast<int>(metric.tmHeight), least_height);
    Arrange();
    Redraw(true);
}

void ComponentView::Arrange()
{
    if (!m_window)
        return;
    m_visible = std::min(static_cast<int32_t>(Client().bottom / m_rowHeight), most_rows);
    const bool scrolls = count() > m_visible;
    m_place.first = scrolls ? std::clamp(m_place.first, 0, vh::LastFirst(count(), m_visible)) : 0;
    if (scrolls) {
        SCROLLINFO bar{};
        bar.cbSize = sizeof(bar);
        bar.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
        bar.nMax = int{count()} - 1;
        bar.nPage = static_cast<UINT>(m_visible);
        bar.nPos = int{m_place.first};
        vh::late::set_scroll_info(m_window, SB_VERT, &bar, BOOL{TRUE});
    }
    // Showing or hiding it changes the size, which comes back here.
    if (std::exchange(m_scrolls, scrolls) != scrolls || !scrolls)
        vh::late::show_scroll_bar(m_window, SB_VERT, BOOL{scrolls});
}

void ComponentView::ScrollTo(int32_t first)
{
    first = std::clamp(first, 0, vh::LastFirst(count(), m_visible));
    if (first == m_place.first)
        return;
    m_place.first = first;
    Arrange();
    Redraw(false);
}

vh::ViewRow ComponentView::RowOf(int32_t index) const
{
    const vh::SharedViews& shared = vh::SharedViews::Get();
    vh::ViewRow row = m_items.Row(index, shared.format, shared.pictures && shared.pictures->usable());
    row.unit = shared.unit;
    row.current = index == m_place.current;
    row.focus = row.current && m_focus;
    return row;
}

RECT ComponentView::PlaceOf(int32_t index) const
{
    return vh::RowPainter::RowPlace(Client(), index - m_place.first, m_rowHeight);
}

int32_t ComponentView::RowAt(LONG y) const
{
    const LONG row = y < 2 ? -1 : (y - 2) / m_rowHeight;
    const int32_t index = m_place.first + static_cast<int32_t>(row);
    return row >= 0 && row < m_visible && index < count() ? index : -1;
}

void ComponentView::Redraw(bool all)
{
    if (m_exclusive)
        m_items.KeepOneSelected();
    if (!m_window)
        return;
    for (int32_t row = 0; row < m_visible; ++row) {
        const int32_t index = m_place.first + row;
        vh::ViewRow now = index < count() ? RowOf(index) : vh::ViewRow();
        vh::ViewRow& before = m_rows[static_cast<std::size_t>(row)];
        if (now == before)
            continue;
        before = std::move(now);
        Invalidate(row);
    }
    if (all)
        vh::late::invalidate(m_window, static_cast<const RECT*>(nullptr), BOOL{FALSE});
    // At once: a script that works lets no message through.
    vh::late::update_window(m_window);
}

void ComponentView::Mark()
{
    if (!m_window)
        return;
    for (int32_t row = 0; row < m_visible && m_place.first + row < count(); ++row) {
        vh::ViewRow& shown = m_rows[static_cast<std::size_t>(row)];
        const bool current = m_place.first + row == m_place.current;
        if (shown.current == current && shown.focus == (current && m_focus))
            continue;
        shown.current = current;
        shown.focus = current && m_focus;
        Invalidate(row);
    }
    vh::late::update_window(m_window);
}

void ComponentView::Invalidate(int32_t row) const
{
    const RECT place = vh::RowPainter::RowPlace(Client(), row, m_rowHeight);
    vh::late::invalidate(m_window, &place, BOOL{FALSE});
}

void ComponentView::Paint()
{
    Pictures();
    const paint_context paint(m_window);
    const RECT client = Client();
    vh::RowPainter painter(paint.get(), m_font, vh::SharedViews::Get(), m_showSizes);
    int32_t row = 0;
    for (; row < m_visible && m_place.first + row < count(); ++row) {
        const RECT place = vh::RowPainter::RowPlace(client, row, m_rowHeight);
        if (vh::late::rect_visible(paint.get(), &place))
            painter.Paint(place, m_rows[static_cast<std::size_t>(row)]);
    }
    // Behind the last row, and what the frame leaves at the sides.
    const LONG end = vh::RowPainter::RowPlace(client, row, m_rowHeight).top;
    vh::RowPainter::Clear(paint.get(), {client.left + 2, end, client.right - 3, client.bottom});
    vh::RowPainter::Clear(paint.get(), {client.left, client.top, client.left + 2, client.bottom});
    vh::RowPainter::Clear(paint.get(), {client.right - 3, client.top, client.right, client.bottom});
    vh::RowPainter::Clear(paint.get(), {client.left, client.top, client.right, client.top + 2});
    vh::RowPainter::Frame(paint.get(), client);
}

void ComponentView::Tell(DWORD event, int32_t index) const
{
    if (m_window)
        vh::late::notify_event(event, m_window, LONG{OBJID_CLIENT}, LONG{index} + 1);
}
