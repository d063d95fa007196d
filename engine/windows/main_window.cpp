#include "main_window.h"

#include <algorithm>

#include "routed_window.h"
#include "screen.h"

namespace vh::engine {

namespace {

constexpr UINT_PTR animation_timer = 1;
constexpr UINT animation_ms = 15;

} // namespace

MainWindow::MainWindow(Screen& screen, const std::wstring& caption) : m_screen(screen)
{
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    MakeRoutedWindow(*this, L"VHEngineWindow", 0,
                     WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN, area, nullptr,
                     caption.c_str());
    ShowWindow(m_window, SW_SHOWNORMAL);
    UpdateWindow(m_window);
}

MainWindow::~MainWindow() { EndWindow(m_window); }

void MainWindow::SetBackground(COLORREF color, bool gradient)
{
    m_color = color & 0xFFFFFF;
    m_gradient = gradient;
    Repaint();
}

void MainWindow::SetWaitCursor(bool on)
{
    m_waiting = on;
    SetCursor(LoadCursorW(nullptr, on ? IDC_WAIT : IDC_ARROW));
}

void MainWindow::Add(PaintedThing& thing)
{
    if (std::find(m_things.begin(), m_things.end(), &thing) == m_things.end())
        m_things.push_back(&thing);
    Repaint();
}

void MainWindow::Remove(PaintedThing& thing)
{
    if (std::erase(m_things, &thing))
        Repaint();
}

// At once: a script that works shows no message loop to the window.
// Null would stand for the desktop.
void MainWindow::Repaint() const
{
    if (m_window)
        RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void MainWindow::Animate() const
{
    if (m_window)
        SetTimer(m_window, animation_timer, animation_ms, nullptr);
}

void MainWindow::AdvanceAll() const
{
    bool more = false;
    for (PaintedThing* thing : m_things)
        more = thing->Advance() || more;
    if (!more)
        KillTimer(m_window, animation_timer);
    Repaint();
}

LRESULT MainWindow::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
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
    case WM_PAINT:
        Paint(Painting(window).get());
        return 0;
    case WM_TIMER:
        AdvanceAll();
        return 0;
    case WM_SETCURSOR:
        if (!m_waiting || LOWORD(lParam) != HTCLIENT)
            break;
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        return TRUE;
    case WM_CLOSE:
        // It goes with the run; a person who closes it wants that to end.
        m_screen.AskToCancel();
        return 0;
    default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// Everything goes to a bitmap first, so that nothing flickers.
void MainWindow::Paint(HDC to) const
{
    RECT client{};
    GetClientRect(m_window, &client);
    const unique_bitmap drawn(CreateCompatibleBitmap(to, std::max(client.right, 1L), std::max(client.bottom, 1L)));
    const unique_memory_context memory(CreateCompatibleDC(to));
    const Selected selected(memory.get(), drawn.get());
    PaintBackground(memory.get(), client);
    for (const bool top : {false, true})
        for (const PaintedThing* thing : m_things)
            if (thing->OnTop() == top)
                thing->Paint(memory.get(), client);
    BitBlt(to, 0, 0, client.right, client.bottom, memory.get(), 0, 0, SRCCOPY);
}

void MainWindow::PaintBackground(HDC to, const RECT& client) const
{
    constexpr int bands = 64;
    const Selected brush(to, GetStockObject(DC_BRUSH));
    const int count = m_gradient ? bands : 1;
    for (int i = 0; i < count; ++i) {
        const auto faded = [&](int part) { return part * (count - i) / count; };
        SetDCBrushColor(to, RGB(faded(GetRValue(m_color)), faded(GetGValue(m_color)), faded(GetBValue(m_color))));
        const int top = client.bottom * i / count;
        PatBlt(to, 0, top, client.right, client.bottom * (i + 1) / count - top, PATCOPY);
    }
}

} // namespace vh::engine
