// Exported functions of dialogs: none can be defined yet, so none is known.
#include "vhrt/dialogs.h"

#include "pending.h"

using namespace vh::pending;

int32_t _DefineDialog(ObjectContext*, const wchar_t*, HMODULE, const wchar_t*, int32_t, const wchar_t*, int32_t, HWND,
                      int32_t)
{
    return -1;
}
int32_t _WaitOnDialog(ObjectContext*, const wchar_t*) { return -1; }
int32_t _EndDialog(ObjectContext*, const wchar_t*) { return -1; }
int32_t _ReleaseDialog(ObjectContext* context, const wchar_t*) { return Missing(context, -4); }
int32_t _EnablePrevDialog(ObjectContext*, int32_t, const wchar_t*) { return -1; }
int32_t _EnableDialogCache(ObjectContext* context, int32_t) { return Missing(context, 0); }
int32_t _GetCurrentDialogName(ObjectContext*, wchar_t*, int32_t) { return -1; }
int32_t _DialogSetFont(ObjectContext*, const wchar_t*, int32_t) { return -1; }
int32_t _EnableSkins(ObjectContext* context, int32_t) { return Missing(context, 0); }
int32_t _IsSkinLoaded(ObjectContext* context) { return Missing(context, 0); }
