// Pages in dialogs, with stand-ins for the platform's browser and the window that hosts it.
#include "../../dialogs/control_host.h"
#include "../support/script_dialogs.h"
#include "../support/stand.h"

namespace {

constexpr int page = 1005, other_page = 1010;

// What the library asked for, in order, and what of it is to fail.
std::wstring g_log, g_failing;
HRESULT Logged(const std::wstring& call)
{
    g_log += call + L"|";
    return !g_failing.empty() && call.starts_with(g_failing) ? E_FAIL : S_OK;
}
std::wstring TakeLog() { return std::exchange(g_log, {}); }

Stand g_document({iid_of<IDispatch>, iid_of<IHTMLDocument2>},
                 {{59, Stand::Method([](Stand*, SAFEARRAY* texts) {
                       variant text;
                       LONG at = 0;
                       EXPECT_EQ(SafeArrayGetElement(texts, &at, text.put()), S_OK);
                       return Logged(L"write " + std::wstring(text.text()));
                   })},
                  {62, Stand::Method([](Stand*) { return Logged(L"close"); })}});

com_ptr<IDispatch> g_sink;
// The container of connection points and its one point.
Stand g_connections({iid_of<IConnectionPointContainer>},
                    {{4, Stand::Method([](Stand* self, REFIID, void** point) { return self->Give(point); })},
                     {5, Stand::Method([](Stand*, IUnknown* events, DWORD*) {
                          events->QueryInterface(iid_of<IDispatch>, g_sink.put_void());
                          return Logged(L"advise");
                      })}});

Stand g_browser({iid_of<IDispatch>, iid_of<IWebBrowser2>},
                {{0, Stand::Method([](Stand* self, REFIID id, void** object) {
                      return (id == iid_of<IConnectionPointContainer> ? g_connections : *self).Give(object);
                  })},
                 {11, Stand::Method([](Stand*, BSTR url) { return Logged(L"navigate " + std::wstring(url)); })},
                 {14, Stand::Method([](Stand*) { return Logged(L"stop"); })},
                 {18, Stand::Method([](Stand*, void** document) { return g_document.Give(document); })},
                 {64, Stand::Method([](Stand*, VARIANT_BOOL on) {
                      return Logged(L"drop target " + std::to_wstring(on));
                  })}});

Stand g_host({IControlHost::iid, IControlAmbience::iid},
             {{3, Stand::Method([](Stand*, const wchar_t* what) { return Logged(L"create " + std::wstring(what)); })},
              {6, Stand::Method([](Stand*, REFIID, void** object) { return g_browser.Give(object); })},
              {7, Stand::Method([](Stand*, IDispatch* external) { return Logged(external ? L"sink" : L"no sink"); })},
              {29, Stand::Method([](Stand*, VARIANT_BOOL on) { return Logged(L"menu " + std::to_wstring(on)); })}});

LRESULT CALLBACK HostProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT host = 0;
    if (message != RegisterWindowMessageW(get_host_message))
        return DefWindowProcW(window, message, wParam, lParam);
    g_host.Give(&host);
    return host;
}

struct Pages : testing::Test {
    Pages()
    {
        WNDCLASSW made{};
        made.lpfnWndProc = &HostProcedure;
        made.lpszClassName = control_host_class;
        made.hInstance = GetModuleHandleW(nullptr);
        made.style = CS_GLOBALCLASS;
        RegisterClassW(&made);
        g_failing.clear();
        TakeLog();
    }
    ~Pages() override
    {
        UnregisterClassW(control_host_class, GetModuleHandleW(nullptr));
        g_sink.reset();
        EXPECT_EQ(Stand::references, 0) << "the library still holds an object";
    }

