// Windows whose messages go to an object, as long as there is one.
#pragma once

#include <windows.h>

namespace vh::engine {

// Parts a window from the object that it keeps in `slot`, and ends it; on another thread it does so by itself.
inline void EndWindow(HWND window, int slot = GWLP_USERDATA)
{
    if (!window)
        return;
    SetWindowLongPtrW(window, slot, 0);
    if (!DestroyWindow(window))
        PostMessageW(window, WM_CLOSE, 0, 0);
}

// The object answers `LRESULT Handle(HWND, UINT, WPARAM, LPARAM)` and outlives its window.
template <class Object>
LRESULT CALLBACK RouteToObject(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* object = reinterpret_cast<Object*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    // The first one is the system's; anybody can send another.
    if (message == WM_NCCREATE && !object) {
        object = static_cast<Object*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
    }
    if (message == WM_NCDESTROY)
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    return object ? object->Handle(window, message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
}

// A window of the class `name`, which is made on first use and stays. Null when the system refuses.
template <class Object>
HWND MakeRoutedWindow(Object& object, const wchar_t* name, DWORD extended, DWORD style, const RECT& place, HWND owner,
                      const wchar_t* text = L"")
{
    const HINSTANCE program = GetModuleHandleW(nullptr);
    WNDCLASSW description{};
    if (!GetClassInfoW(program, name, &description)) {
        description = {};
        description.lpfnWndProc = &RouteToObject<Object>;
        description.hInstance = program;
        description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        description.lpszClassName = name;
        RegisterClassW(&description);
    }
    return CreateWindowExW(extended, name, text, style, place.left, place.top, place.right - place.left,
                           place.bottom - place.top, owner, nullptr, program, &object);
}

} // namespace vh::engine
