#include "dialog_procedure.h"

#include <algorithm>

#include <windows.h>

#include <commctrl.h>

#include "../pictures/placement.h"
#include "delivery.h"
#include "dialog_manager.h"
#include "fonts.h"
#include "late_dialogs.h"
#include "script_dialog.h"

namespace {

// Templates of wizard pages, whose labels show the page's background.
constexpr int page_templates[] = {10205, 12006, 12031, 12032, 12063, 12064};

// Scripts know tree notifications by the codes of their narrow family.
constexpr UINT narrow_tree_offset = 49;

CScriptDialog* DialogOf(HWND window)
{
    if (CScriptDialog* waiting = WaitingDialog::Current(); waiting && waiting->window() == window)
        return waiting;
    return static_cast<CScriptDialog*>(vh::late::get_prop(window, dialog_property));
}

DialogEvent EventOf(UINT message, WPARAM wParam, LPARAM lParam)
{
    DialogEvent event;
    event.message = message;
    event.wParam = wParam;
    event.lParam = lParam;
    return event;
}

INT_PTR Transparent(HDC device)
{
    vh::late::set_background_mode(device, TRANSPARENT);
    vh::late::set_text_color(device, vh::late::get_system_color(COLOR_WINDOWTEXT));
    return reinterpret_cast<INT_PTR>(vh::late::get_stock_object(NULL_BRUSH));
}

// Ends with its field, whoever filled that.
template <std::size_t Size>
std::wstring_view TextIn(const wchar_t (&field)[Size])
{
    return {field, wcsnlen(field, Size)};
}

LONG_PTR StyleOf(HWND window) { return vh::late::get_window_long(window, GWL_STYLE); }

} // namespace

thread_local CScriptDialog* WaitingDialog::s_current = nullptr;

INT_PTR CALLBACK DialogProcedure::Run(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CScriptDialog* dialog = DialogOf(window);
    if (message == WM_INITDIALOG) {
        // The first one is the system's; anybody can send another.
        if (dialog)
            return 0;
        dialog = reinterpret_cast<CScriptDialog*>(lParam);
    }
    try {
        return Answer(dialog, window, message, wParam, lParam);
    } catch (...) {
        // Not through the window system's frames: the wait raises it.
        if (dialog)
            dialog->m_raised = std::current_exception();
        return 0;
    }
}

INT_PTR DialogProcedure::Answer(CScriptDialog* dialog, HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        return Initialise(*dialog, window);
    case WM_COMMAND:
        return OnCommand(dialog, wParam, lParam);
    case WM_NOTIFY:
        return OnNotify(dialog, wParam, lParam);
    case WM_CTLCOLORSTATIC:
        return ColorOfStatic(dialog, reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case WM_PAINT:
        if (dialog)
            PaintBrand(*dialog);
        return 0;
    case WM_ACTIVATE:
        if (dialog && LOWORD(wParam) == WA_INACTIVE)
            dialog->m_neverDeactivated = false;
        return 0;
    case WM_SYSCOLORCHANGE:
        for (HWND child = vh::late::get_window(window, UINT{GW_CHILD}); child;
             child = vh::late::get_window(child, UINT{GW_HWNDNEXT}))
            vh::late::send_message(child, message, wParam, lParam);
        return 0;
    case WM_DESTROY:
        if (dialog)
            OnDestroy(*dialog, window);
        return 0;
    default:
        return 0;
    }
}

INT_PTR DialogProcedure::OnCommand(CScriptDialog* dialog, WPARAM wParam, LPARAM lParam)
{
    if (dialog && (dialog->m_delivery == Delivery::all_commands ||
                   vh::EntersStandard(vh::ClassNameOf(reinterpret_cast<HWND>(lParam)), HIWORD(wParam))))
        dialog->m_queue.push_back(EventOf(WM_COMMAND, wParam, lParam));
    return 1;
}

