#include "template_dialog.h"

#include <utility>

#include <commctrl.h>

#include "../../scriptdata/late_library.h"
#include "../files.h"
#include "routed_window.h"

namespace vh::engine {

namespace {

constinit late_library common_controls(L"comctl32.dll");
constinit late_function<decltype(InitCommonControlsEx)> register_controls(common_controls, "InitCommonControlsEx");

// The strip at the top of a dialog: title, second line, and the field that they lie on.
constexpr int control_title = 50;
constexpr int control_strip = 52;

// One of another word size can still give its templates.
unique_module LoadForTemplates(const std::wstring& path)
{
    unique_module library(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!library && GetLastError() == ERROR_BAD_EXE_FORMAT)
        library.reset(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    return library;
}

void Centre(HWND window)
{
    RECT place{};
    RECT area{};
    GetWindowRect(window, &place);
    const HWND parent = GetWindow(window, GW_OWNER);
    if (!parent || !IsWindowVisible(parent) || IsIconic(parent) || !GetWindowRect(parent, &area))
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const SIZE size = SizeOf(place);
    SetWindowPos(window, nullptr, (area.left + area.right - size.cx) / 2, (area.top + area.bottom - size.cy) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

TemplateDialog::TemplateDialog(HWND parent, const std::wstring& library, long number)
{
    const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_PROGRESS_CLASS | ICC_LINK_CLASS};
    if (register_controls)
        register_controls(&classes);
    if (library.empty())
        ThrowFileError(L"VHRES", L"names no library with the dialog " + Number(number), ERROR_MOD_NOT_FOUND);
    m_library = LoadForTemplates(library);
    if (!m_library)
        ThrowFileError(library, L"can't load the library with the dialog " + Number(number), GetLastError());
    if (!CreateDialogParamW(m_library.get(), MAKEINTRESOURCEW(number), parent, &Route, reinterpret_cast<LPARAM>(this)))
        ThrowFileError(library, L"has no dialog " + Number(number) + L" that can be made", GetLastError());
}

INT_PTR CALLBACK TemplateDialog::Route(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* dialog = reinterpret_cast<TemplateDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (message == WM_INITDIALOG && !dialog) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<TemplateDialog*>(lParam)->Initialise(window);
        // Nobody loses the focus to it.
        return FALSE;
    }
    if (!dialog && message == WM_CLOSE)
        return DestroyWindow(window);
    return dialog ? dialog->Handle(message, wParam, lParam) : FALSE;
}

void TemplateDialog::Initialise(HWND window)
{
    m_window = window;
    const HWND title = Control(control_title);
    const auto font = reinterpret_cast<HFONT>(title ? SendMessageW(title, WM_GETFONT, 0, 0) : 0);
    LOGFONTW logical{};
    if (!font || !GetObjectW(font, sizeof(logical), &logical))
        return;
    logical.lfWeight = FW_BOLD;
    m_titleFont.reset(CreateFontIndirectW(&logical));
    SendMessageW(title, WM_SETFONT, reinterpret_cast<WPARAM>(m_titleFont.get()), FALSE);
}

INT_PTR TemplateDialog::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) != IDCANCEL)
            return FALSE;
        [[fallthrough]];
    case WM_CLOSE:
        // It may end this dialog.
        if (const auto cancel = onCancel)
            cancel();
        return TRUE;
    case WM_CTLCOLORSTATIC: {
        const int id = GetDlgCtrlID(reinterpret_cast<HWND>(lParam));
        if (id < control_title || id > control_strip)
            return FALSE;
        SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
        return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
    }
    case WM_NCDESTROY:
        m_window = nullptr;
        return FALSE;
    default:
        return FALSE;
    }
}

RECT TemplateDialog::PlaceOf(HWND control) const
{
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void TemplateDialog::Show(bool on) const
{
    if (!m_window)
        return;
    if (on && !IsWindowVisible(m_window))
        Centre(m_window);
    ShowWindow(m_window, on ? SW_SHOW : SW_HIDE);
    if (on)
        RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void TemplateDialog::Destroy() { EndWindow(std::exchange(m_window, nullptr), DWLP_USER); }

} // namespace vh::engine
