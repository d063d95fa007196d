#include "window_image.h"

#include "../pictures/placement.h"
#include "monitor_scale.h"

using namespace vh;

HRESULT CSetupWindowImage::Create(const WindowImageRequest& request)
{
    Clear();
    if (!late::is_window(request.owner))
        return E_INVALIDARG;
    m_transparent = request.transparent;
    m_owner = request.owner;
    if (!CreateWindowIn(m_owner, WS_CHILD | WS_CLIPSIBLINGS, WS_EX_TRANSPARENT))
        return E_FAIL;
    PlaceBehind(request);
    m_picture = std::make_unique<SetupImage>(window(), request.effect, request.palette);
    if (!Load(request)) {
        Clear();
        return E_INVALIDARG;
    }

    m_options = request.options;
    m_picture->SetOptions(m_options);
    ScaleForDisplay(request.display_size);
    const SIZE size = m_picture->TargetSize();
    MoveTo({0, 0, size.cx, size.cy});
    return S_OK;
}

void CSetupWindowImage::Clear()
{
    DestroyWindow();
    m_picture.reset();
    m_place = {};
    m_visible = false;
}

bool CSetupWindowImage::Load(const WindowImageRequest& request)
{
    const bool from_file = request.file && *request.file;
    if (from_file == (request.library != nullptr))
        return false;
    if (request.by_gdiplus)
        return from_file ? m_picture->LoadByGdiplus(request.file)
                         : m_picture->LoadByGdiplus(request.library, request.number);
    return from_file ? m_picture->LoadFromFile(request.file, request.number)
                     : m_picture->LoadFromLibrary(request.library, request.number);
}

void CSetupWindowImage::PlaceBehind(const WindowImageRequest& request) const
{
    HWND before = request.insert_after;
    if (!before)
        return;
    if (request.position == WindowImageRequest::before_it)
        before = late::get_window(before, UINT{GW_HWNDPREV});
    late::set_window_pos(window(), before ? before : HWND_TOP, 0, 0, 0, 0,
                         UINT{SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE});
}

// A picture for a larger scale than the display's is drawn smaller; one for a smaller scale keeps its size.
void CSetupWindowImage::ScaleForDisplay(int32_t display_size)
{
    const int scale = display_size > 0 ? MonitorScale() : display_size;
    m_scaled = scale != display_size;
    if (!m_scaled)
        return;
    const SIZE own = m_picture->size();
    if (scale < display_size)
        m_picture->SetSize(MulDiv(own.cx, scale, display_size), MulDiv(own.cy, scale, display_size));
    else
        m_picture->SetSize(own.cx, own.cy);
    m_options |= option_fixed_size;
    m_picture->SetOptions(m_options);
}

HRESULT CSetupWindowImage::GetWidth(int32_t* width) const
{
    if (!width)
        return E_POINTER;
    if (!m_picture)
        return E_FAIL;
    *width = m_picture->TargetSize().cx;
    return S_OK;
}

HRESULT CSetupWindowImage::GetHeight(int32_t* height) const
{
    if (!height)
        return E_POINTER;
    if (!m_picture)
        return E_FAIL;
    *height = m_picture->TargetSize().cy;
    return S_OK;
}

HRESULT CSetupWindowImage::MoveTo(const RECT& place)
{
    const bool same = place.left == m_place.left && place.top == m_place.top && place.right == m_place.right &&
                      place.bottom == m_place.bottom;
    m_place = place;
    if (!same)
        late::move_window(window(), place.left, place.top, WidthOf(place), HeightOf(place), m_visible);
    return S_OK;
}

HRESULT CSetupWindowImage::SetLeft(int32_t left)
{
    return MoveTo({left, m_place.top, left + WidthOf(m_place), m_place.bottom});
}

HRESULT CSetupWindowImage::SetTop(int32_t top)
{
    return MoveTo({m_place.left, top, m_place.right, top + HeightOf(m_place)});
}

HRESULT CSetupWindowImage::SetWidth(int32_t width)
{
    return MoveTo({m_place.left, m_place.top, m_place.left + width, m_place.bottom});
}

HRESULT CSetupWindowImage::SetHeight(int32_t height)
{
    return MoveTo({m_place.left, m_place.top, m_place.right, m_place.top + height});
}

HRESULT CSetupWindowImage::SetOptions(uint32_t options)
{
    m_options = options | (m_scaled ? option_fixed_size : 0u);
    if (m_picture)
        m_picture->SetOptions(m_options);
    Repaint();
    return S_OK;
}

HRESULT CSetupWindowImage::SetVisible(bool visible)
{
    m_visible = visible;
    late::show_window(window(), visible ? SW_SHOW : SW_HIDE);
    if (visible)
        Repaint();
    return S_OK;
}

HRESULT CSetupWindowImage::SetBackground(COLORREF color)
{
    m_background = color;
    Repaint();
    return S_OK;
}

void CSetupWindowImage::Repaint() const
{
    if (window())
        late::invalidate(window(), nullptr, TRUE);
}

LRESULT CSetupWindowImage::WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message != WM_PAINT)
        return CVHWindowImpl::WindowProc(message, wparam, lparam);
    Paint();
    return 0;
}

void CSetupWindowImage::Paint()
{
    PAINTSTRUCT paint{};
    const HDC context = late::begin_paint(window(), &paint);
    RECT client{};
    late::get_client_rect(window(), &client);
    if (m_background != no_color) {
        const unique_brush brush(late::create_solid_brush(m_background));
        late::fill_rect(context, &client, brush.get());
        late::set_background(context, m_background);
    }
    if (m_picture)
        m_picture->Draw(context, {client.right, client.bottom}, m_transparent ? option_transparent : 0u);
    RepaintControls();
    late::end_paint(window(), &paint);
}

void CSetupWindowImage::RepaintControls() const
{
    for (HWND child = late::get_window(m_owner, UINT{GW_CHILD}); child;
         child = late::get_window(child, UINT{GW_HWNDNEXT})) {
        if (child == window() || !late::is_visible(child))
            continue;
        const RECT place = PlaceIn(m_owner, child);
        if (place.left < m_place.right && m_place.left < place.right && place.top < m_place.bottom &&
            m_place.top < place.bottom)
            late::invalidate(child, nullptr, TRUE);
    }
}
