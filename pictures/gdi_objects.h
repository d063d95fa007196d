// Owners of drawing objects.
#pragma once

#include "../scriptdata/unique_gdi.h"
#include "late_drawing.h"

namespace vh {

using unique_palette = unique<gdi_traits<HPALETTE>>;

struct metafile_traits {
    using value_type = HMETAFILE;
    static HMETAFILE none() { return nullptr; }
    static void close(HMETAFILE metafile) { late::delete_metafile(metafile); }
};
using unique_metafile = unique<metafile_traits>;

struct memory_context_traits {
    using value_type = HDC;
    static HDC none() { return nullptr; }
    static void close(HDC context) { late::delete_dc(context); }
};
using unique_memory_context = unique<memory_context_traits>;

struct screen_context_traits {
    using value_type = HDC;
    static HDC none() { return nullptr; }
    static void close(HDC screen) { late::release_dc(HWND{nullptr}, screen); }
};
// The context of the whole screen.
using unique_screen_context = unique<screen_context_traits>;

// The state of a context, put back at the end.
class saved_context {
public:
    explicit saved_context(HDC context) : m_context(context), m_level(late::save_dc(context)) {}
    saved_context(const saved_context&) = delete;
    saved_context& operator=(const saved_context&) = delete;
    ~saved_context() { late::restore_dc(m_context, m_level); }

private:
    HDC m_context;
    int m_level;
};

// A memory context like `model` with a bitmap selected, which the context does not own.
class bitmap_context {
public:
    bitmap_context(HDC model, HBITMAP bitmap) : m_context(late::create_compatible_dc(model))
    {
        if (m_context && bitmap)
            m_before = late::select_object(m_context.get(), HGDIOBJ{bitmap});
    }
    bitmap_context(const bitmap_context&) = delete;
    bitmap_context& operator=(const bitmap_context&) = delete;
    ~bitmap_context()
    {
        if (m_before)
            late::select_object(m_context.get(), m_before);
    }

    HDC get() const { return m_context.get(); }
    // False when context or bitmap could not be had.
    explicit operator bool() const { return m_before != nullptr; }

private:
    unique_memory_context m_context;
    HGDIOBJ m_before = nullptr;
};

// A new bitmap like `model` in a context of its own.
class canvas {
public:
    canvas(HDC model, SIZE size)
        : m_bitmap(late::create_compatible_bitmap(model, static_cast<int>(size.cx), static_cast<int>(size.cy))),
          m_context(model, m_bitmap.get())
    {
    }

    HDC get() const { return m_context.get(); }
    explicit operator bool() const { return static_cast<bool>(m_context); }

protected:
    unique_bitmap m_bitmap;
    bitmap_context m_context;
};

} // namespace vh
