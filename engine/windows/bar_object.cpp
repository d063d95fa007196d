#include "bar_object.h"

#include <commctrl.h>

#include "gdi.h"

namespace vh::engine {

HRESULT BarObject::SetWidth(long width)
{
    return Call("ISetupProgressBar.SetWidth", width)([&] { return Resize(m_width, width); });
}

HRESULT BarObject::SetHeight(long height)
{
    return Call("ISetupProgressBar.SetHeight", height)([&] { return Resize(m_height, height); });
}

HRESULT BarObject::Resize(long& side, long value)
{
    if (value < 0)
        return E_INVALIDARG;
    side = value;
    SetWindowPos(m_bar, nullptr, 0, 0, m_width ? m_width : m_own.cx, m_height ? m_height : m_own.cy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return S_OK;
}

void BarObject::Attach(HWND window, HWND placeholder)
{
    if (IsWindow(m_bar))
        DestroyWindow(m_bar);
    m_bar = nullptr;
    if (!window || !placeholder)
        return;
    RECT place{};
    GetWindowRect(placeholder, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    m_own = SizeOf(place);
    ShowWindow(placeholder, SW_HIDE);
    m_bar = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD | WS_VISIBLE | PBS_SMOOTH, place.left, place.top,
                            m_width ? m_width : m_own.cx, m_height ? m_height : m_own.cy, window, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
    // Behind the placeholder, so that its name goes for it too.
    SetWindowPos(m_bar, placeholder, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void BarObject::Move(int position) { SendMessageW(m_bar, PBM_SETPOS, static_cast<WPARAM>(position), 0); }

} // namespace vh::engine
