// Pages in dialogs, with stand-ins for the platform's browser and the window that hosts it.
#include "../../dialogs/control_host.h"
#include "../../scriptdata/com_object.h"
#include "../../scriptdata/variant.h"
#include "../support/script_dialogs.h"

using namespace vh;
using namespace vh::test;

namespace {

constexpr int page = 1005, other_page = 1010;

// What the library asked for, in order, and what of it is to fail.
std::wstring g_log;
std::wstring g_failing;
HRESULT Logged(const std::wstring& call)
{
    g_log += call + L"|";
    return !g_failing.empty() && call.starts_with(g_failing) ? E_FAIL : S_OK;
}
std::wstring TakeLog() { return std::exchange(g_log, {}); }

struct WriteSlot : unnamed_slots<IDispatch, 7, 58> {
    VH_SLOTS_FROM(59);
    VH_SLOT(59) write(SAFEARRAY* texts) = 0;
};
struct DocumentSlots : unnamed_slots<WriteSlot, 60, 61> {
    static constexpr GUID iid = iid_of<IHTMLDocument2>;
    VH_SLOTS_FROM(62);
    VH_SLOT(62) close() = 0;
};

struct NavigateSlot : unnamed_slots<IDispatch, 7, 10> {
    VH_SLOTS_FROM(11);
    VH_SLOT(11) Navigate(BSTR url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) = 0;
};
struct StopSlot : unnamed_slots<NavigateSlot, 12, 13> {
    VH_SLOTS_FROM(14);
    VH_SLOT(14) Stop() = 0;
};
struct DocumentSlot : unnamed_slots<StopSlot, 15, 17> {
    VH_SLOTS_FROM(18);
    VH_SLOT(18) get_Document(IDispatch** document) = 0;
};
struct BrowserSlots : unnamed_slots<DocumentSlot, 19, 63> {
    static constexpr GUID iid = iid_of<IWebBrowser2>;
    VH_SLOTS_FROM(64);
    VH_SLOT(64) put_RegisterAsDropTarget(VARIANT_BOOL on) = 0;
};

// Nothing is called by name.
template <class Interface>
struct Nameless : Interface {
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
};

class Document final : public com_object<Nameless<DocumentSlots>> {
    HRESULT STDMETHODCALLTYPE write(SAFEARRAY* texts) override
    {
        variant text;
        LONG at = 0;
        EXPECT_EQ(SafeArrayGetElement(texts, &at, text.put()), S_OK);
        return Logged(L"write " + std::wstring(text.text()));
    }
    HRESULT STDMETHODCALLTYPE close() override { return Logged(L"close"); }
};

class Browser final : public com_object<Nameless<BrowserSlots>, IConnectionPointContainer, IConnectionPoint> {
public:
    com_ptr<IDispatch> sink;

private:
    HRESULT QueryMore(REFIID id, void** object) override
    {
        if (id != iid_of<IConnectionPointContainer>)
            return E_NOINTERFACE;
        *object = static_cast<IConnectionPointContainer*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Navigate(BSTR url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override
    {
        return Logged(L"navigate " + std::wstring(url));
    }
    HRESULT STDMETHODCALLTYPE Stop() override { return Logged(L"stop"); }
    HRESULT STDMETHODCALLTYPE get_Document(IDispatch** document) override
    {
        *document = make_object<Document>().detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_RegisterAsDropTarget(VARIANT_BOOL on) override
    {
        return Logged(L"drop target " + std::to_wstring(on));
    }
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID, IConnectionPoint** point) override
    {
        *point = this;
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* events, DWORD* cookie) override
    {
        *cookie = 1;
        events->QueryInterface(iid_of<IDispatch>, sink.put_void());
        return Logged(L"advise");
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }
};

com_ptr<Browser> g_browser;

class Host final : public com_object<IControlHost, Nameless<IControlAmbience>> {
    HRESULT STDMETHODCALLTYPE CreateControl(const wchar_t* what, HWND, IStream*) override
    {
        return Logged(L"create " + std::wstring(what));
    }
    HRESULT STDMETHODCALLTYPE CreateControlEx(const wchar_t*, HWND, IStream*, IUnknown**, REFIID, IUnknown*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE AttachControl(IUnknown*, HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryControl(REFIID id, void** object) override
    {
        return g_browser->QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE SetExternalDispatch(IDispatch* external) override
    {
        return Logged(external ? L"sink" : L"no sink");
    }
    HRESULT STDMETHODCALLTYPE PutAllowContextMenu(VARIANT_BOOL on) override
    {
        return Logged(L"menu " + std::to_wstring(on));
    }
};

LRESULT CALLBACK HostProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == RegisterWindowMessageW(get_host_message))
        return reinterpret_cast<LRESULT>(static_cast<IControlHost*>(make_object<Host>().detach()));
    return DefWindowProcW(window, message, wParam, lParam);
}

class Pages : public ::testing::Test {
protected:
    Pages()
    {
        WNDCLASSW made{};
        made.lpfnWndProc = &HostProcedure;
        made.lpszClassName = control_host_class;
        made.hInstance = GetModuleHandleW(nullptr);
        made.style = CS_GLOBALCLASS;
        RegisterClassW(&made);
        g_browser = make_object<Browser>();
        g_failing.clear();
        TakeLog();
    }
    ~Pages() override { UnregisterClassW(control_host_class, GetModuleHandleW(nullptr)); }

    int32_t SetContent(const wchar_t* text) { return _CtrlSetHtmlContent(session, L"d", page, text); }
    // Fires an event with the arguments in the order of its declaration; the place of the cancel answer is the
    // caller's. The result is that answer.
    static VARIANT_BOOL Fire(DISPID member, std::vector<variant> arguments, std::size_t cancel_at)
    {
        VARIANT_BOOL cancel = 0x55;
        std::vector<VARIANT> raw;
        for (auto& one : arguments)
            raw.insert(raw.begin(), one.get());
        VARIANT& answer = raw[arguments.size() - 1 - cancel_at];
        answer.vt = VT_BYREF | VT_BOOL;
        answer.pboolVal = &cancel;
        DISPPARAMS parameters{raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
        EXPECT_EQ(g_browser->sink->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
                  S_OK);
        return cancel;
    }
    static VARIANT_BOOL Navigate(const wchar_t* url)
    {
        variant sender;
        sender.put()->vt = VT_DISPATCH;
        g_browser->QueryInterface(iid_of<IDispatch>, reinterpret_cast<void**>(&sender.get().pdispVal));
        std::vector<variant> arguments(7);
        arguments[0] = sender;
        arguments[1] = variant(url);
        return Fire(250, std::move(arguments), 6);
    }

    TextSession session{DialogTemplates(), StandardTexts()};
};

TEST_F(Pages, ComeFromTheirSourceOrFromALocation)
{
    const std::wstring made = L"sink|create about:blank|advise|drop target 0|menu 0|";
    for (const auto& [text, call] : {std::pair(L"[html]<p>one", L"write <p>one|close|"),
                                     std::pair(L"[html]file://c/x.htm", L"navigate file://c/x.htm|"),
                                     std::pair(L"[html]c:\\x.htm", L"navigate c:\\x.htm|"),
                                     std::pair(L"[html]http://x", L"write http://x|close|")}) {
        const TestDialog dialog(session, L"d", 100);
        ASSERT_EQ(dialog.Wait(), DialogCreated);
        EXPECT_EQ(SetContent(text), 0);
        EXPECT_EQ(TakeLog(), made + call);
        // The page's window is no child of the dialog: a second text finds no control.
        EXPECT_EQ(SetContent(text), 0);
        EXPECT_EQ(TakeLog(), L"");
    }
}

TEST_F(Pages, TurnClicksIntoEventsOfTheDialog)
{
    const TestDialog dialog(session, L"d", 100, DialogStandardEvents);
    ASSERT_EQ(dialog.Wait(), DialogCreated);
    ASSERT_EQ(SetContent(L"[html]c:\\x.htm"), 0);
    ASSERT_EQ(dialog.WaitOrHelp(), 8);
    TakeLog();
    EXPECT_EQ(Navigate(L"c:\\x.htm"), VARIANT_FALSE) << "its own";
    EXPECT_EQ(Navigate(L"MailTo:a@b"), VARIANT_FALSE);
    EXPECT_EQ(dialog.WaitOrHelp(), 8) << "no event of either";
    EXPECT_EQ(TakeLog(), L"");
    // An event without arguments is a navigation to nowhere.
    DISPPARAMS nothing{};
    EXPECT_EQ(g_browser->sink->Invoke(250, IID_NULL, 0, DISPATCH_METHOD, &nothing, nullptr, nullptr, nullptr), S_OK);
    EXPECT_NE(dialog.WaitOrHelp(), 8);

    EXPECT_EQ(Navigate(L"http://127.0.0.1/y"), VARIANT_TRUE);
    EXPECT_EQ(TakeLog(), L"stop|");
    EXPECT_NE(dialog.WaitOrHelp(), 8);
    EXPECT_EQ(_CmdGetMsg(session, L"d"), WM_COMMAND);
    EXPECT_EQ(ClassOf(reinterpret_cast<HWND>(_CmdGetParam2(session, L"d"))), control_host_class);
    wchar_t url[64];
    int32_t size = 63;
    EXPECT_EQ(_CtrlGetUrlForLinkClicked(session, L"d", page, url, &size), 0);
    EXPECT_STREQ(url, L"http://127.0.0.1/y");

    // A window of its own opens elsewhere, and the next navigation is a click again.
    ASSERT_EQ(_CtrlSetHtmlContent(session, L"d", other_page, L"[html]c:\\x.htm"), 0);
    wchar_t program[MAX_PATH];
    GetSystemDirectoryW(program, MAX_PATH);
    std::vector<variant> arguments(5);
    arguments[4] = variant(program + std::wstring(L"\\hostname.exe"));
    EXPECT_EQ(Fire(273, std::move(arguments), 1), VARIANT_TRUE);
    EXPECT_EQ(dialog.WaitOrHelp(), 8) << "no event";
    EXPECT_EQ(Navigate(L"http://127.0.0.1/y"), VARIANT_TRUE);
}

TEST_F(Pages, ThatCannotBeMadeTakeTheirControlWithThem)
{
    for (const wchar_t* failing : {L"create", L"none"}) {
        const TestDialog dialog(session, L"d", 100);
        ASSERT_EQ(dialog.Wait(), DialogCreated);
        g_failing = failing;
        EXPECT_EQ(SetContent(L"[html]<p>one"), g_failing == L"create" ? -1 : 0);
        EXPECT_EQ(dialog.Control(page), nullptr);
        // A released dialog's page hears nothing more.
        EXPECT_EQ(static_cast<bool>(g_browser->sink), g_failing != L"create");
    }
    EXPECT_EQ(Navigate(L"http://127.0.0.1/z"), VARIANT_BOOL{0x55}) << "nobody is left to answer";
}

} // namespace
