// A modeless dialog from the template of a resource library, hidden at first.
#pragma once

#include <functional>
#include <string>

#include "gdi.h"

namespace vh::engine {

class TemplateDialog {
public:
    // Throws engine_error when the library can't be loaded or has no such template.
    TemplateDialog(HWND parent, const std::wstring& library, long number);
    TemplateDialog(const TemplateDialog&) = delete;
    TemplateDialog& operator=(const TemplateDialog&) = delete;
    ~TemplateDialog() { Destroy(); }

    HWND handle() const { return m_window; }
    HMODULE library() const { return m_library.get(); }
    HWND Control(int id) const { return GetDlgItem(m_window, id); }
    // Where a control stands in the dialog.
    RECT PlaceOf(HWND control) const;
    // In the middle of its parent, painted at once; it takes the focus from nobody when it is a mere message.
    void Show(bool on) const;
    void Destroy();

    // Hears the cancel button and the closing of the window.
    std::function<void()> onCancel;

private:
    static INT_PTR CALLBACK Route(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Initialise(HWND window);

    unique_module m_library;
    HWND m_window = nullptr;
    unique_font m_titleFont;
};

} // namespace vh::engine
