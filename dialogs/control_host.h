// The platform's window class that hosts a control, and its browser, as far as pages need them.
#pragma once

#include <exdisp.h>
#include <mshtml.h>
#include <ocidl.h>

#include "../Src/inc/identifiers.h"
#include "../Src/inc/slots.h"

namespace vh {

template <>
inline constexpr GUID iid_of<IWebBrowser2> = Guid("{D30C1661-CDAF-11D0-8A3E-00C04FC9E26E}");
template <>
inline constexpr GUID iid_of<IHTMLDocument2> = Guid("{332C4425-26CB-11D0-B483-00C04FD90119}");
template <>
inline constexpr GUID iid_of<IConnectionPointContainer> = Guid("{B196B284-BAB4-101A-B69C-00AA00341D07}");

constexpr const wchar_t* control_host_class = L"AtlAxWin140";
// The registered message that gives the host's object, with a reference for the caller.
constexpr const wchar_t* get_host_message = L"WM_ATLGETHOST";

struct IControlHost : IUnknown {
    static constexpr GUID iid = Guid("{B6EA2050-048A-11D1-82B9-00C04FB9942E}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) CreateControl(const wchar_t* what, HWND window, IStream* stream) = 0;
    VH_SLOT(4)
    CreateControlEx(const wchar_t* what, HWND window, IStream* stream, IUnknown** made, REFIID advised,
                    IUnknown* advice) = 0;
    VH_SLOT(5) AttachControl(IUnknown* control, HWND window) = 0;
    VH_SLOT(6) QueryControl(REFIID id, void** object) = 0;
    VH_SLOT(7) SetExternalDispatch(IDispatch* external) = 0;
};

struct IControlAmbience : unnamed_slots<IDispatch, 7, 28> {
    static constexpr GUID iid = Guid("{B6EA2051-048A-11D1-82B9-00C04FB9942E}");
    VH_SLOTS_FROM(29);
    VH_SLOT(29) PutAllowContextMenu(VARIANT_BOOL allowed) = 0;
};

} // namespace vh
