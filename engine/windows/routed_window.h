// Windows whose messages go to an object.
#pragma once

#include <windows.h>

namespace vh::engine {

// The object answers `LRESULT Handle(HWND, UINT, WPARAM, LPARAM)` and outlives its window.
template <class Object>
LRESULT CALLBACK RouteToObject(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    auto* object = reinterpret_cast<Object*>(GetWindowLongPtrW(window, GWLP_USERDATA));
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
