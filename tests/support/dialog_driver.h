// Drives a modal dialog from the inside of its own message loop: a timer of the thread runs one step after the other.
#pragma once

#include "../../tools/ui/screen.h"
#include "test.h"

namespace vh::test {

class DialogDriver : Pinned {
public:
    // A step is asked again until it answers true; it must not wait itself, so buttons are pressed by posting.
    using Step = std::function<bool()>;

    explicit DialogDriver(std::vector<Step> steps) : m_steps(std::move(steps)), m_deadline(GetTickCount64() + 30000)
    {
        s_current = this;
        m_timer = SetTimer(nullptr, 0, 10, &OnTimer);
    }
    ~DialogDriver()
    {
        KillTimer(nullptr, m_timer);
        s_current = nullptr;
        EXPECT_EQ(m_next, m_steps.size()) << "steps that did not come to pass";
    }

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        if (s_current)
            s_current->Tick();
    }
    static BOOL CALLBACK Cancel(HWND window, LPARAM) { return PostMessageW(window, WM_CLOSE, 0, 0); }

    void Tick()
    {
        if (m_busy)
            return;
        m_busy = true;
        if (GetTickCount64() > m_deadline)
            EnumThreadWindows(GetCurrentThreadId(), &Cancel, 0);
        else if (m_next < m_steps.size() && m_steps[m_next]())
            ++m_next;
        m_busy = false;
    }

    static inline DialogDriver* s_current = nullptr;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    ULONGLONG m_deadline;
    UINT_PTR m_timer = 0;
    bool m_busy = false;
};

inline HWND DialogNamed(const std::wstring& title) { return FindWindowW(L"#32770", title.c_str()); }

using ui::TextOf;

// The direct children that can be seen, in their order.
inline std::vector<HWND> VisibleChildren(HWND parent)
{
    std::vector<HWND> children;
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (GetWindowLongPtrW(child, GWL_STYLE) & WS_VISIBLE)
            children.push_back(child);
    return children;
}

inline std::wstring ClassOf(HWND window)
{
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

// The first visible child of a class, with a text when one is given.
inline HWND VisibleChild(HWND parent, const std::wstring& type, const wchar_t* text = nullptr)
{
    for (const HWND child : VisibleChildren(parent))
        if (ClassOf(child) == type && (!text || TextOf(child) == text))
            return child;
    return nullptr;
}

inline RECT PlaceOnScreen(HWND window)
{
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

inline RECT PlaceWithin(HWND parent, HWND window)
{
    RECT place = PlaceOnScreen(window);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

// Nothing that can be seen lies on anything else or beyond the dialog's edge, but for what `may` do so.
template <class May>
void ExpectApart(HWND dialog, const May& may)
{
    RECT client{}, common{};
    GetClientRect(dialog, &client);
    MapWindowPoints(dialog, nullptr, reinterpret_cast<POINT*>(&client), 2);
    const auto children = VisibleChildren(dialog);
    const auto name = [](HWND child) { return ClassOf(child) + L" " + TextOf(child); };
    for (auto one = children.begin(); one != children.end(); ++one) {
        const RECT place = PlaceOnScreen(*one);
        UnionRect(&common, &client, &place);
        EXPECT_TRUE(common == client || may(*one, dialog)) << name(*one) << " leaves the dialog";
        for (auto other = children.begin(); other != one; ++other) {
            const RECT taken = PlaceOnScreen(*other);
            EXPECT_TRUE(!IntersectRect(&common, &place, &taken) || may(*one, *other))
                << name(*one) << " lies on " << name(*other);
        }
    }
}

} // namespace vh::test
