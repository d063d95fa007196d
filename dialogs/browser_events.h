// What a page's browser tells: a click on a link becomes the dialog's event, never a navigation.
#pragma once

#include <exdisp.h>

#include "../scriptdata/com_object.h"
#include "link_control.h"

namespace vh {

// The platform's event interface under our way of naming identifiers.
struct IBrowserEvents : DWebBrowserEvents2 {
    static constexpr GUID iid = Guid("{34A715A0-6587-11D0-924A-0020AFC7AC4D}");
};

class BrowserEvents final : public com_object<IBrowserEvents> {
public:
    BrowserEvents(CLinkControlHolder& holder, CUrlClickHandler& dialog) : m_holder(&holder), m_dialog(&dialog) {}

    // The window that clicks are told with.
    HWND host = nullptr;
    // The next navigation is our own.
    bool navigating = false;
    // The holder is gone: later events reach nobody.
    void Detach() { m_holder = nullptr; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

private:
    void BeforeNavigate(const DISPPARAMS& parameters);
    void NewWindow(const DISPPARAMS& parameters);

    CLinkControlHolder* m_holder;
    CUrlClickHandler* m_dialog;
};

} // namespace vh