    int32_t SetContent(const wchar_t* text) { return _CtrlSetHtmlContent(session, L"d", page, text); }
    // An event of the browser with so many arguments, the last one first; gives the answer whether it is cancelled.
    static VARIANT_BOOL Fire(DISPID event, UINT count, UINT cancelled, UINT address, const wchar_t* url)
    {
        VARIANT_BOOL cancel = 0x55;
        const bstr text(url);
        VARIANT arguments[7]{};
        arguments[cancelled].vt = VT_BYREF | VT_BOOL;
        arguments[cancelled].pboolVal = &cancel;
        arguments[address].vt = VT_BSTR;
        arguments[address].bstrVal = text.get();
        arguments[6].vt = VT_DISPATCH;
        arguments[6].pdispVal = reinterpret_cast<IDispatch*>(&g_browser);
        DISPPARAMS parameters{arguments, nullptr, count, 0};
        EXPECT_EQ(g_sink->Invoke(event, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
        return cancel;
    }
    static VARIANT_BOOL Navigate(const wchar_t* url) { return Fire(250, 7, 0, 5, url); }

    TextSession session{DialogTemplates(), StandardTexts()};
};

TEST_F(Pages, ComeFromTheirSourceOrFromALocation)
{
    const std::wstring made = L"sink|create about:blank|advise|drop target 0|menu 0|";
    for (const auto& [text, call] : {std::pair(L"[html]<p>one", L"write <p>one|close|"),
                                     std::pair(L"[html]file://c/x.htm", L"navigate file://c/x.htm|"),
                                     std::pair(L"[html]c:\\x.htm", L"navigate c:\\x.htm|"),
                                     std::pair(L"[html]http://x", L"write http://x|close|")}) {
        const TestDialog dialog(session);
        EXPECT_EQ(SetContent(text), 0);
        EXPECT_EQ(TakeLog(), made + call);
        // The page's window is no child of the dialog: a second text finds no control.
        EXPECT_EQ(SetContent(text), 0);
        EXPECT_EQ(TakeLog(), L"");
    }
}

TEST_F(Pages, TurnClicksIntoEventsOfTheDialog)
{
    const TestDialog dialog(session);
    ASSERT_EQ(SetContent(L"[html]c:\\x.htm"), 0);
    ASSERT_EQ(dialog.WaitOrHelp(), 8);
    TakeLog();
    EXPECT_EQ(Navigate(L"c:\\x.htm"), VARIANT_FALSE) << "its own";
    EXPECT_EQ(Navigate(L"MailTo:a@b"), VARIANT_FALSE);
    EXPECT_EQ(dialog.WaitOrHelp(), 8) << "no event of either";
    EXPECT_EQ(TakeLog(), L"");
    // An event without arguments is a navigation to nowhere.
    DISPPARAMS nothing{};
    EXPECT_EQ(g_sink->Invoke(250, IID_NULL, 0, DISPATCH_METHOD, &nothing, nullptr, nullptr, nullptr), S_OK);
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
    const std::wstring program = Filled(GetSystemDirectoryW) + L"\\hostname.exe";
    EXPECT_EQ(Fire(273, 5, 3, 0, program.c_str()), VARIANT_TRUE);
    EXPECT_EQ(dialog.WaitOrHelp(), 8) << "no event";
    EXPECT_EQ(Navigate(L"http://127.0.0.1/y"), VARIANT_TRUE);
}

TEST_F(Pages, ThatCannotBeMadeTakeTheirControlWithThem)
{
    for (const wchar_t* failing : {L"create", L"none"}) {
        const TestDialog dialog(session);
        g_failing = failing;
        EXPECT_EQ(SetContent(L"[html]<p>one"), g_failing == L"create" ? -1 : 0);
        EXPECT_EQ(dialog.Control(page), nullptr);
        // A released dialog's page hears nothing more.
        EXPECT_EQ(static_cast<bool>(g_sink), g_failing != L"create");
    }
    EXPECT_EQ(Navigate(L"http://127.0.0.1/z"), VARIANT_BOOL{0x55}) << "nobody is left to answer";
}

} // namespace
