// Effects with which a picture appears, once. Each ends on the whole picture.
#include <algorithm>
#include <random>

#include "picture_stage.h"

namespace vh {

namespace {

constexpr int steps = 19;
constexpr DWORD dissolve_operation = 0x00CA0749; // the picture where the pattern is white, what was there elsewhere
constexpr DWORD zoom_ms = 25;
constexpr DWORD slide_ms = 15;

// The script's thread waits here, without serving messages.
void WaitUntil(DWORD start, DWORD duration)
{
    while (GetTickCount() - start < duration)
        YieldProcessor();
}

// A window onto the picture that grows from its middle, on one axis or both.
bool DrawGrowing(const picture_stage& stage, bool grows_down)
{
    const LONG middle_x = stage.at.x + stage.size.cx / 2;
    const LONG middle_y = stage.at.y + stage.size.cy / 2;
    for (int step = 1; step <= steps; ++step) {
        const DWORD start = GetTickCount();
        const LONG half_width = step * stage.size.cx / 40;
        const LONG half_height = step * stage.size.cy / 40;
        const saved_context saved(stage.target);
        late::intersect_clip(stage.target, middle_x - half_width, grows_down ? middle_y - half_height : stage.at.y,
                             middle_x + half_width, grows_down ? middle_y + half_height : stage.at.y + stage.size.cy);
        if (!stage.DrawPlain())
            break;
        WaitUntil(start, zoom_ms);
    }
    return true;
}

// Strips that start at both ends and leave every other place to those that come from the other side.
template <class Strip>
bool DrawStrips(const picture_stage& stage, LONG length, LONG thickness, const Strip& strip)
{
    for (LONG at = 0; at < length; at += 2 * thickness) {
        const DWORD start = GetTickCount();
        if (!stage.CopyPart(strip(at)) || !stage.CopyPart(strip(length - thickness - at)))
            return false;
        WaitUntil(start, slide_ms);
    }
    return true;
}

// A frame one pixel wide, so far inside the picture.
bool DrawFrame(const picture_stage& stage, LONG inset)
{
    const RECT outer{inset, inset, stage.size.cx - inset, stage.size.cy - inset};
    if (outer.left >= outer.right || outer.top >= outer.bottom)
        return true;
    return stage.CopyPart({outer.left, outer.top, outer.right, outer.top + 1}) &&
           stage.CopyPart({outer.left, outer.bottom - 1, outer.right, outer.bottom}) &&
           stage.CopyPart({outer.left, outer.top, outer.left + 1, outer.bottom}) &&
           stage.CopyPart({outer.right - 1, outer.top, outer.right, outer.bottom});
}

} // namespace

bool DrawDissolve(const picture_stage& stage)
{
    // Rows of a monochrome bitmap take 16 bits.
    WORD pattern[8] = {};
    std::minstd_rand random(GetTickCount());
    for (int step = 1; step <= steps; ++step) {
        for (int pixel = 0; pixel < step / 5 + 3; ++pixel) {
            const auto place = static_cast<unsigned>(random() >> 8 & 63);
            pattern[place & 7] = static_cast<WORD>(pattern[place & 7] | 0x80 >> place / 8);
        }
        const unique_bitmap bitmap(late::create_bitmap(8, 8, 1u, 1u, &pattern));
        const unique_brush brush(late::create_pattern_brush(bitmap.get()));
        if (!brush)
            break;
        const saved_context saved(stage.target);
        late::set_background(stage.target, RGB(255, 255, 255));
        late::set_text_color(stage.target, RGB(0, 0, 0));
        late::select_object(stage.target, HGDIOBJ{brush.get()});
        if (!late::bit_blt(stage.target, stage.at.x, stage.at.y, stage.size.cx, stage.size.cy, stage.source, 0, 0,
                           dissolve_operation))
            break;
    }
    return true;
}

bool DrawZoom(const picture_stage& stage) { return DrawGrowing(stage, true); }
bool DrawZoomAcross(const picture_stage& stage) { return DrawGrowing(stage, false); }

bool DrawBlindsAcross(const picture_stage& stage)
{
    constexpr LONG width = 4;
    return DrawStrips(stage, stage.size.cx, width, [&](LONG x) { return RECT{x, 0, x + width, stage.size.cy}; });
}

bool DrawBlindsDown(const picture_stage& stage)
{
    constexpr LONG height = 2;
    return DrawStrips(stage, stage.size.cy, height, [&](LONG y) { return RECT{0, y, stage.size.cx, y + height}; });
}

bool DrawFrames(const picture_stage& stage)
{
    const LONG middle = (std::min(stage.size.cx, stage.size.cy) - 1) / 2;
    for (LONG inset = 0; inset <= middle; inset += 2) {
        const DWORD start = GetTickCount();
        if (!DrawFrame(stage, inset) || !DrawFrame(stage, middle - inset))
            break;
        WaitUntil(start, slide_ms);
    }
    return true;
}

} // namespace vh
