// Paints the rows and the frame of a component view.
#pragma once

#include "view_items.h"
#include "view_pictures.h"

namespace vh {

class RowPainter {
public:
    // Where a row of the list lies, counted from the first that can be seen.
    static RECT RowPlace(const RECT& client, int row, int height);
    // The strip at the left whose clicks flip a row.
    static LONG CheckArea(const RECT& client, SIZE check) { return client.left + check.cx * 5 / 4; }

    // Selects the font, which may be null, into the context for its own lifetime.
    RowPainter(HDC context, HFONT font, const SharedViews& shared, bool show_sizes);
    RowPainter(const RowPainter&) = delete;
    RowPainter& operator=(const RowPainter&) = delete;
    ~RowPainter();

    void Paint(const RECT& place, const ViewRow& row);
    static void Clear(HDC context, const RECT& place);
    static void Frame(HDC context, const RECT& client);

private:
    LONG WidthOf(std::wstring_view text) const;
    void DrawCheck(const RECT& place, bool selected) const;
    void DrawPart(const RECT& place, LONG left, std::wstring_view text) const;
    // The width of the size column with its unit.
    LONG DrawSize(const RECT& place, const ViewRow& row);
    LONG WidestSample();

    HDC m_context;
    HGDIOBJ m_before = nullptr;
    const SharedViews& m_shared;
    bool m_showSizes;
    LONG m_blank;
    LONG m_textHeight;
    LONG m_sample = -1;
};

} // namespace vh
