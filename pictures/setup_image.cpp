#include "setup_image.h"

#include <cstdlib>
#include <optional>

using namespace vh;

namespace {

struct option_kind {
    uint32_t option;
    drawing_kind kind;
};
constexpr option_kind option_kinds[] = {
    {option_transparent, drawing_kind::transparent},
    {option_tile, drawing_kind::tile},
    {option_full, drawing_kind::full},
    {option_stretch, drawing_kind::stretch},
};

// By the number of the effect, from 1.
constexpr drawing_kind effect_kinds[] = {
    drawing_kind::dissolve,    drawing_kind::zoom,   drawing_kind::zoom_across, drawing_kind::blinds_across,
    drawing_kind::blinds_down, drawing_kind::frames, drawing_kind::plain,
};

struct kind_effect {
    drawing_kind kind;
    bool (*draw)(const picture_stage&);
};
constexpr kind_effect effects[] = {
    {drawing_kind::dissolve, &DrawDissolve},      {drawing_kind::zoom, &DrawZoom},
    {drawing_kind::zoom_across, &DrawZoomAcross}, {drawing_kind::blinds_across, &DrawBlindsAcross},
    {drawing_kind::blinds_down, &DrawBlindsDown}, {drawing_kind::frames, &DrawFrames},
};

int32_t Scaled(int32_t size, int32_t factor) { return static_cast<int32_t>(int64_t{size} * factor / scale_of_one); }

int DepthOf(HDC context) { return late::get_device_caps(context, BITSPIXEL) * late::get_device_caps(context, PLANES); }

} // namespace

SetupImage::SetupImage(HWND window, int32_t effect, HPALETTE palette)
{
    m_paint.window = window;
    m_paint.effect = effect;
    m_paint.palette = palette;
}

void SetupImage::SetPosition(int32_t x, int32_t y)
{
    m_x = x;
    m_y = y;
}

void SetupImage::SetSize(int32_t width, int32_t height)
{
    m_size_x = width;
    m_size_y = height;
}

SIZE SetupImage::TargetSize(uint32_t options) const
{
    if (options & option_scale)
        return {Scaled(m_width, m_size_x), Scaled(m_height, m_size_y)};
    if (options & option_fixed_size)
        return {m_size_x, m_size_y};
    return size();
}

// Of several anchors the last one in the order of the tests holds.
POINT SetupImage::PlaceOf(SIZE size, SIZE client, uint32_t options) const
{
    const POINT middle{(client.cx - size.cx) / 2, (client.cy - size.cy) / 2};
    if (options & option_center)
        return middle;
    POINT at{m_x, m_y};
    struct anchor {
        uint32_t option;
        bool right;
        bool bottom;
    };
    constexpr anchor anchors[] = {{anchor_bottom_left, false, true},
                                  {anchor_bottom_right, true, true},
                                  {anchor_top_left, false, false},
                                  {anchor_top_right, true, false}};
    for (const anchor& one : anchors)
        if (options & one.option)
            at = {one.right ? client.cx - size.cx - m_x : m_x, one.bottom ? client.cy - size.cy - m_y : m_y};
    if (m_x == centered_position)
        at.x = middle.x;
    if (m_y == centered_position)
        at.y = middle.y;
    return at;
}

drawing_kind SetupImage::KindOf(uint32_t options) const
{
    for (const option_kind& row : option_kinds)
        if (options & row.option && (row.kind != drawing_kind::transparent || m_bitmap))
            return row.kind;
    const auto effect = static_cast<std::size_t>(m_paint.effect - 1);
    return effect < std::size(effect_kinds) && !m_effect_played ? effect_kinds[effect] : drawing_kind::plain;
}

bool SetupImage::Draw(HDC target, SIZE client, uint32_t more_options)
{
    const uint32_t options = m_options | more_options;
    const SIZE size = TargetSize(options);
    if (m_gdiplus) {
        m_gdiplus.Draw(target, PlaceOf(size, client, options), size);
        return true;
    }
    if (!m_loaded)
        return true;
    if (!m_bitmap && !m_metafile)
        return false;
    m_paint.depth = DepthOf(target);
    const saved_context saved(target);
    const drawing_kind kind = KindOf(options);
    if (kind == drawing_kind::full && m_bitmap && !m_widened)
        Widen(target, client);

    const bitmap_context source(target, m_bitmap.get());
    if (m_paint.uses_palette()) {
        Realize(target);
        Realize(source.get());
    }
    picture_stage stage;
    stage.target = target;
    stage.client = client;
    stage.at = PlaceOf(size, client, options);
    stage.size = size;
    stage.source = source.get();
    stage.source_size = {m_width, m_height};
    stage.metafile = m_metafile.get();
    stage.bounds = m_bounds;
    constexpr COLORREF nearest_of_palette = 0x2000000;
    stage.left_out = m_transparent | (m_paint.uses_palette() ? nearest_of_palette : 0);
    DrawAs(kind, stage);
    return true;
}

void SetupImage::Realize(HDC context)
{
    m_paint.realizing = true;
    late::select_palette(context, m_paint.palette, FALSE);
    late::realize_palette(context);
    m_paint.realizing = false;
}

void SetupImage::DrawAs(drawing_kind kind, picture_stage stage)
{
    switch (kind) {
    case drawing_kind::transparent:
        DrawTransparent(stage);
        m_paint.transparent = PaintInfo::default_transparent;
        break;
    case drawing_kind::tile:
        DrawTiles(stage);
        break;
    case drawing_kind::full:
        stage.DrawAt({0, 0}, m_metafile ? stage.client : stage.source_size);
        break;
    case drawing_kind::stretch:
        stage.DrawAt({0, 0}, stage.client);
        break;
    case drawing_kind::plain:
        stage.DrawPlain();
        break;
    default:
        DrawEffect(kind, stage);
    }
}

// A metafile appears without an effect. A bitmap takes its size first, so that the effect only copies.
void SetupImage::DrawEffect(drawing_kind kind, picture_stage stage)
{
    m_effect_played = true;
    if (m_metafile) {
        stage.DrawPlain();
        return;
    }
    std::optional<canvas> sized;
    if (stage.size.cx != stage.source_size.cx || stage.size.cy != stage.source_size.cy) {
        sized.emplace(stage.target, stage.size);
        if (!*sized)
            return;
        picture_stage copy = stage;
        copy.target = sized->get();
        copy.DrawAt({0, 0}, stage.size);
        stage.source = sized->get();
        stage.source_size = stage.size;
    }
    for (const kind_effect& row : effects)
        if (row.kind == kind && !row.draw(stage))
            return;
    stage.DrawPlain();
}

// The picture becomes one of the client's size, in the middle of the target's background colour.
void SetupImage::Widen(HDC target, SIZE client)
{
    m_widened = true;
    unique_bitmap wide(
        late::create_compatible_bitmap(target, static_cast<int>(client.cx), static_cast<int>(client.cy)));
    {
        const bitmap_context context(target, wide.get());
        const bitmap_context picture(target, m_bitmap.get());
        if (!context || !picture)
            return;
        const unique_brush background(late::create_solid_brush(late::get_background(target)));
        const RECT all{0, 0, client.cx, client.cy};
        late::fill_rect(context.get(), &all, background.get());
        late::bit_blt(context.get(), (client.cx - m_width) / 2, (client.cy - m_height) / 2, m_width, m_height,
                      picture.get(), 0, 0, DWORD{SRCCOPY});
    }
    m_bitmap = std::move(wide);
    m_width = static_cast<int32_t>(client.cx);
    m_height = static_cast<int32_t>(client.cy);
}
