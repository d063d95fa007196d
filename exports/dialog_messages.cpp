// Exported functions of dialog messages: no dialog has any yet.
#include "vhrt/dialog_messages.h"

#include "pending.h"

using namespace vh::pending;

// Dialog messages.
int64_t _CmdGetHwndDlg(ObjectContext* context, const wchar_t*) { return Missing(context, 0); }
int32_t _CmdGetMsg(ObjectContext*, const wchar_t*) { return -1; }
int64_t _CmdGetParam1(ObjectContext*, const wchar_t*) { return -1; }
int64_t _CmdGetParam2(ObjectContext*, const wchar_t*) { return -1; }
int32_t _CtrlGetNotificationCode(ObjectContext*, const wchar_t*) { return -1; }
int32_t _CtrlGetSubCommand(ObjectContext*, const wchar_t*) { return -1; }
int32_t _CtrlGetUrlForLinkClicked(ObjectContext*, const wchar_t*, int32_t, wchar_t*, int32_t*) { return -1; }
int32_t _CtrlSetHtmlContent(ObjectContext*, const wchar_t*, int32_t, const wchar_t*) { return -1; }
int32_t _CtrlSetMLERichText(ObjectContext*, const wchar_t*, HWND, const wchar_t*) { return -1; }
int32_t _CtrlSetMLERichTextEx(ObjectContext*, const wchar_t*, HWND, const wchar_t*) { return -1; }
int64_t _CtrlGetParentWindowHelper(ObjectContext* context) { return Missing(context, 0); }
