#include "row_painter.h"

#include "late_views.h"

namespace vh {

namespace {

constexpr int ground_of(const ViewRow& row) { return row.current ? COLOR_HIGHLIGHT : COLOR_WINDOW; }

// A line of three points in a pen of its own.
void DrawCorner(HDC context, HPEN pen, POINT from, POINT corner, POINT to)
{
    const HGDIOBJ before = late::select_object(context, HGDIOBJ{pen});
    const POINT points[] = {from, corner, to};
    late::poly_line(context, static_cast<const POINT*>(points), 3);
    late::select_object(context, before);
}

} // namespace

RECT RowPainter::RowPlace(const RECT& client, int row, int height)
{
    const LONG top = client.top + 2 + LONG{row} * height;
    return {client.left + 2, top, client.right - 3, top + height};
}

RowPainter::RowPainter(HDC context, HFONT font, const SharedViews& shared, bool show_sizes)
    : m_context(context), m_before(font ? late::select_object(context, HGDIOBJ{font}) : nullptr), m_shared(shared),
      m_showSizes(show_sizes), m_blank(WidthOf(L" "))
{
    late::set_background_mode(context, TRANSPARENT);
    TEXTMETRICW metric{};
    late::get_text_metrics(context, &metric);
    m_textHeight = metric.tmHeight;
}

RowPainter::~RowPainter()
{
    if (m_before)
        late::select_object(m_context, m_before);
}

LONG RowPainter::WidthOf(std::wstring_view text) const
{
    SIZE size{};
    late::get_text_extent(m_context, text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

void RowPainter::DrawCheck(const RECT& place, bool selected) const
{
    const ready_picture& check = m_shared.pictures->check(selected);
    const SIZE size = check.size();
    late::bit_blt(m_context, static_cast<int>(place.left + size.cx / 4),
                  static_cast<int>(place.top + (place.bottom - place.top - size.cy) / 2), static_cast<int>(size.cx),
                  static_cast<int>(size.cy), check.context(), 0, 0, DWORD{SRCCOPY});
}

void RowPainter::DrawPart(const RECT& place, LONG left, std::wstring_view text) const
{
    const LONG top = place.top + (place.bottom - place.top - m_textHeight) / 2;
    late::ext_text_out(m_context, static_cast<int>(left), static_cast<int>(top), UINT{ETO_CLIPPED}, &place, text.data(),
                       static_cast<UINT>(text.size()), static_cast<const INT*>(nullptr));
}

LONG RowPainter::WidestSample()
{
    if (m_sample < 0) {
        const size_format format = m_shared.format;
        const std::wstring_view digits = format.kilobytes ? L"4194303" : L"4096";
        m_sample = WidthOf(Concat(digits, format.decimals ? L".9 " : L" ", m_shared.unit.view()));
    }
    return m_sample;
}

LONG RowPainter::DrawSize(const RECT& place, const ViewRow& row)
{
    const stringx text = Concat(row.size.view(), L" ", row.unit.view());
    const LONG width = WidthOf(text.view());
    DrawPart(place, place.right - width, text.view());
    return std::max(width, WidestSample());
}

void RowPainter::Paint(const RECT& place, const ViewRow& row)
{
    late::fill_rect(m_context, &place, late::get_system_brush(ground_of(row)));
    LONG text_start = 1;
    if (m_shared.pictures) {
        DrawCheck(place, row.selected);
        text_start = std::max(m_shared.pictures->check_size().cx * 3 / 2, LONG{1});
        if (m_shared.pictures->HasItem(row.image)) {
            text_start += 3;
            m_shared.pictures->DrawItem(
                m_context, {place.left + text_start, place.top + (place.bottom - place.top - item_picture_size) / 2},
                row.image, ground_of(row));
            text_start += item_picture_size + 2;
        }
    }
    late::set_text_color(m_context, late::get_system_color(row.current    ? COLOR_HIGHLIGHTTEXT
                                                           : row.disabled ? COLOR_GRAYTEXT
                                                                          : COLOR_WINDOWTEXT));
    const LONG reserved = m_showSizes ? DrawSize(place, row) : 0;
    // The part of the name that stays below the room, in one measurement.
    const LONG room = place.right - place.left - text_start - reserved - m_blank;
    int fitting = 0;
    SIZE size{};
    if (room > 0)
        late::get_text_extent_ex(m_context, row.name.c_str(), static_cast<int>(row.name.size()),
                                 static_cast<int>(room - 1), &fitting, static_cast<int*>(nullptr), &size);
    DrawPart(place, place.left + text_start, row.name.view().substr(0, static_cast<std::size_t>(fitting)));
    if (row.focus)
        late::draw_focus(m_context, &place);
}

void RowPainter::Clear(HDC context, const RECT& place)
{
    if (place.top < place.bottom)
        late::fill_rect(context, &place, late::get_system_brush(COLOR_WINDOW));
}

// Sunken, in two layers: shadow over white, and black inside the shadow.
void RowPainter::Frame(HDC context, const RECT& client)
{
    const auto white = static_cast<HPEN>(late::get_stock_object(WHITE_PEN));
    const auto black = static_cast<HPEN>(late::get_stock_object(BLACK_PEN));
    const unique<gdi_traits<HPEN>> shadow(late::create_pen(int{PS_SOLID}, 0, late::get_system_color(COLOR_BTNSHADOW)));
    const LONG right = client.right - 1;
    const LONG bottom = client.bottom - 1;
    DrawCorner(context, shadow.get(), {client.left, bottom}, {client.left, client.top}, {right, client.top});
    DrawCorner(context, white, {client.left, bottom}, {right, bottom}, {right, client.top - 1});
    DrawCorner(context, black, {client.left + 1, bottom - 1}, {client.left + 1, client.top + 1},
               {right - 1, client.top + 1});
}

} // namespace vh
