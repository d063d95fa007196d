// The engine's main window: a frame over the work area with a painted background, and what lies on it.
#pragma once

#include <string>
#include <vector>

#include "gdi.h"

namespace vh::engine {

class Screen;

// What lies on the main window; whoever it belongs to takes it off again.
class PaintedThing {
public:
    virtual void Paint(HDC to, const RECT& client) const = 0;
    // Lies above those that don't.
    virtual bool OnTop() const { return false; }
    // One step of coming into view; false when it is there whole.
    virtual bool Advance() { return false; }

protected:
    ~PaintedThing() = default;
};

class MainWindow {
public:
    MainWindow(Screen& screen, const std::wstring& caption);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    ~MainWindow();

    HWND handle() const { return m_window; }
    void SetBackground(COLORREF color, bool gradient);
    COLORREF background() const { return m_color; }
    void SetWaitCursor(bool on);

    // In the order in which they came; a thing that is there already stays where it is.
    void Add(PaintedThing& thing);
    void Remove(PaintedThing& thing);
    void Repaint() const;
    // Begins to let things come into view step by step.
    void Animate() const;

    LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    void Paint(HDC to) const;
    void PaintBackground(HDC to, const RECT& client) const;
    void AdvanceAll() const;

    Screen& m_screen;
    HWND m_window = nullptr;
    COLORREF m_color = RGB(0, 0, 128);
    bool m_gradient = true;
    bool m_waiting = false;
    std::vector<PaintedThing*> m_things;
};

} // namespace vh::engine
