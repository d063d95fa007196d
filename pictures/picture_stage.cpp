#include "picture_stage.h"

#include <algorithm>

namespace vh {

bool picture_stage::DrawAt(POINT place, SIZE extent) const
{
    if (metafile)
        return PlayAt(place, extent);
    if (extent.cx == source_size.cx && extent.cy == source_size.cy)
        return late::bit_blt(target, place.x, place.y, extent.cx, extent.cy, source, 0, 0, DWORD{SRCCOPY}) != FALSE;
    late::set_stretch_mode(target, HALFTONE);
    return late::stretch_blt(target, place.x, place.y, extent.cx, extent.cy, source, 0, 0, source_size.cx,
                             source_size.cy, DWORD{SRCCOPY}) != FALSE;
}

bool picture_stage::PlayAt(POINT place, SIZE extent) const
{
    const saved_context saved(target);
    late::set_map_mode(target, MM_ANISOTROPIC);
    late::set_window_origin(target, bounds.left, bounds.top, nullptr);
    late::set_window_extent(target, bounds.right - bounds.left, bounds.bottom - bounds.top, nullptr);
    late::set_viewport_origin(target, place.x, place.y, nullptr);
    late::set_viewport_extent(target, extent.cx, extent.cy, nullptr);
    return late::play_metafile(target, metafile) != FALSE;
}

bool picture_stage::CopyPart(const RECT& part) const
{
    const LONG left = std::max(part.left, LONG{0});
    const LONG top = std::max(part.top, LONG{0});
    const LONG width = std::min(part.right, size.cx) - left;
    const LONG height = std::min(part.bottom, size.cy) - top;
    return width <= 0 || height <= 0 ||
           late::bit_blt(target, at.x + left, at.y + top, width, height, source, left, top, DWORD{SRCCOPY});
}

bool DrawTiles(const picture_stage& stage)
{
    const SIZE tile = stage.source_size;
    if (tile.cx <= 0 || tile.cy <= 0)
        return true;
    for (LONG row = 0; row < stage.client.cy / tile.cy + 1; ++row)
        for (LONG column = 0; column < stage.client.cx / tile.cx + 1; ++column)
            stage.DrawAt({column * tile.cx, row * tile.cy}, tile);
    return true;
}

bool DrawTransparent(const picture_stage& stage)
{
    const SIZE size = stage.size;
    const canvas picture(stage.target, size);
    const unique_bitmap mask_bitmap(
        late::create_bitmap(static_cast<int>(size.cx), static_cast<int>(size.cy), 1u, 1u, nullptr));
    const bitmap_context mask(stage.target, mask_bitmap.get());
    if (!picture || !mask)
        return false;
    // Blended pixels would no longer have the colour that is left out.
    late::set_stretch_mode(picture.get(), COLORONCOLOR);
    late::stretch_blt(picture.get(), 0, 0, size.cx, size.cy, stage.source, 0, 0, stage.source_size.cx,
                      stage.source_size.cy, DWORD{SRCCOPY});
    // The colour left out becomes 1 in the mask, every other one 0.
    late::set_background(picture.get(), stage.left_out);
    late::bit_blt(mask.get(), 0, 0, size.cx, size.cy, picture.get(), 0, 0, DWORD{SRCCOPY});

    constexpr COLORREF black = RGB(0, 0, 0);
    constexpr COLORREF white = RGB(255, 255, 255);
    const saved_context saved(stage.target);
    // Black where the picture goes on the target, and black where it stays away in the picture.
    late::set_background(stage.target, white);
    late::set_text_color(stage.target, black);
    late::bit_blt(stage.target, stage.at.x, stage.at.y, size.cx, size.cy, mask.get(), 0, 0, DWORD{SRCAND});
    late::set_background(picture.get(), black);
    late::set_text_color(picture.get(), white);
    late::bit_blt(picture.get(), 0, 0, size.cx, size.cy, mask.get(), 0, 0, DWORD{SRCAND});
    return late::bit_blt(stage.target, stage.at.x, stage.at.y, size.cx, size.cy, picture.get(), 0, 0,
                         DWORD{SRCPAINT}) != FALSE;
}

} // namespace vh