INT_PTR DialogProcedure::OnNotify(CScriptDialog* dialog, WPARAM wParam, LPARAM lParam)
{
    if (!dialog || !lParam)
        return 1;
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    const bool click = header.code == NM_CLICK || header.code == NM_RETURN;
    if (!click && dialog->m_delivery == Delivery::all_commands)
        return 0;
    const stringxi type = vh::ClassNameOf(header.hwndFrom);
    if (!vh::PassesNotifyTest(type, header.code))
        return 1;
    if (click) {
        OnLink(*dialog, header);
        return 1;
    }
    DialogEvent event = EventOf(WM_NOTIFY, wParam, lParam);
    event.code = header.code + (type == WC_TREEVIEWW ? narrow_tree_offset : 0);
    event.source = header.hwndFrom;
    event.sourceId = header.idFrom;
    dialog->m_queue.push_back(event);
    return 1;
}

void DialogProcedure::OnLink(CScriptDialog& dialog, const NMHDR& header)
{
    DialogEvent event = EventOf(WM_COMMAND, header.idFrom, reinterpret_cast<LPARAM>(header.hwndFrom));
    // Only a link's notification is long enough to tell an address.
    if (vh::ClassNameOf(header.hwndFrom) == WC_LINK) {
        const LITEM& link = reinterpret_cast<const NMLINK&>(header).item;
        const auto found = dialog.m_links.find(static_cast<int32_t>(header.idFrom));
        if (found != dialog.m_links.end())
            found->second->SetUrl(*link.szUrl ? TextIn(link.szUrl) : TextIn(link.szID));
        event.code = static_cast<UINT>(link.iLink);
    }
    dialog.m_queue.push_back(event);
}

INT_PTR DialogProcedure::ColorOfStatic(const CScriptDialog* dialog, HDC device, HWND control)
{
    if (!dialog)
        return Transparent(device);
    const auto brush = reinterpret_cast<INT_PTR>(dialog->m_drawing.window_brush.get());
    const bool on_page = dialog->m_topImage && std::find(std::begin(page_templates), std::end(page_templates),
                                                         dialog->m_definition.resource) != std::end(page_templates);
    if (on_page && (StyleOf(control) & 1) && vh::ClassNameOf(control) == WC_BUTTONW)
        return dialog->m_manager.controls_themed ? brush : Transparent(device);
    switch (vh::late::get_control_id(control)) {
    case control_title:
    case control_second_title:
        return Transparent(device);
    case control_top:
        return brush;
    default:
        return on_page ? Transparent(device) : 0;
    }
}

void DialogProcedure::PaintBrand(const CScriptDialog& dialog)
{
    const HWND brand = dialog.m_branding ? dialog.Control(control_brand) : nullptr;
    if (!brand)
        return;
    const RECT place = vh::PlaceIn(dialog.m_window, brand);
    PAINTSTRUCT paint{};
    const HDC device = vh::late::begin_paint(dialog.m_window, &paint);
    vh::late::fill_rect(device, &paint.rcPaint, vh::late::get_system_brush(COLOR_BTNFACE));
    constexpr int points = 8;
    const vh::unique_font font(vh::MakeFont(device, L"Tahoma", points));
    const HGDIOBJ before = vh::late::select_object(device, font.get());
    vh::late::set_background_mode(device, TRANSPARENT);
    const auto draw = [&](int color, LONG offset) {
        vh::late::set_text_color(device, vh::late::get_system_color(color));
        vh::late::text_out(device, static_cast<int>(place.left - offset), static_cast<int>(place.top - offset),
                           dialog.m_brandText.c_str(), static_cast<int>(dialog.m_brandText.size()));
    };
    draw(COLOR_3DHILIGHT, 0);
    draw(COLOR_BTNSHADOW, 1);
    vh::late::select_object(device, before);
    vh::late::end_paint(dialog.m_window, &paint);
}

void DialogProcedure::OnDestroy(CScriptDialog& dialog, HWND window)
{
    vh::late::remove_prop(window, dialog_property);
    if (dialog.m_window == window) {
        dialog.m_window = nullptr;
        dialog.m_skinAttr.reset();
    }
    dialog.m_queue.push_back(EventOf(WM_DESTROY, 0, 0));
}
