#include "html_control.h"

#include "../pictures/placement.h"
#include "../scriptdata/format.h"
#include "../scriptdata/variant.h"
#include "late_dialogs.h"

namespace {

bool IsLocation(const stringx& text)
{
    return text.view().starts_with(L"file:") || (text.size() > 1 && text.view()[1] == L':');
}

} // namespace

CHtmlControl::CHtmlControl(HWND placeholder, int32_t control, CUrlClickHandler& clicked)
    : CLinkControlHolder(placeholder, control, clicked), m_events(vh::make_object<vh::BrowserEvents>(*this, clicked))
{
}

CHtmlControl::~CHtmlControl()
{
    m_events->Detach();
    m_control.reset();
    if (m_host && vh::late::is_window(m_host))
        vh::late::destroy_window(m_host);
}

bool CHtmlControl::Create()
{
    if (!window() || !MakeHost())
        return false;
    if (MakeBrowser() && ForbidMenus())
        return true;
    m_control.reset();
    vh::late::destroy_window(std::exchange(m_host, nullptr));
    return false;
}

bool CHtmlControl::MakeHost()
{
    const HWND parent = vh::late::get_parent(window());
    const RECT place = vh::PlaceIn(parent, window());
    vh::late::destroy_window(window());
    // The placeholder is gone when its style is asked for, so the style is 0.
    const auto style = static_cast<DWORD>(vh::late::get_window_long(window(), GWL_STYLE));
    m_host = vh::late::create_window_ex(DWORD{0}, vh::control_host_class, L"", style, static_cast<int>(place.left),
                                        static_cast<int>(place.top), vh::WidthOf(place), vh::HeightOf(place), parent,
                                        HMENU{nullptr}, HINSTANCE{nullptr}, static_cast<void*>(nullptr));
    if (!m_host) {
        const DWORD error = GetLastError();
        wchar_t line[64];
        vh::FormatText(line, std::size(line), L"Error creating html control: %x", error);
        OutputDebugStringW(line);
        return false;
    }
    vh::late::set_window_long(m_host, GWLP_ID, LONG_PTR{id()});
    m_events->host = m_host;
    return true;
}

vh::com_ptr<IUnknown> CHtmlControl::HostObject() const
{
    const UINT message = vh::late::register_window_message(vh::get_host_message);
    vh::com_ptr<IUnknown> object;
    object.attach(reinterpret_cast<IUnknown*>(vh::late::send_message(m_host, message, WPARAM{0}, LPARAM{0})));
    return object;
}

bool CHtmlControl::MakeBrowser()
{
    m_control = HostObject().query<vh::IControlHost>();
    if (!m_control)
        return false;
    m_control->SetExternalDispatch(m_events.get());
    if (FAILED(m_control->CreateControl(L"about:blank", m_host, nullptr)))
        return false;
    const vh::com_ptr<IWebBrowser2> browser = Browser();
    const auto container = browser.query<IConnectionPointContainer>();
    vh::com_ptr<IConnectionPoint> point;
    if (container)
        container->FindConnectionPoint(vh::IBrowserEvents::iid, point.put());
    DWORD cookie = 0;
    if (point)
        point->Advise(m_events.get(), &cookie);
    if (browser)
        browser->put_RegisterAsDropTarget(VARIANT_FALSE);
    return true;
}

bool CHtmlControl::ForbidMenus()
{
    const vh::com_ptr<IUnknown> host = HostObject();
    const auto ambience = host.query<vh::IControlAmbience>();
    if (!ambience) {
        OutputDebugStringW(host ? L"Failed to query interface IAxWinAmbientDispatch"
                                : L"Failed to get AtlHost IUnknown");
        return false;
    }
    ambience->PutAllowContextMenu(VARIANT_FALSE);
    return true;
}

vh::com_ptr<IWebBrowser2> CHtmlControl::Browser() const
{
    vh::com_ptr<IWebBrowser2> browser;
    if (m_control)
        m_control->QueryControl(vh::iid_of<IWebBrowser2>, browser.put_void());
    return browser;
}

void CHtmlControl::SetContent(const stringx& text)
{
    const vh::com_ptr<IWebBrowser2> browser = Browser();
    if (!browser)
        return;
    if (!IsLocation(text)) {
        WritePage(*browser.get(), text);
        return;
    }
    m_events->navigating = true;
    VARIANT none{};
    browser->Navigate(text.AsBstr(), &none, &none, &none, &none);
}

void CHtmlControl::WritePage(IWebBrowser2& browser, const stringx& source)
{
    vh::com_ptr<IDispatch> dispatch;
    browser.get_Document(dispatch.put());
    const auto document = dispatch.query<IHTMLDocument2>();
    if (!document)
        return;
    const vh::safe_array texts(SafeArrayCreateVector(VT_VARIANT, 0, 1));
    VARIANT* first = nullptr;
    if (!texts.get() || FAILED(SafeArrayAccessData(texts.get(), reinterpret_cast<void**>(&first))))
        vh::ThrowOutOfMemory();
    vh::variant(source.view()).detach(first);
    SafeArrayUnaccessData(texts.get());
    document->write(texts.get());
    document->close();
}
