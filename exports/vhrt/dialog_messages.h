/* The event that _WaitOnDialog returned for, and special controls of a dialog. An unknown dialog gives -1. */
#pragma once

#include "types.h"

/* Event codes of _CtrlGetSubCommand and _CtrlGetNotificationCode. */
enum {
    EventNone = -999,
    EventComboBoxChanged = -1004,
    EventComboBoxSelection = -1005,
    EventEditChanged = -1007,
    EventListBoxDoubleClick = -1008,
    EventListBoxSelection = -1009,
    EventButton = -1010
};

/* Result: the dialog's window as a number; 0 when it has none or is unknown. The empty name means the current
   dialog, "ProgressDlg" the status window. */
VHRT_FUNCTION(int64_t) _CmdGetHwndDlg(ObjectContext* context, const wchar_t* dialog);

/* Result: message, wParam and lParam of the current event. */
VHRT_FUNCTION(int32_t) _CmdGetMsg(ObjectContext* context, const wchar_t* dialog);
VHRT_FUNCTION(int64_t) _CmdGetParam1(ObjectContext* context, const wchar_t* dialog);
VHRT_FUNCTION(int64_t) _CmdGetParam2(ObjectContext* context, const wchar_t* dialog);

/* Result: an event code; the first also gives raw notification codes. */
VHRT_FUNCTION(int32_t) _CtrlGetNotificationCode(ObjectContext* context, const wchar_t* dialog);
VHRT_FUNCTION(int32_t) _CtrlGetSubCommand(ObjectContext* context, const wchar_t* dialog);

/* The URL of the link clicked last in a control. The buffer needs one unit more than *size says. Result: 0; 111
   with the length needed in *size; -1 when the control is no link control. */
VHRT_FUNCTION(int32_t)
_CtrlGetUrlForLinkClicked(ObjectContext* context, const wchar_t* dialog, int32_t control, wchar_t* buffer,
                          int32_t* size);

/* Turns a static control into a link, or sets its content: text that starts with "[html]" or "[hyperlink]".
   Result: 0, also for other kinds of control; -1 for other text. */
VHRT_FUNCTION(int32_t)
_CtrlSetHtmlContent(ObjectContext* context, const wchar_t* dialog, int32_t control, const wchar_t* text);

/* Streams a text (RTF when it begins with "{\rtf1") or a file (RTF when its name ends in ".rtf") into a rich edit
   control, also a read-only one. Result: 0; of the second also the stream's error, -4 for a null path, or the system
   error when the file can't be opened; the last two leave the control writable. */
VHRT_FUNCTION(int32_t)
_CtrlSetMLERichText(ObjectContext* context, const wchar_t* dialog, HWND edit, const wchar_t* text);
VHRT_FUNCTION(int32_t)
_CtrlSetMLERichTextEx(ObjectContext* context, const wchar_t* dialog, HWND edit, const wchar_t* path);

/* Result: the window that fits as parent of a further dialog, as a number: the current dialog's, or the installer's
   where setup fact 40 is not 0; 0 for none. */
VHRT_FUNCTION(int64_t) _CtrlGetParentWindowHelper(ObjectContext* context);
