// Pixels of windows, and pictures of them for people to look at.
#pragma once

#include "../../tools/ui/screen.h"
#include "test.h"

namespace vh::test {

inline COLORREF PixelOf(HWND window, long x, long y)
{
    const HDC context = GetDC(window);
    const COLORREF color = GetPixel(context, static_cast<int>(x), static_cast<int>(y));
    ReleaseDC(window, context);
    return color;
}

// How many pixels of a place have the color.
inline long CountPixels(HWND window, const RECT& place, COLORREF color)
{
    const HDC context = GetDC(window);
    long count = 0;
    for (long y = place.top; y < place.bottom; ++y)
        for (long x = place.left; x < place.right; ++x)
            count += GetPixel(context, static_cast<int>(x), static_cast<int>(y)) == color;
    ReleaseDC(window, context);
    return count;
}

inline void Repaint(HWND window)
{
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

inline COLORREF RepaintedPixel(HWND window, long x, long y)
{
    Repaint(window);
    return PixelOf(window, x, y);
}

inline void KeepPicture(HWND window, const std::wstring& name)
{
    Repaint(window);
    ui::Keep(ui::PictureOf(window), name);
}

} // namespace vh::test
