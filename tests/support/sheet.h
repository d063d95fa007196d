// A piece of memory to draw on, whose pixels can be read.
#pragma once

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
    Sheet(int width, int height, COLORREF color) : m_size{width, height}, m_context(CreateCompatibleDC(nullptr))
    {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        m_bitmap = CreateDIBSection(m_context, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_pixels = static_cast<const DWORD*>(bits);
        m_before = SelectObject(m_context, m_bitmap);
        const HBRUSH brush = CreateSolidBrush(color);
        const RECT all{0, 0, width, height};
        FillRect(m_context, &all, brush);
        DeleteObject(brush);
    }
    ~Sheet()
    {
        SelectObject(m_context, m_before);
        DeleteObject(m_bitmap);
        DeleteDC(m_context);
    }

    HDC context() const { return m_context; }
    SIZE size() const { return m_size; }
    // 0xRRGGBB
    DWORD Pixel(int x, int y) const
    {
        GdiFlush();
        return m_pixels[y * m_size.cx + x] & 0xFFFFFF;
    }

private:
    SIZE m_size;
    HDC m_context;
    HBITMAP m_bitmap;
    HGDIOBJ m_before;
    const DWORD* m_pixels;
};

} // namespace vh::test
