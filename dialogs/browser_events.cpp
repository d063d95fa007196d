#include "browser_events.h"

#include "control_host.h"
#include "late_dialogs.h"

namespace vh {

namespace {

enum : DISPID { before_navigate = 250, new_window = 273 };

// Arguments come last first; one by reference is looked through.
const VARIANT* Argument(const DISPPARAMS& parameters, UINT from_end)
{
    if (from_end >= parameters.cArgs)
        return nullptr;
    const VARIANT* value = &parameters.rgvarg[from_end];
    return value->vt == (VT_BYREF | VT_VARIANT) ? value->pvarVal : value;
}

std::wstring_view TextArgument(const DISPPARAMS& parameters, UINT from_end)
{
    const VARIANT* value = Argument(parameters, from_end);
    if (!value || (value->vt & ~VT_BYREF) != VT_BSTR)
        return {};
    const BSTR text = value->vt & VT_BYREF ? *value->pbstrVal : value->bstrVal;
    return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

void SetCancel(const DISPPARAMS& parameters, UINT from_end, VARIANT_BOOL cancel)
{
    const VARIANT* value = Argument(parameters, from_end);
    if (value && value->vt == (VT_BYREF | VT_BOOL) && value->pboolVal)
        *value->pboolVal = cancel;
}

} // namespace

HRESULT BrowserEvents::GetTypeInfoCount(UINT* count)
{
    if (count)
        *count = 0;
    return S_OK;
}
HRESULT BrowserEvents::GetTypeInfo(UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }
HRESULT BrowserEvents::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) { return E_NOTIMPL; }

HRESULT BrowserEvents::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*)
{
    if (!m_holder || !parameters)
        return S_OK;
    if (member == before_navigate)
        BeforeNavigate(*parameters);
    else if (member == new_window)
        NewWindow(*parameters);
    return S_OK;
}

// Arguments: the browser, address, flags, frame, post data, headers, and the answer whether to cancel.
void BrowserEvents::BeforeNavigate(const DISPPARAMS& parameters)
{
    m_holder->SetUrl(TextArgument(parameters, 5));
    const bool mail = m_holder->url().folded().starts_with(stringxi::view_type(L"mailto:"));
    if (std::exchange(navigating, false) || mail) {
        SetCancel(parameters, 0, VARIANT_FALSE);
        return;
    }
    SetCancel(parameters, 0, VARIANT_TRUE);
    const VARIANT* sender = Argument(parameters, 6);
    if (sender && sender->vt == VT_DISPATCH && sender->pdispVal) {
        com_ptr<IWebBrowser2> browser;
        sender->pdispVal->QueryInterface(iid_of<IWebBrowser2>, browser.put_void());
        if (browser)
            browser->Stop();
    }
    m_dialog->OnUrlClicked(host);
}

// Arguments: the new browser, the answer whether to cancel, flags, the page's address, the address.
void BrowserEvents::NewWindow(const DISPPARAMS& parameters)
{
    navigating = false;
    SetCancel(parameters, 3, VARIANT_TRUE);
    const stringx url(TextArgument(parameters, 0));
    late::shell_execute(HWND{nullptr}, L"open", url.c_str(), static_cast<const wchar_t*>(nullptr),
                        static_cast<const wchar_t*>(nullptr), SW_SHOW);
}

} // namespace vh
