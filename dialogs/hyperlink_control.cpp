#include "hyperlink_control.h"

#include <windows.h>

#include <commctrl.h>

#include "../pictures/placement.h"
#include "late_dialogs.h"

CHyperlinkControl::~CHyperlinkControl()
{
    if (m_link && vh::late::is_window(m_link))
        vh::late::destroy_window(m_link);
}

bool CHyperlinkControl::Create()
{
    const HWND parent = vh::late::get_parent(window());
    const RECT place = vh::PlaceIn(parent, window());
    const HWND before = vh::late::get_window(window(), UINT{GW_HWNDPREV});
    vh::late::destroy_window(window());
    constexpr DWORD child_that_shows = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    m_link = vh::late::create_window_ex(
        DWORD{WS_EX_TRANSPARENT}, WC_LINK, L"", child_that_shows, static_cast<int>(place.left),
        static_cast<int>(place.top), vh::WidthOf(place), vh::HeightOf(place), parent,
        reinterpret_cast<HMENU>(static_cast<intptr_t>(id())), HINSTANCE{nullptr}, static_cast<void*>(nullptr));
    // The tab key comes to it where it came to the control before.
    vh::late::set_window_pos(m_link, before ? before : HWND_TOP, 0, 0, 0, 0,
                             UINT{SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE});
    const LRESULT font = vh::late::send_message(parent, UINT{WM_GETFONT}, WPARAM{0}, LPARAM{0});
    vh::late::send_message(m_link, UINT{WM_SETFONT}, static_cast<WPARAM>(font), LPARAM{TRUE});
    return true;
}

void CHyperlinkControl::SetContent(const stringx& text) { vh::late::set_text(m_link, text.c_str()); }
