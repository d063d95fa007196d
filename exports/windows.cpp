// Exported functions of window services: there is no main window yet.
#include "vhrt/windows.h"

#include "../scriptdata/variant.h"
#include "pending.h"

using namespace vh::pending;

int32_t _SdShowMsg(ObjectContext*, const wchar_t*, int32_t) { return -1; }
int32_t _SetSilentSdShowMsg(ObjectContext*, int32_t) { return -1; }
int32_t _SetTitle(ObjectContext* context, const wchar_t*, int32_t, int32_t) { return Missing(context, 0); }
int32_t _SetFont(ObjectContext*, int32_t, int32_t, const wchar_t*) { return -1; }
int64_t _GetFont(ObjectContext*, const wchar_t*, int32_t, int32_t) { return -1; }
int32_t _SetColor(ObjectContext* context, int32_t selector, int32_t)
{
    return Missing(context, selector == 4 ? 0 : -1);
}
int32_t _SetDisplayEffect(ObjectContext*, int32_t) { return -1; }
int32_t _PlaceBitmap(ObjectContext* context, const wchar_t*, int32_t, int32_t, int32_t, int32_t)
{
    return Missing(context, general_failure);
}
int32_t _SizeWindow(ObjectContext*, int32_t, int32_t, int32_t) { return -1; }
int32_t __GetMainWindow(ObjectContext* context, VARIANT*) { return Missing(context, E_POINTER); }
// As for a file that can't be opened.
int32_t _SendRequest(const wchar_t*, VARIANT* text)
{
    if (text)
        vh::variant(L"").detach(text);
    return 0;
}
int32_t _DisableBranding(ObjectContext* context, const wchar_t*) { return Missing(context, general_failure); }
int32_t _IsFontTypefaceNameAvailable(const wchar_t* face) { return face && *face ? 0 : -1; }
int32_t _GetTrueTypeFontFileInfo(const wchar_t*, int32_t, int32_t, wchar_t*, int32_t*) { return -1; }
int32_t GetFontSub(ObjectContext* context, wchar_t*) { return Missing(context, 0); }
int32_t EnableHourGlass(ObjectContext* context, int32_t) { return Missing(context, general_failure); }
int32_t MessageBeepP(uint32_t) { return 0; }
