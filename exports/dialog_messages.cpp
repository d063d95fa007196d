// Exported functions that read a dialog's current event, and that fill special controls.
#include "vhrt/dialog_messages.h"

#include "../dialogs/delivery.h"
#include "../dialogs/late_dialogs.h"
#include "../dialogs/parent_window.h"
#include "../dialogs/rich_text.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/results.h"

namespace {

// `body` on the dialog of that name; -1 when there is none.
template <class Body>
auto OnDialog(ObjectContext* context, const wchar_t* name, Body&& body)
{
    using Result = decltype(body(std::declval<CScriptDialog&>()));
    return vh::Framed(context, [&](ObjectContext& c) {
        const auto dialog = c.dialogs.Find(name);
        return dialog ? body(*dialog) : Result{-1};
    });
}

} // namespace

int64_t _CmdGetHwndDlg(ObjectContext* context, const wchar_t* dialog)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        const stringx* current = vh::IsEmpty(dialog) ? c.dialogs.CurrentName() : nullptr;
        return reinterpret_cast<int64_t>(c.dialogs.WindowOf(current ? *current : stringx(dialog)));
    });
}

int32_t _CmdGetMsg(ObjectContext* context, const wchar_t* dialog)
{
    return OnDialog(context, dialog, [](CScriptDialog& d) { return static_cast<int32_t>(d.event().message); });
}

int64_t _CmdGetParam1(ObjectContext* context, const wchar_t* dialog)
{
    return OnDialog(context, dialog, [](CScriptDialog& d) { return static_cast<int64_t>(d.event().wParam); });
}

int64_t _CmdGetParam2(ObjectContext* context, const wchar_t* dialog)
{
    return OnDialog(context, dialog, [](CScriptDialog& d) { return static_cast<int64_t>(d.event().lParam); });
}

int32_t _CtrlGetNotificationCode(ObjectContext* context, const wchar_t* dialog)
{
    return OnDialog(context, dialog, [](CScriptDialog& d) {
        return d.Delivers() ? vh::NotificationCodeOf(d.event()) : int32_t{EventNone};
    });
}

int32_t _CtrlGetSubCommand(ObjectContext* context, const wchar_t* dialog)
{
    return OnDialog(context, dialog,
                    [](CScriptDialog& d) { return d.Delivers() ? vh::SubCommandOf(d.event()) : int32_t{EventNone}; });
}

int32_t _CtrlGetUrlForLinkClicked(ObjectContext* context, const wchar_t* dialog, int32_t control, wchar_t* buffer,
                                  int32_t* size)
{
    return OnDialog(context, dialog, [&](CScriptDialog& d) -> int32_t {
        const CLinkControlHolder* link = d.FindLink(control);
        if (!link || !size)
            return -1;
        const std::wstring_view url(link->url().data(), link->url().size());
        const auto length = static_cast<int32_t>(url.size());
        if (*size < length) {
            *size = length;
            return ERROR_BUFFER_OVERFLOW;
        }
        // The size leaves the terminator out.
        return vh::CopyOutUnlimited(url, buffer);
    });
}

int32_t _CtrlSetHtmlContent(ObjectContext* context, const wchar_t* dialog, int32_t control, const wchar_t* text)
{
    return OnDialog(context, dialog, [&](CScriptDialog& d) {
        return d.SetHtmlContent(vh::late::get_dialog_item(d.window(), control), control, vh::View(text));
    });
}

int32_t _CtrlSetMLERichText(ObjectContext* context, const wchar_t* dialog, HWND edit, const wchar_t* text)
{
    return OnDialog(context, dialog, [&](CScriptDialog&) {
        vh::StreamRichText(edit, text);
        return 0;
    });
}

int32_t _CtrlSetMLERichTextEx(ObjectContext* context, const wchar_t* dialog, HWND edit, const wchar_t* path)
{
    return OnDialog(context, dialog, [&](CScriptDialog&) { return vh::StreamRichFile(edit, path); });
}

int64_t _CtrlGetParentWindowHelper(ObjectContext* context)
{
    return vh::Framed(context, [](ObjectContext& c) { return reinterpret_cast<int64_t>(vh::ParentWindow(c.dialogs)); });
}
