// Exports whose families are still to come: each answers as its family does when the service behind it is missing.
// docs/status.md lists them; a family takes its functions from here when it is built.
#include "../exports/vhrt.h"
#include "../scriptdata/variant.h"

namespace {

constexpr auto general_failure = static_cast<int32_t>(0x80004005);
constexpr auto no_driver_library = static_cast<int32_t>(0x80029C4A);

// A null context comes first in every family.
constexpr int32_t Missing(const ObjectContext* context, int32_t answer = -1) { return context ? answer : -1; }

} // namespace

// Dialogs: none can be defined, so none is known.
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

// Status window: the progress service does not answer.
int32_t _EnableStatus(ObjectContext* context, int32_t) { return Missing(context, general_failure); }
int32_t _DisableStatus(ObjectContext* context) { return Missing(context, general_failure); }
int32_t _StatusUpdate(ObjectContext*, int32_t, int16_t) { return -1; }
int32_t _FeatureSpendCost(ObjectContext*, int32_t, int32_t) { return -1; }
int32_t _FeatureSpendUninstallCost(ObjectContext*, int32_t, int32_t) { return -1; }

// Component view and tree view: none can be made.
ComponentView* _ComponentViewCreate(ObjectContext*, HWND, int32_t) { return nullptr; }
int32_t ComponentViewCreateWindow(ComponentView*) { return -1; }
int32_t ComponentViewSetInfo(ComponentView*, int32_t, int64_t, const wchar_t*) { return 0; }
int32_t ComponentViewSetInfoEx(ObjectContext* context, int32_t, int32_t) { return Missing(context, 0); }
int32_t _ComponentViewQueryInfo(ComponentView*, int32_t, int64_t*, wchar_t*, int32_t) { return -1; }
int32_t ComponentViewRefresh(ComponentView*) { return -1; }
int32_t ComponentViewSelectAll(ComponentView*, int32_t) { return -1; }
int32_t ComponentViewDestroy(ComponentView*) { return -1; }
TreeView* _TreeViewCreate(ObjectContext*, HWND, int32_t, const wchar_t*, const wchar_t*, int32_t) { return nullptr; }
int32_t _GetSelectedTreeComponent(TreeView*, wchar_t*, int32_t) { return -121; }
int32_t GetSelectedItemState(TreeView*, int32_t*) { return -1; }

// Window services: there is no main window.
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

// Main image.
int32_t _SetAltMainImage(ObjectContext* context, int32_t, const wchar_t*) { return Missing(context, general_failure); }
int32_t _SetAltMainImageEx(ObjectContext* context, int32_t, const wchar_t*)
{
    return Missing(context, general_failure);
}
int32_t _SetPaletteFile(ObjectContext* context, const wchar_t*) { return Missing(context, 0); }

// Permissions, services, printing.
int32_t _SetObjectPermissions(ObjectContext* context, const wchar_t*, int32_t, const wchar_t*, const wchar_t*, int32_t,
                              int32_t)
{
    return Missing(context, general_failure);
}
int32_t _ServiceStopDependentServices(const wchar_t*) { return 0; }
int32_t _PrintFile(HWND, const wchar_t*) { return -1; }

// Driver packages: as without the driver library.
int32_t _DIFxDriverPackagePreinstall(ObjectContext* context, const wchar_t*, int32_t)
{
    return Missing(context, no_driver_library);
}
int32_t _DIFxDriverPackageInstall(ObjectContext* context, const wchar_t*, int32_t, const INSTALLERINFO*, int32_t*)
{
    return Missing(context, no_driver_library);
}
int32_t _DIFxDriverPackageUninstall(ObjectContext* context, const wchar_t*, int32_t, const INSTALLERINFO*, int32_t*)
{
    return Missing(context, no_driver_library);
}
int32_t _DIFxDriverPackageGetPath(ObjectContext* context, const wchar_t*, wchar_t*, uint32_t*)
{
    return Missing(context, no_driver_library);
}

// Object creation: no class can be made.
int32_t _CreateObject(const wchar_t*, VARIANT*) { return general_failure; }
int32_t _CoGetObject(const wchar_t*, const wchar_t*, VARIANT* object)
{
    return object ? general_failure : E_INVALIDARG;
}
int32_t _DotNetCoCreateObject(const wchar_t*, const wchar_t*, const wchar_t*, VARIANT*) { return general_failure; }
int32_t _DotNetUnloadAppDomain(const wchar_t*) { return -1; }
