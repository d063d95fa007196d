// Holders of drawing: a memory context, and what is selected into one for a while.
#pragma once

#include "../../scriptdata/unique_gdi.h"

namespace vh::engine {

struct memory_context_traits {
    using value_type = HDC;
    static HDC none() { return nullptr; }
    static void close(HDC context) { DeleteDC(context); }
};
using unique_memory_context = unique<memory_context_traits>;
using unique_region = unique<gdi_traits<HRGN>>;

class Selected {
public:
    Selected(HDC context, HGDIOBJ object) : m_context(context), m_before(SelectObject(context, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(m_context, m_before); }

private:
    HDC m_context;
    HGDIOBJ m_before;
};

// The context of a window, or of the screen; `whole` takes the frame in.
class WindowContext {
public:
    explicit WindowContext(HWND window, bool whole = false)
        : m_window(window), m_context(whole ? GetWindowDC(window) : GetDC(window))
    {
    }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    ~WindowContext() { ReleaseDC(m_window, m_context); }
    HDC get() const { return m_context; }

private:
    HWND m_window;
    HDC m_context;
};

// A painting of a window in its answer to WM_PAINT.
class Painting {
public:
    explicit Painting(HWND window) : m_window(window), m_context(BeginPaint(window, &m_paint)) {}
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    ~Painting() { EndPaint(m_window, &m_paint); }
    HDC get() const { return m_context; }

private:
    HWND m_window;
    PAINTSTRUCT m_paint{};
    HDC m_context;
};

inline SIZE SizeOf(const RECT& place) { return {place.right - place.left, place.bottom - place.top}; }

inline SIZE SizeOf(HBITMAP bitmap)
{
    BITMAP facts{};
    GetObjectW(bitmap, sizeof(facts), &facts);
    return {facts.bmWidth, facts.bmHeight};
}

} // namespace vh::engine
