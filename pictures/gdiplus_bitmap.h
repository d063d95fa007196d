// A picture that GDI+ holds: PNG, JPEG and what else it reads.
#pragma once

#include <string_view>

#include "gdi_objects.h"

namespace vh {

// A GpBitmap, whose type stays with those who call GDI+.
struct gdiplus_bitmap_traits {
    using value_type = void*;
    static value_type none() { return nullptr; }
    static void close(value_type bitmap);
};

class gdiplus_bitmap {
public:
    gdiplus_bitmap() = default;
    // Takes over a GpBitmap; null makes an empty one.
    explicit gdiplus_bitmap(void* owned) : m_bitmap(owned) {}
    // An empty one when the picture can't be had.
    static gdiplus_bitmap FromFile(const wchar_t* path);
    // Of the type "PNG", else a bitmap.
    static gdiplus_bitmap FromResource(HMODULE module, uint32_t number);

    explicit operator bool() const { return static_cast<bool>(m_bitmap); }
    SIZE size() const;
    bool Draw(HDC target, POINT at, SIZE size) const;
    // Redrawn at another size.
    gdiplus_bitmap Resized(SIZE size) const;
    unique_icon Icon() const;
    // "png", "jpeg" and so on; "unknown" for others.
    const char* Format() const;
    // A GpBitmap, for what only callers of GDI+ ask of it.
    void* get() const { return m_bitmap.get(); }

private:
    unique<gdiplus_bitmap_traits> m_bitmap;
};

// Starts GDI+ once for the process. False where it is missing.
bool StartGdiplus();

} // namespace vh
