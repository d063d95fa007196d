// A piece of memory to draw on, whose pixels can be read.
#pragma once

#include "../../pictures/gdi_objects.h"
#include "test.h"

namespace vh::test {

// "RRGGBB"
inline std::string ColorText(DWORD color)
{
    char text[8];
    std::snprintf(text, sizeof(text), "%06lX", color & 0xFFFFFF);
    return text;
}

class Sheet : Pinned {
public:
    Sheet(int width, int height, COLORREF color) : m_size{width, height}
    {
        BITMAPINFO info{{sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        void* bits = nullptr;
        m_bitmap.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        m_pixels = static_cast<const DWORD*>(bits);
        m_context.emplace(nullptr, m_bitmap.get());
        const unique_brush brush(CreateSolidBrush(color));
        const RECT all{0, 0, width, height};
        FillRect(context(), &all, brush.get());
    }

    HDC context() const { return m_context->get(); }
    SIZE size() const { return m_size; }
    // 0xRRGGBB
    DWORD Pixel(int x, int y) const
    {
        GdiFlush();
        return m_pixels[y * m_size.cx + x] & 0xFFFFFF;
    }

private:
    SIZE m_size;
    unique_bitmap m_bitmap;
    const DWORD* m_pixels;
    std::optional<bitmap_context> m_context;
};

} // namespace vh::test
