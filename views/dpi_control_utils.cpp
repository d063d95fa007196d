#include "dpi_control_utils.h"

#include "../pictures/gdi_objects.h"
#include "late_views.h"

namespace {

// Draws into a new picture of 32 bits with `draw(context, place)`; empty when that says false.
template <class Draw>
vh::unique_bitmap Drawn(SIZE size, Draw&& draw)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = size.cy;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    vh::unique_bitmap bitmap(
        vh::late::create_dib_section(HDC{nullptr}, &info, UINT{DIB_RGB_COLORS}, &bits, HANDLE{nullptr}, DWORD{0}));
    const vh::bitmap_context context(nullptr, bitmap.get());
    const RECT place{0, 0, size.cx, size.cy};
    if (!context || !vh::late::fill_rect(context.get(), &place, vh::late::get_system_brush(COLOR_WINDOW)) ||
        !draw(context.get(), place))
        return {};
    vh::late::gdi_flush();
    // Themes write the fourth byte where they draw and nowhere else: the whole picture is opaque.
    auto* pixels = static_cast<uint32_t*>(bits);
    for (LONG i = 0; i < size.cx * size.cy; ++i)
        pixels[i] |= 0xFF000000;
    return bitmap;
}

} // namespace

// Not for the window: its own painting may ask which theme was opened for it last, and use one that is closed by then.
CDpiControlUtils::CDpiControlUtils(HWND window, const wchar_t* theme_class)
    : m_theme(vh::late::open_theme ? vh::late::open_theme(HWND{nullptr}, theme_class) : nullptr), m_window(window)
{
}

CDpiControlUtils::~CDpiControlUtils()
{
    if (m_theme)
        vh::late::close_theme(m_theme);
}

bool CDpiControlUtils::ThemeSize(int part, int state, SIZE& size) const
{
    return m_theme &&
           SUCCEEDED(vh::late::get_theme_part_size(m_theme, HDC{nullptr}, part, state,
                                                   static_cast<const RECT*>(nullptr), TS_TRUE, &size)) &&
           size.cx > 0 && size.cy > 0;
}

SIZE CDpiControlUtils::GetSize(int part, int state) const
{
    SIZE size{};
    if (!ThemeSize(part, state, size))
        size = {vh::late::get_system_metrics(SM_CXMENUCHECK), vh::late::get_system_metrics(SM_CYMENUCHECK)};
    return size;
}

vh::unique_bitmap CDpiControlUtils::GetThemedBitmap(int part, int state) const
{
    SIZE size{};
    if (!ThemeSize(part, state, size))
        return {};
    return Drawn(size, [&](HDC context, const RECT& place) {
        return SUCCEEDED(
            vh::late::draw_theme_background(m_theme, context, part, state, &place, static_cast<const RECT*>(nullptr)));
    });
}

UINT CDpiControlUtils::ClassicState(int part, int state)
{
    if (part != check_box)
        return 0;
    switch (state) {
    case clear:
        return DFCS_MONO;
    case checked:
        return DFCS_MONO | DFCS_CHECKED;
    case checked_disabled:
        return DFCS_MONO | DFCS_CHECKED | DFCS_INACTIVE;
    default:
        return 0;
    }
}

vh::unique_bitmap CDpiControlUtils::GetClassicBitmap(int part, int state) const
{
    return Drawn(GetSize(part, state), [&](HDC context, RECT place) {
        return vh::late::draw_frame_control(context, &place, ClassicPart(part), ClassicState(part, state)) != FALSE;
    });
}

vh::unique_bitmap CDpiControlUtils::GetBitmap(int part, int state) const
{
    vh::unique_bitmap themed = GetThemedBitmap(part, state);
    return themed ? std::move(themed) : GetClassicBitmap(part, state);
}
