#include "bitmap_object.h"

#include "picture.h"
#include "screen.h"

namespace vh::engine {

namespace {

enum placement : long {
    top_right = 1,
    top_left = 2,
    bottom_right = 4,
    bottom_left = 8,
    stretched = 16,
    tiled = 64,
    full = 128,
    centred = 16384,
};

} // namespace

BitmapObject::BitmapObject(std::shared_ptr<Core> shared, unique_bitmap picture, long placement, long transparent)
    : engine_object(std::move(shared)), m_picture(std::move(picture)), m_size(SizeOf(m_picture.get())),
      m_placement(placement), m_transparent(transparent), m_effect(core().screen->effect)
{
    // A drawing costs the same for one pixel and for many.
    if (m_placement == tiled) {
        m_picture = Repeated(m_picture.get(), 128);
        m_size = SizeOf(m_picture.get());
    }
    MainWindow* main = core().screen->Main();
    if (!main)
        return;
    main->Add(*this);
    if (m_effect)
        main->Animate();
}

BitmapObject::~BitmapObject()
{
    if (MainWindow* main = core().screen->MainIfMade())
        main->Remove(*this);
}

HRESULT BitmapObject::SetPosition(long x, long y)
{
    return Call("ISetupBitmap.SetPosition", x, y)([&] {
        m_at = {x, y};
        if (const MainWindow* main = core().screen->MainIfMade())
            main->Repaint();
        return S_OK;
    });
}

bool BitmapObject::Advance()
{
    if (m_effect && m_step < reveal_steps)
        ++m_step;
    return m_effect && m_step < reveal_steps;
}

RECT BitmapObject::PlaceIn(const RECT& client) const
{
    POINT at = m_at;
    if (m_placement == centred || m_placement == full)
        at = {(client.right - m_size.cx) / 2, (client.bottom - m_size.cy) / 2};
    if (m_placement == top_right || m_placement == bottom_right)
        at.x = client.right - m_size.cx - at.x;
    if (m_placement == bottom_left || m_placement == bottom_right)
        at.y = client.bottom - m_size.cy - at.y;
    return {at.x, at.y, at.x + m_size.cx, at.y + m_size.cy};
}

void BitmapObject::Paint(HDC to, const RECT& client) const
{
    if (m_placement == stretched)
        return DrawPicture(to, client, m_picture.get(), m_transparent);
    if (m_placement == tiled)
        return PaintTiles(to, client);
    const int before = SaveDC(to);
    if (m_effect && m_step < reveal_steps) {
        const unique_region shown(CreateRectRgn(0, 0, 0, 0));
        for (const RECT& part : RevealedParts(m_effect, m_step, PlaceIn(client))) {
            const unique_region one(CreateRectRgnIndirect(&part));
            CombineRgn(shown.get(), shown.get(), one.get(), RGN_OR);
        }
        SelectClipRgn(to, shown.get());
    }
    PaintPlain(to, client);
    RestoreDC(to, before);
}

void BitmapObject::PaintPlain(HDC to, const RECT& client) const
{
    // Covers what lies below it, also where the picture is smaller.
    if (m_placement == full) {
        const Selected brush(to, GetStockObject(DC_BRUSH));
        SetDCBrushColor(to, core().screen->MainIfMade()->background());
        PatBlt(to, 0, 0, client.right, client.bottom, PATCOPY);
    }
    DrawPicture(to, PlaceIn(client), m_picture.get(), m_transparent);
}

void BitmapObject::PaintTiles(HDC to, const RECT& client) const
{
    if (m_size.cx <= 0 || m_size.cy <= 0)
        return;
    for (long y = 0; y < client.bottom; y += m_size.cy)
        for (long x = 0; x < client.right; x += m_size.cx)
            DrawPicture(to, {x, y, x + m_size.cx, y + m_size.cy}, m_picture.get(), m_transparent);
}

} // namespace vh::engine
