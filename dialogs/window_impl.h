// A window whose messages go to an object of ours.
#pragma once

#include <utility>
#include <windows.h>

#include "late_dialogs.h"

namespace vh {

// The module that this code stands in: window classes with procedures of ours belong to it.
inline HINSTANCE ThisModule()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&ThisModule), &module);
    return module;
}

} // namespace vh

// T names its window class in `window_class`. The window ends with the object; one that ends by itself, or with its
// parent, leaves the object without a window.
template <class T>
class CVHWindowImpl {
public:
    CVHWindowImpl(const CVHWindowImpl&) = delete;
    CVHWindowImpl& operator=(const CVHWindowImpl&) = delete;
    virtual ~CVHWindowImpl() { DestroyWindow(); }
    virtual LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
    {
        return vh::late::def_window_proc(m_window, message, wparam, lparam);
    }

    HWND window() const { return m_window; }

protected:
    CVHWindowImpl() = default;

    // False when class or window can't be had.
    bool CreateWindowIn(HWND parent, DWORD style, DWORD extended_style)
    {
        const HINSTANCE module = vh::ThisModule();
        WNDCLASSW made{};
        if (!vh::late::get_class_info(module, T::window_class, &made)) {
            made = {};
            made.lpfnWndProc = &Procedure;
            made.cbWndExtra = sizeof(void*);
            made.hInstance = module;
            made.lpszClassName = T::window_class;
            if (!vh::late::register_class(&made))
                return false;
        }
        m_uses_class = true;
        return vh::late::create_window_ex(extended_style, T::window_class, L"", style, 0, 0, 0, 0, parent, nullptr,
                                          module, static_cast<void*>(this)) != nullptr;
    }
    void DestroyWindow()
    {
        if (m_window)
            vh::late::destroy_window(m_window);
        // The procedure lies in this library, which may go. A class that another window uses stays.
        if (std::exchange(m_uses_class, false))
            vh::late::unregister_class(T::window_class, vh::ThisModule());
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
    {
        auto* object = reinterpret_cast<CVHWindowImpl*>(vh::late::get_window_long(window, 0));
        // The first one is the system's; anybody can send another.
        if (message == WM_NCCREATE && !object) {
            object = static_cast<CVHWindowImpl*>(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
            object->m_window = window;
            vh::late::set_window_long(window, 0, reinterpret_cast<LONG_PTR>(object));
        }
        if (!object)
            return vh::late::def_window_proc(window, message, wparam, lparam);
        const LRESULT answer = object->WindowProc(message, wparam, lparam);
        if (message == WM_NCDESTROY) {
            object->m_window = nullptr;
            vh::late::set_window_long(window, 0, LONG_PTR{0});
        }
        return answer;
    }

    HWND m_window = nullptr;
    bool m_uses_class = false;
};
