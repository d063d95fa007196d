#include "picture_cache.h"

#include <utility>

#include "picture.h"
#include "routed_window.h"

namespace vh::engine {

void PictureCache::Keep(HWND dialog)
{
    if (!m_on || !IsWindowVisible(dialog) || IsIconic(dialog))
        return;
    Drop();
    RECT place{};
    GetWindowRect(dialog, &place);
    const SIZE size = SizeOf(place);
    {
        const WindowContext from(dialog, true);
        m_picture.reset(CreateCompatibleBitmap(from.get(), size.cx, size.cy));
        const unique_memory_context memory(CreateCompatibleDC(from.get()));
        const Selected selected(memory.get(), m_picture.get());
        BitBlt(memory.get(), 0, 0, size.cx, size.cy, from.get(), 0, 0, SRCCOPY);
    }
    MakeRoutedWindow(*this, L"VHEnginePicture", WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW, WS_POPUP | WS_DISABLED, place,
                     GetWindow(dialog, GW_OWNER));
    SetWindowPos(m_window, dialog, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void PictureCache::Drop()
{
    EndWindow(std::exchange(m_window, nullptr));
    m_picture.reset();
}

LRESULT PictureCache::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_NCCREATE:
        m_window = window;
        break;
    case WM_NCDESTROY:
        m_window = nullptr;
        break;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT: {
        RECT client{};
        GetClientRect(window, &client);
        DrawPicture(Painting(window).get(), client, m_picture.get());
        return 0;
    }
    default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace vh::engine
