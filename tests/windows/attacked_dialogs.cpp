// Dialogs and engine windows under what nobody does on purpose: ended by their own messages, forged messages,
// templates that lie, another thread.
#include <windows.h>

#include <commctrl.h>
#include <richedit.h>

#include "../support/bare_context.h"
#include "../support/handle_counts.h"
#include "../support/script_dialogs.h"

namespace {

// A function that the engine names as the one that sees each dialog: a jump, at an address that fits into 31 bits.
class DialogHook {
public:
    DialogHook()
    {
        for (uintptr_t at = 0x10000000; !m_code && at < 0x70000000; at += 0x100000)
            m_code = static_cast<unsigned char*>(
                VirtualAlloc(reinterpret_cast<void*>(at), 4096, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
        void (*const function)(HWND) = [](HWND dialog) {
            if (s_next)
                std::exchange(s_next, nullptr)(dialog);
        };
        const unsigned char jump[] = {0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xE0};
        std::memcpy(m_code, jump, sizeof(jump));
        std::memcpy(m_code + 2, &function, sizeof(function));
    }
    DialogHook(const DialogHook&) = delete;
    DialogHook& operator=(const DialogHook&) = delete;
    ~DialogHook() { VirtualFree(m_code, 0, MEM_RELEASE); }

    // The next dialog alone.
    void Next(std::function<void(HWND)> body) const { s_next = std::move(body); }
    variant address() const { return variant(static_cast<long>(reinterpret_cast<uintptr_t>(m_code))); }

private:
    static inline std::function<void(HWND)> s_next;
    unsigned char* m_code = nullptr;
};

LRESULT CALLBACK ActOnce(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR at, DWORD_PTR act)
{
    if (message == at) {
        RemoveWindowSubclass(window, &ActOnce, at);
        (*reinterpret_cast<const std::function<void()>*>(act))();
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

struct AttackedDialogs : testing::Test {
    AttackedDialogs() { Begin(); }
    ~AttackedDialogs() override { EndSession(); }
    void EndSession()
    {
        session.reset();
        EXPECT_EQ(Windows(), 0);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }
    void Begin()
    {
        engine::test::MakeTree(folder);
        engine::Options options = folder.Given();
        options.windows = engine::Windows::dialogs;
        options.facts.emplace(24, hook.address());
        options.variables = {{L"VHUSER", DialogTemplates()}, {L"VHRES", StandardTexts()}};
        session.emplace(std::move(options));
    }
    operator ObjectContext*() const { return *session; }
    // At a window's next message of that kind.
    void At(HWND window, UINT message, const std::function<void()>& act) const
    {
        SetWindowSubclass(window, &ActOnce, message, reinterpret_cast<DWORD_PTR>(&act));
    }
    HWND WindowOf(const wchar_t* name) const { return reinterpret_cast<HWND>(_CmdGetHwndDlg(*this, name)); }
    int32_t Define(const wchar_t* name, int32_t resource = 100, HWND parent = nullptr) const
    {
        return _DefineDialog(*this, name, nullptr, L"", resource, L"", 0, parent, DialogStandardEvents);
    }
    // A help key ends it where nothing else does.
    int32_t Wait() const
    {
        PostMessageW(nullptr, WM_KEYDOWN, VK_F1, 0);
        return *session ? _WaitOnDialog(*this, L"d") : 0;
    }

    engine::test::SetupFolder folder;
    const DialogHook hook;
    std::optional<Session> session;
};

TEST_F(AttackedDialogs, OfTwoContextsLiveInOneThread)
{
    const auto press = [](HWND dialog) {
        PostMessageW(dialog, WM_COMMAND, 1004, reinterpret_cast<LPARAM>(GetDlgItem(dialog, 1004)));
    };
    const TextSession second(DialogTemplates(), StandardTexts());
    const TestDialog other(second, Stage::shown);
    ASSERT_EQ(Define(L"d"), 0);
    ASSERT_EQ(_WaitOnDialog(*this, L"d"), DialogCreated);
    ASSERT_EQ(Wait(), 8);
    const HWND dialog = WindowOf(L"d");
    // What comes to one while the other waits is kept for it.
    press(other.window());
    press(dialog);
    EXPECT_EACH(1004, _WaitOnDialog(*this, L"d"), other.Wait());
    EXPECT_TRUE(IsWindowEnabled(dialog) && IsWindowEnabled(other.window())) << "each stands alone";
    // One goes with its context while the other waits.
    const std::function<void()> go = [&] { session->Release(); };
    At(dialog, WM_USER, go);
    PostMessageW(dialog, WM_USER, 0, 0);
    press(other.window());
    EXPECT_EQ(other.Wait(), 1004);
    EXPECT_FALSE(IsWindow(dialog));
    EXPECT_EQ(other.End(), 0);
}

// When something happens, counted from the hook of the dialog "d" over a dialog "lower"; and what happens then.
enum class Moment { hooked, button, showing, posted, picture, link, push, parent, pop, destruction };
enum class Act { end, release, end_and_release, wait, end_and_wait, redefine, destroy, end_lower, end_context };

TEST_F(AttackedDialogs, MayEndAtEachOfTheirMessages)
{
    using enum Moment;
    using enum Act;
    // What the act says; what the call that creates and the one that shows say; what an end says afterwards.
    Table<Moment, Act, std::wstring, int32_t, int32_t, int32_t> cases = {
        {hooked, release, L"-2", -100, 8, 0},        {hooked, end, L"0", -1, -100, 0},
        {hooked, end_and_wait, L"0 -100", -1, 8, 0}, {hooked, end_and_release, L"0 0", -1, -1, -1},
        {hooked, redefine, L"0 0 0 -100", -1, 8, 0}, {hooked, wait, L"-1", -100, 8, 0},
        {hooked, destroy, L"1", -1, -100, 0},        {picture, end, L"0", -1, -100, 0},
        {hooked, end_context, L"", -1, 0, 0},        {link, end, L"0", -1, -100, 0},
        {picture, end_context, L"", -1, 0, 0},       {link, end_context, L"", -1, 0, 0},
        {parent, end_context, L"", -1, 0, 0},        {parent, end, L"0", -1, -100, 0},
        {push, end_and_wait, L"0 -100", -1, 8, 0},   {push, end, L"0", -1, -100, 0},
        {push, end_lower, L"0", -100, 8, 0},         {push, end_context, L"", -1, 0, 0},
        {button, end_context, L"", -100, -1, 0},     {button, end, L"0", -100, -1, 0},
        {showing, destroy, L"1", -100, 8, 0},        {showing, end_and_release, L"0 0", -100, -1, -1},
        {showing, end_context, L"", -100, -1, 0},    {showing, wait, L"8", -100, 8, 0},
        {posted, destroy, L"1", -100, 8, 0},         {posted, redefine, L"0 0 0 -100", -100, -1, 0},
        {posted, end_context, L"", -100, -1, 0},     {destruction, end_and_wait, L"0 -100", -100, 8, 0},
        {destruction, end, L"0", -100, 8, 0},        {destruction, end_context, L"", -100, 8, 0},
        {pop, end_context, L"", -100, 8, 0}};
    for (const auto& [when, what, told, created, shown, ended] : cases) {
        std::wstring said;
        const auto say = [&said](int32_t result) { said += (said.empty() ? L"" : L" ") + std::to_wstring(result); };
        HWND dialog = nullptr;
        const std::function<void()> act = [&, what = what] {
            const auto ends = {end, end_and_release, end_and_wait, redefine};
            if (std::find(ends.begin(), ends.end(), what) != ends.end())
                say(_EndDialog(*this, L"d"));
            if (what == release || what == end_and_release || what == redefine)
                say(_ReleaseDialog(*this, L"d"));
            if (what == redefine)
                say(Define(L"d"));
            if (what == wait || what == end_and_wait || what == redefine)
                say(Wait());
            if (what == destroy)
                say(DestroyWindow(dialog));
            if (what == end_lower)
                say(_EndDialog(*this, L"lower"));
            if (what == end_context)
                session->Release();
        };
        ASSERT_EQ(Define(L"lower", 200), 0);
        ASSERT_EQ(_WaitOnDialog(*this, L"lower"), DialogCreated);
        const HWND lower = WindowOf(L"lower");
        const HWND above = when == parent ? NewWindow(L"Static", WS_POPUP | WS_VISIBLE | WS_MINIMIZE) : nullptr;
        if (when == push || when == parent)
            At(when == push ? lower : above, when == push ? WM_ENABLE : WM_SIZE, act);
        ASSERT_EQ(Define(L"d", when == picture || when == button ? 400 : 100, above), 0);
        hook.Next([&, when = when](HWND made) {
            dialog = made;
            if (when == hooked)
                act();
            if (when == picture || when == link)
                At(made, WM_PARENTNOTIFY, act);
            if (when == button)
                At(GetDlgItem(made, 101), BM_SETIMAGE, act);
            if (when == showing)
                At(made, WM_SHOWWINDOW, act);
            if (when == posted) {
                At(made, WM_USER, act);
                PostMessageW(made, WM_USER, 0, 0);
            }
            if (when == destruction)
                At(made, WM_DESTROY, act);
        });
        const std::wstring name =
            std::to_wstring(static_cast<int>(when)) + L" " + std::to_wstring(static_cast<int>(what));
        EXPECT_EQ(_WaitOnDialog(*this, L"d"), created) << name;
        if (when == pop)
            At(lower, WM_ENABLE, act);
        EXPECT_EQ(Wait(), shown) << name;
        if (*session) {
            EXPECT_EQ(_EndDialog(*this, L"d"), ended) << name;
        }
        EXPECT_EQ(said, told) << name;
        DestroyWindow(above);
        EndSession();
        Begin();
    }
}

TEST_F(AttackedDialogs, NestTheirWaits)
{
    constexpr int most = 50;
    for (const bool end_context : {false, true}) {
        int depth = 0;
        std::map<int32_t, int> results;
        std::function<void()> deeper = [&] {
            const std::wstring name = std::to_wstring(++depth);
            if (depth > most && end_context)
                return session->Release();
            for (int i = 0; depth > most && i < most; ++i)
                PostMessageW(nullptr, WM_KEYDOWN, VK_F1, 0);
            if (depth > most)
                return;
            ASSERT_EQ(Define(name.c_str()), 0);
            ASSERT_EQ(_WaitOnDialog(*this, name.c_str()), DialogCreated);
            At(WindowOf(name.c_str()), WM_USER, deeper);
            PostMessageW(WindowOf(name.c_str()), WM_USER, 0, 0);
            ++results[_WaitOnDialog(*this, name.c_str())];
            if (!end_context) {
                EXPECT_EQ(_EndDialog(*this, name.c_str()), 0);
            }
        };
        deeper();
        EXPECT_EQ(results, (std::map<int32_t, int>{{end_context ? -1 : 8, most}}));
        EndSession();
        Begin();
    }
}

TEST_F(AttackedDialogs, HoldNoHandlesWhileTheyAreNotOpen)
{
    int level = 0;
    for (int i = 0; i < 60; ++i) {
        const std::wstring name = std::to_wstring(i);
        ASSERT_EQ(_DefineDialog(*this, name.c_str(), nullptr, L"", 100 << i % 3, L"", 0, nullptr, 1), 0);
        for (const int32_t result : {int32_t{DialogCreated}, 8}) {
            PostMessageW(nullptr, WM_KEYDOWN, VK_F1, 0);
            ASSERT_EQ(_WaitOnDialog(*this, name.c_str()), result);
        }
        ASSERT_EQ(_EndDialog(*this, name.c_str()), 0);
        EXPECT_TRUE(i % 2 || _ReleaseDialog(*this, name.c_str()) == 0) << "half of them stay defined";
        if (i == 20)
            level = OpenGdiObjects();
    }
    EXPECT_EQ(OpenGdiObjects(), level);
}

// A word that is 0 in the message, and windows that anybody may send to.
TEST_F(AttackedDialogs, PassOverForgedMessages)
{
    ASSERT_EQ(Define(L"d", 400), 0);
    ASSERT_EQ(_WaitOnDialog(*this, L"d"), DialogCreated);
    ASSERT_EQ(_EnableStatus(*this, 4), 0);
    const HWND dialog = WindowOf(L"d"), status = WindowOf(L"ProgressDlg");
    const HWND picture = VisibleChild(dialog, L"VHWndImgCls");
    ASSERT_TRUE(dialog && status && picture);
    const Table<HWND, UINT, LRESULT> cases = {
        {dialog, WM_INITDIALOG, 0}, {dialog, WM_NOTIFY, 0}, {dialog, WM_COMMAND, 0}, {status, WM_INITDIALOG, 0},
        {status, WM_NOTIFY, 0},     {picture, WM_PAINT, 0}, {dialog, WM_PAINT, 0}};
    for (const auto& [window, message, answer] : cases)
        EXPECT_EQ(SendMessageW(window, message, 0, 0), answer) << message;
    SendMessageW(picture, WM_NCCREATE, 0, reinterpret_cast<LPARAM>(std::array<char, 256>{}.data()));
    EXPECT_EACH(0, _EndDialog(*this, L"d"), _DisableStatus(*this));
    EXPECT_FALSE(IsWindow(dialog) || IsWindow(status) || IsWindow(picture));
}

// In a library that ends where the template does, at the end of a page.
TEST_F(AttackedDialogs, AreNotReadBehindTheirTemplate)
{
    using Words = std::vector<uint16_t>;
    const std::wstring path = folder.Setup(L"lying.dll");
    const auto write = [&](const Words& filling, const Words& words) {
        CopyFileW(DialogTemplates().c_str(), path.c_str(), FALSE);
        const HANDLE update = BeginUpdateResourceW(path.c_str(), TRUE);
        for (const auto& [id, content] : {std::pair(1, &filling), std::pair(2, &words)})
            UpdateResourceW(update, RT_DIALOG, MAKEINTRESOURCEW(id), 0, const_cast<uint16_t*>(content->data()),
                            static_cast<DWORD>(content->size() * 2));
        EXPECT_TRUE(EndUpdateResourceW(update, FALSE));
        const unique_module library(LoadLibraryExW(path.c_str(), nullptr, 0));
        const HRSRC found = FindResourceW(library.get(), MAKEINTRESOURCEW(2), RT_DIALOG);
        return reinterpret_cast<uintptr_t>(LockResource(LoadResource(library.get(), found))) + words.size() * 2;
    };
    const auto with = [](Words words, uint16_t count, const Words& item) {
        words[4] = count;
        words.insert(words.end(), item.begin(), item.end());
        return words;
    };
    // No menu, no class, no text; an item without class and text of its own: its number says what it is.
    const Words head = {0, 0x8000, 0, 0, 0, 0, 0, 50, 50, 0, 0, 0};
    const Words button = {0, 0x5000, 0, 0, 1, 1, 10, 10, 7, 0xFFFF, 0x80, 0, 0, 0};
    Words claiming = button;
    claiming[12] = 0xFFFF;
    const Words texts[] = {with(head, 0xFFFF, button), with(head, 2, claiming),
                           with(head, 1, {0, 0x5000, 0, 0, 1, 1, 10, 10, 7, L'B', L'u', L't'}),
                           Words(head.begin(), head.begin() + 10)};
    for (const Words& words : texts) {
        const uintptr_t end = write(Words(8), words);
        ASSERT_EQ(write(Words(8 + (0x1000 - end % 0x1000) / 2), words) % 0x1000, 0u);
        for (const wchar_t* face : {L"", L"Tahoma"}) {
            ASSERT_EQ(_DialogSetFont(*this, face, 9), 0);
            ASSERT_EQ(_DefineDialog(*this, L"d", nullptr, path.c_str(), 2, L"", 0, nullptr, 1), 0);
            const int32_t created = _WaitOnDialog(*this, L"d");
            EXPECT_EQ(created, words.size() == 10 && !*face ? int32_t{DialogCreated} : -1) << words.size() << face;
            EXPECT_EACH(0, _EndDialog(*this, L"d"), _ReleaseDialog(*this, L"d"));
        }
    }
}

TEST_F(AttackedDialogs, StreamIntoNothingButAWindow)
{
    ASSERT_EQ(Define(L"d"), 0);
    ASSERT_EQ(_WaitOnDialog(*this, L"d"), DialogCreated);
    bool reached = false;
    const std::function<void()> note = [&] { reached = true; };
    At(WindowOf(L"d"), EM_STREAMIN, note);
    EXPECT_EQ(_CtrlSetMLERichText(*this, L"d", HWND_BROADCAST, L"x"), 0);
    EXPECT_FALSE(reached);
}

// The library's answer to a name with nothing behind it.
TEST_F(AttackedDialogs, TakeNothingForAnArgument)
{
    const Table<const char*, int32_t> cases = {{"_DefineDialog", 0},
                                               {"_WaitOnDialog", -1},
                                               {"_EndDialog", 0},
                                               {"_ReleaseDialog", 0},
                                               {"_EnablePrevDialog", 0},
                                               {"_GetCurrentDialogName", 1},
                                               {"_DialogSetFont", 0},
                                               {"_CmdGetHwndDlg", 0},
                                               {"_CmdGetMsg", -1},
                                               {"_CtrlGetUrlForLinkClicked", -1},
                                               {"_CtrlSetHtmlContent", -1},
                                               {"_CtrlSetMLERichText", -1},
                                               {"_CtrlSetMLERichTextEx", -1},
                                               {"_SdShowMsg", 0},
                                               {"_SetTitle", 0},
                                               {"_SetFont", -1},
                                               {"_SetColor", -1},
                                               {"_PlaceBitmap", HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)},
                                               {"_SizeWindow", -1},
                                               {"__GetMainWindow", E_POINTER},
                                               {"_DisableBranding", 0},
                                               {"GetFontSub", 0}};
    for (const auto& [name, result] : cases)
        EXPECT_EQ(static_cast<int32_t>(CallExport(name, static_cast<ObjectContext*>(*this), 0, 0, 0, 0, 0, 0, 0, 0)),
                  result)
            << name;
    EXPECT_EQ(_IsFontTypefaceNameAvailable(nullptr), -1);
    EXPECT_EQ(_SendRequest(nullptr, nullptr), 0);
    EXPECT_EQ(_GetTrueTypeFontFileInfo(nullptr, 0, 0, nullptr, nullptr), -1);
    ObjectContext* const suite = __CreateObjectContextSuiteExt(session->engine->Services().get(), L"");
    EXPECT_EQ(_ReleaseDialog(suite, L"unknown"), -1) << "an engine with windows of its own";
    __ReleaseObjectContextSuiteExt(suite);
}

struct AttackedEngineWindows : testing::Test {
    AttackedEngineWindows()
    {
        std::string content("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x1\0\0\0\x1\0\0\0\x1\0\x18\0", 30);
        content.resize(58);
        session->folder().Payload(L"pixel.bmp", content);
    }
    int32_t Place(int32_t flags) const
    {
        return _PlaceBitmap(*session, session->folder().Setup(L"pixel.bmp").c_str(), 1, 0, 0, flags);
    }

    std::unique_ptr<TextSession> session = std::make_unique<TextSession>(
        DialogTemplates(), StandardTexts(), nullptr, std::map<long, variant>(), engine::Windows::all);
    HWND main = reinterpret_cast<HWND>(GetHandle(*session, -2));
};

// For some functions no window means all of them.
int g_aimless = 0;
BOOL WINAPI Redraw(HWND window, const RECT*, HRGN, UINT) { return window ? TRUE : ++g_aimless; }
UINT_PTR WINAPI StartTimer(HWND window, UINT_PTR, UINT, TIMERPROC)
{
    return window ? 1 : static_cast<UINT_PTR>(++g_aimless);
}

TEST_F(AttackedEngineWindows, MayBeDestroyedByOthers)
{
    EXPECT_EACH(0, Place(128), _SdShowMsg(*session, L"m", 1), _EnableStatus(*session, 4));
    DestroyWindow(main);
    const Patched redraw("RedrawWindow", &Redraw);
    const Patched timer("SetTimer", &StartTimer);
    EXPECT_EACH(0, _SetDisplayEffect(*session, 1), Place(128), _SetColor(*session, 12, 5),
                _SetTitle(*session, L"t", 20, 0), _SdShowMsg(*session, L"m", 1),
                _ComponentMoveData(*session, L"DATA", 0), _DisableStatus(*session));
    EXPECT_EQ(g_aimless, 0);
}

TEST_F(AttackedEngineWindows, GoWhenAnotherThreadEndsThem)
{
    EXPECT_EACH(0, _EnableStatus(*session, 4), _SdShowMsg(*session, L"m", 1));
    const unique_handle thread(CreateThread(
        nullptr, 0,
        [](void* context) -> DWORD {
            EXPECT_EQ(_DisableStatus(static_cast<ObjectContext*>(context)), 0);
            EXPECT_EQ(_SdShowMsg(static_cast<ObjectContext*>(context), L"", 0), 0);
            return 0;
        },
        static_cast<ObjectContext*>(*session), 0, nullptr));
    const HANDLE ended = thread.get();
    MSG message;
    for (DWORD what = 1; what == 1; what = MsgWaitForMultipleObjects(1, &ended, FALSE, 20000, QS_ALLINPUT))
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
    EXPECT_EQ(FindWindowExW(nullptr, nullptr, L"#32770", nullptr), nullptr);
}

int g_drawings = 0;
HDC WINAPI CountDrawing(HDC device)
{
    // The name leads back here.
    static const auto create = reinterpret_cast<decltype(&CreateCompatibleDC)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"gdi32.dll"), "CreateCompatibleDC")));
    ++g_drawings;
    return create(device);
}

TEST_F(AttackedEngineWindows, TileSinglePixelsTogether)
{
    const Patched count("CreateCompatibleDC", &CountDrawing);
    EXPECT_EQ(Place(64), 0);
    EXPECT_GT(g_drawings, 10);
    EXPECT_LT(g_drawings, 200);
}

TEST_F(AttackedEngineWindows, GoWithTheirContext)
{
    EXPECT_EACH(0, Place(64), _SdShowMsg(*session, L"m", 1));
    session.reset();
    EXPECT_EQ(DialogNamed(L"Please wait"), nullptr);
    const TextSession next(DialogTemplates(), StandardTexts(), nullptr, {}, engine::Windows::all);
    EXPECT_EQ(_SdShowMsg(next, L"n", 1), 0);
    EXPECT_TRUE(IsWindowVisible(DialogNamed(L"Please wait")));
    EXPECT_EQ(_SdShowMsg(next, L"", 0), 0);
}

} // namespace
