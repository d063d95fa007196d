// The engine's windows as a script drives them: what is seen on them, pixel by pixel where it is ours.
#include "../support/bitmap_writer.h"
#include "../support/handle_counts.h"
#include "../support/pixels.h"
#include "../support/script_dialogs.h"

#include <commctrl.h>

namespace {

constexpr COLORREF red = RGB(255, 0, 0), blue = RGB(0, 0, 255), background = RGB(10, 200, 30);

// Messages of this thread until something is so.
template <class Condition>
bool PumpUntil(Condition&& condition)
{
    const UINT_PTR limit = SetTimer(nullptr, 0, 20000, nullptr);
    MSG message;
    bool there = condition();
    while (!there && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_TIMER && !message.hwnd && message.wParam == limit)
            break;
        DispatchMessageW(&message);
        there = condition();
    }
    KillTimer(nullptr, limit);
    return there;
}

struct EngineWindows : testing::Test {
    std::wstring Picture(const wchar_t* name, const std::string& content) const
    {
        session.folder().Payload(name, content);
        return session.folder().Setup(name);
    }
    int32_t Place(const std::wstring& text, int32_t flags, int32_t x = 0, int32_t y = 0, int32_t id = 1)
    {
        return _PlaceBitmap(session, text.c_str(), id, x, y, flags);
    }
    SIZE Client() const
    {
        RECT client{};
        GetClientRect(main, &client);
        return {client.right, client.bottom};
    }

    TextSession session{DialogTemplates(), StandardTexts(), nullptr, {}, engine::Windows::all};
    HWND main = reinterpret_cast<HWND>(GetHandle(session, -2));
    // Red, with the lower left pixel magenta.
    std::wstring file = Picture(L"red.bmp", PlainBitmap(8, 6, 0xFF0000, 0));
};

TEST_F(EngineWindows, ShowCaptionColourAndTitle)
{
    ASSERT_TRUE(IsWindowVisible(main));
    EXPECT_EQ(TextOf(main), L"Probe");
    EXPECT_EQ(_SetTitle(session, L"Caption", 0, static_cast<int32_t>(0xFF000100)), 0);
    EXPECT_EQ(TextOf(main), L"Caption");

    const LONG bottom = Client().cy - 1;
    EXPECT_EQ(_SetColor(session, 12, background), 0);
    EXPECT_TRUE(PixelOf(main, 3, 0) == background && PixelOf(main, 3, bottom) == background);
    EXPECT_EQ(_SetColor(session, 12, static_cast<int32_t>(0xC2000000 | background)), 0);
    EXPECT_EQ(PixelOf(main, 3, 0), background);
    EXPECT_LT(GetGValue(PixelOf(main, 3, bottom)), 10);

    _SetColor(session, 12, background);
    const RECT area{0, 0, 400, 120};
    // The first title has a shadow, one in a face that was set has none.
    for (const bool shadow : {true, false}) {
        EXPECT_EQ(_SetTitle(session, L"HHHH", 40, 0x00FFFF), 0);
        EXPECT_GT(CountPixels(main, area, 0x00FFFF), 300);
        EXPECT_EQ(CountPixels(main, area, RGB(0, 0, 0)) > 50, shadow);
        KeepPicture(main, shadow ? L"engine-title-shadow" : L"engine-title");
        EXPECT_EQ(_SetFont(session, 1, 8, L"Tahoma"), 0);
    }
    EXPECT_EACH(0, _SetTitle(session, L"", 40, 0x00FFFF), CountPixels(main, area, 0x00FFFF));
}

TEST_F(EngineWindows, PlaceBitmapsByTheirAnchors)
{
    _SetColor(session, 12, background);
    const auto [width, height] = Client();
    const long middle_x = (width - 8) / 2, middle_y = (height - 6) / 2;
    Table<int32_t, long, long> cases = {
        {0, 0, 0},   {1, width - 8 - 20, 30},  {128, middle_x, middle_y},  {4, width - 8 - 20, height - 6 - 30},
        {2, 20, 30}, {8, 20, height - 6 - 30}, {16384, middle_x, middle_y}};
    for (const auto& [flags, x, y] : cases) {
        ASSERT_EQ(Place(file, flags, 20, 30), 0);
        const RECT around{std::max(x - 2, 0L), std::max(y - 2, 0L), std::min(x + 10, width), std::min(y + 8, height)};
        EXPECT_EQ(CountPixels(main, {x, y, x + 8, y + 6}, red), 47) << flags;
        EXPECT_EQ(CountPixels(main, around, red), 47) << flags;
        EXPECT_EQ(PixelOf(main, x, y + 5), RGB(255, 0, 255));
    }
    ASSERT_EQ(Place(file + L";255,0,255", 2 | 32, 20, 30), 0);
    EXPECT_EQ(CountPixels(main, {20, 30, 28, 36}, red), 47);
    EXPECT_EQ(PixelOf(main, 20, 35), background) << "left out";

    // Over the whole window; the resource is blue, and the newer one lies above. A library is read as data: one
    // whose code can't run, since it begins in the header, does as well.
    std::string library = engine::ReadWhole(StandardTexts(), 10'000'000);
    library.replace(static_cast<uint8_t>(library[0x3C]) + 40u, 4, std::string("\2\0\0\0", 4));
    const std::wstring resource = Picture(L"other.dll", library) + L";501";
    for (const int32_t flags : {64, 16}) {
        ASSERT_EQ(Place(resource, flags, 0, 0, 2), 0);
        for (const auto& [x, y] : {std::pair(0L, 0L), {25, 33}, {width - 1, height - 1}})
            EXPECT_EQ(PixelOf(main, x, y), blue) << flags;
        EXPECT_EQ(Place(L"", 0x8000, 0, 0, 2), 0);
        EXPECT_EQ(PixelOf(main, 25, 33), red);
    }
    EXPECT_EQ(Place(L"", 0x8000), 0);
    EXPECT_EQ(PixelOf(main, 25, 33), background);
    EXPECT_LT(Place(session.folder().Setup(L"product.json"), 2), 0) << "no picture";
}

TEST_F(EngineWindows, LetPicturesComeIntoViewByTheEffect)
{
    const std::wstring large = Picture(L"large.bmp", PlainBitmap(200, 100, 0xFF0000));
    _SetColor(session, 12, background);
    const RECT place{10, 10, 210, 110};
    for (int32_t effect = 0; effect <= 7; ++effect) {
        ASSERT_EQ(_SetDisplayEffect(session, effect), 0);
        ASSERT_EQ(Place(large, 2, 10, 10), 0);
        const long first = CountPixels(main, place, red);
        EXPECT_EQ(first < 5000, effect >= 1 && effect <= 6) << effect << " " << first;
        EXPECT_TRUE(PumpUntil([&] {
            UpdateWindow(main);
            return PixelOf(main, 10, 10) == red && PixelOf(main, 209, 109) == red &&
                   CountPixels(main, place, red) == 20000;
        })) << effect;
        Place(L"", 0x8000);
    }
}

TEST_F(EngineWindows, ForgetPicturesThatGoDuringTheirEffect)
{
    _SetColor(session, 12, background);
    ASSERT_EQ(_SetDisplayEffect(session, 2), 0);
    ASSERT_EQ(Place(Picture(L"large.bmp", PlainBitmap(200, 100, 0xFF0000)), 2, 10, 10), 0);
    ASSERT_TRUE(PumpUntil([&] { return CountPixels(main, {10, 10, 210, 110}, red) > 0; }));
    EXPECT_EQ(Place(L"", 0x8000), 0);
    SendMessageW(main, WM_TIMER, 1, 0);
    EXPECT_FALSE(KillTimer(main, 1)) << "nothing moves any more";
    EXPECT_EQ(CountPixels(main, {10, 10, 210, 110}, background), 20000);
}

TEST_F(EngineWindows, AskBeforeTheyClose)
{
    for (const int answer : {IDNO, IDYES}) {
        const DialogDriver driver({[&] {
            const HWND box = DialogNamed(L"Probe");
            // A second one does not ask again.
            return box && !SendMessageW(main, WM_CLOSE, 0, 0) && DialogNamed(L"Probe") == box &&
                   PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        }});
        SendMessageW(main, WM_CLOSE, 0, 0);
        EXPECT_TRUE(IsWindow(main));
        EXPECT_EQ(_ComponentMoveData(session, L"DATA", 0),
                  answer == IDYES ? static_cast<int32_t>(HRESULT_FROM_WIN32(ERROR_CANCELLED)) : 0);
    }
}

TEST_F(EngineWindows, ShowTheWaitMessage)
{
    EXPECT_EQ(_SdShowMsg(session, L"", 0), 0);
    EXPECT_EQ(DialogNamed(L"Please wait"), nullptr);
    EXPECT_EQ(_SdShowMsg(session, L"Looking", 1), 0);
    const HWND message = DialogNamed(L"Please wait");
    ASSERT_TRUE(IsWindowVisible(message));
    EXPECT_EQ(TextOf(GetDlgItem(message, 710)), L"Looking");
    EXPECT_EQ(GetWindow(message, GW_OWNER), main);
    EXPECT_EQ(_SdShowMsg(session, L"Still looking", 1), 0);
    EXPECT_EQ(TextOf(GetDlgItem(message, 710)), L"Still looking");
    EXPECT_EQ(_SdShowMsg(session, L"", 0), 0);
    EXPECT_FALSE(IsWindow(message));

    // With a current dialog that is the owner.
    const TestDialog dialog(session);
    EXPECT_EQ(_SdShowMsg(session, L"x", 1), 0);
    EXPECT_EQ(GetWindow(DialogNamed(L"Please wait"), GW_OWNER), dialog.window());
    EXPECT_EQ(_SdShowMsg(session, L"", 0), 0);
}

TEST(WaitMessages, StayHiddenInSilentModeUnlessTheyAreAskedFor)
{
    for (const std::optional<bool> asked : {std::optional<bool>(), {false}, {true}}) {
        // The library's own silent mode; the engine shows what it is told to.
        const Session silent([](engine::Options& options) {
            options.windows = engine::Windows::all;
            options.facts.emplace(10, variant(true));
            options.variables.emplace_back(L"VHRES", StandardTexts());
        });
        wchar_t text[512] = L"";
        int32_t flag = 0;
        __GetCmdLineOptions(silent, &flag, &flag, &flag, &flag, &flag, text, text, text, text, text, text, 512);
        EXPECT_TRUE(!asked || _SetSilentSdShowMsg(silent, *asked) == 0);
        EXPECT_EQ(_SdShowMsg(silent, L"x", 1), 0);
        EXPECT_EQ(IsWindowVisible(DialogNamed(L"Please wait")) != 0, asked.value_or(false));
        EXPECT_NE(DialogNamed(L"Please wait"), nullptr) << "it is there all the same";
        EXPECT_EQ(_SdShowMsg(silent, L"", 0), 0);
    }
}

struct StatusWindows : EngineWindows {
    HWND Open(int32_t style = 4)
    {
        EXPECT_EQ(_EnableStatus(session, style), 0);
        return reinterpret_cast<HWND>(_CmdGetHwndDlg(session, L"ProgressDlg"));
    }
};

TEST_F(StatusWindows, ShowTitleImageBrandAndBar)
{
    ASSERT_EQ(_SetAltMainImage(session, -2, file.c_str()), 0);
    const HWND status = Open();
    ASSERT_TRUE(IsWindowVisible(status));
    EXPECT_EQ(GetWindow(status, GW_OWNER), main);
    EXPECT_EQ(_SetTitle(session, L"Working", 0, static_cast<int32_t>(0xFF000100)), 0);
    EXPECT_EQ(TextOf(status), L"Working");
    EXPECT_EQ(TextOf(GetDlgItem(status, 1400)), L"Working");
    const HWND image = GetDlgItem(status, 1200);
    UpdateWindow(image);
    EXPECT_EQ(PixelOf(image, 6, 2), red);
    EXPECT_EQ(_SetAltMainImage(session, 0, L""), 0);
    EXPECT_FALSE(IsWindowVisible(image));

    const HWND bar = VisibleChild(status, PROGRESS_CLASSW);
    ASSERT_NE(bar, nullptr);
    const RECT usual = PlaceOnScreen(bar);
    EXPECT_EQ(_SizeWindow(session, 36, 111, 22), 0);
    EXPECT_EQ(PlaceOnScreen(bar), (RECT{usual.left, usual.top, usual.left + 111, usual.top + 22}));
    EXPECT_EQ(_SizeWindow(session, 36, 0, 0), 0);
    EXPECT_EQ(PlaceOnScreen(bar), usual);
    const HWND line = GetDlgItem(status, 1300);
    EXPECT_EQ(_DisableBranding(session, L""), 0);
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(status, 7)));
    EXPECT_EQ(PlaceOnScreen(line).left, PlaceOnScreen(GetDlgItem(status, 7)).left);
    KeepPicture(status, L"engine-status");

    EXPECT_EQ(Open(57), status) << "one that is open stays";
    EXPECT_EQ(_EndDialog(session, L"ProgressDlg"), 0);
    EXPECT_FALSE(IsWindow(status));
    EXPECT_EQ(_EnableStatus(session, 57), static_cast<int32_t>(HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND)));
    EXPECT_EQ(_CmdGetHwndDlg(session, L"ProgressDlg"), 0);
}

TEST_F(StatusWindows, StandOnTheStackOfDialogs)
{
    const auto current = [&] {
        wchar_t name[16] = L"~";
        _GetCurrentDialogName(session, name, 16);
        return std::wstring(name);
    };
    EXPECT_EQ(_CmdGetHwndDlg(session, L"ProgressDlg"), 0);
    EXPECT_EQ(_EnableStatus(session, 99), -1);
    EXPECT_EQ(current(), L"~") << "no window, no name";
    const HWND status = Open();
    EXPECT_EQ(current(), L"ProgressDlg");
    EXPECT_EQ(_CtrlGetParentWindowHelper(session), reinterpret_cast<int64_t>(status));
    EXPECT_EQ(_CmdGetHwndDlg(session, L""), reinterpret_cast<int64_t>(status));
    {
        const TestDialog dialog(session, Stage::defined, L"d", 100);
        ASSERT_EQ(dialog.Wait(), DialogCreated);
        EXPECT_FALSE(IsWindowEnabled(status));
        EXPECT_EQ(_CtrlGetParentWindowHelper(session), reinterpret_cast<int64_t>(dialog.window()));
    }
    EXPECT_TRUE(IsWindowEnabled(status));
    // What the engine refuses leaves all as it is.
    session.calls().FailCall(L"ISetupProgress.Close", E_FAIL);
    EXPECT_EQ(_DisableStatus(session), E_FAIL);
    EXPECT_EQ(current(), L"ProgressDlg");
    session.calls().Reset();
    EXPECT_EQ(_DisableStatus(session), 0);
    EXPECT_EQ(current(), L"~");
}

// Without a dialog the window of an installer around the setup, where a fact asks for it.
TEST(ParentWindows, AreTheInstallersWhereAFactSaysSo)
{
    WNDCLASSW made{};
    made.lpfnWndProc = &DefWindowProcW;
    made.lpszClassName = L"MsiDialogCloseClass";
    RegisterClassW(&made);
    for (const bool asked : {true, false}) {
        const TextSession session(L"", StandardTexts(), nullptr, {{40, variant(long{asked})}});
        EXPECT_EQ(_CtrlGetParentWindowHelper(session), 0);
        // The first dialog of the desktop counts in an installer's process alone.
        const HWND other = NewWindow(L"#32770", WS_POPUP);
        EXPECT_EQ(_CtrlGetParentWindowHelper(session), 0);
        DestroyWindow(other);
        const HWND installer = NewWindow(made.lpszClassName, WS_POPUP);
        EXPECT_EQ(_CtrlGetParentWindowHelper(session), asked ? reinterpret_cast<int64_t>(installer) : 0);
        DestroyWindow(installer);
    }
    UnregisterClassW(made.lpszClassName, nullptr);
}

TEST_F(StatusWindows, FollowTheTransferToItsStop)
{
    const HWND status = Open(), bar = VisibleChild(status, PROGRESS_CLASSW);
    EXPECT_EACH(0, _FeatureSpendCost(session, 0, 0), SendMessageW(bar, PBM_GETPOS, 0, 0),
                _StatusUpdate(session, 1, 70));
    // A message that came before is handled while the files move.
    bool seen = false;
    SetWindowSubclass(
        status,
        [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR flag) -> LRESULT {
            if (message == WM_USER)
                *reinterpret_cast<bool*>(flag) = true;
            return DefSubclassProc(window, message, wParam, lParam);
        },
        1, reinterpret_cast<DWORD_PTR>(&seen));
    PostMessageW(status, WM_USER, 0, 0);
    EXPECT_EQ(_ComponentMoveData(session, L"DATA", 0), 0);
    EXPECT_TRUE(seen);
    EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 70);
    EXPECT_EQ(TextOf(GetDlgItem(status, 1402)), L"70 %");
    EXPECT_EQ(TextOf(GetDlgItem(status, 1401)), session.folder().Target(L"d.bin"));
    // Without the link the bar stays.
    EXPECT_EACH(0, _StatusUpdate(session, 0, 99), _ComponentReinstall(session));
    EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 70);
    EXPECT_EQ(_DisableStatus(session), 0);
}

TEST(StatusWindowsAlone, NeedNoMainWindow)
{
    const TextSession session(L"", StandardTexts(), nullptr, {}, engine::Windows::dialogs);
    EXPECT_EACH(0, GetHandle(session, -2), _SetTitle(session, L"T", 20, 0), _EnableStatus(session, 4));
    const auto status = reinterpret_cast<HWND>(_CmdGetHwndDlg(session, L"ProgressDlg"));
    EXPECT_TRUE(IsWindowVisible(status));
    EXPECT_EQ(GetWindow(status, GW_OWNER), nullptr);
    EXPECT_EQ(FindWindowW(L"VHEngineWindow", nullptr), nullptr);
    EXPECT_EQ(_DisableStatus(session), 0);
}

TEST(StatusWindowCancel, AsksBeforeItDoesSo)
{
    for (const int answer : {IDNO, IDYES}) {
        const TextSession session(L"", StandardTexts(), nullptr, {}, engine::Windows::all);
        EXPECT_EQ(_EnableStatus(session, 4), 0);
        const auto status = reinterpret_cast<HWND>(_CmdGetHwndDlg(session, L"ProgressDlg"));
        const DialogDriver driver({[&] {
            const HWND box = DialogNamed(L"Probe");
            return box && PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        }});
        PostMessageW(status, WM_COMMAND, IDCANCEL, reinterpret_cast<LPARAM>(GetDlgItem(status, IDCANCEL)));
        EXPECT_EQ(_ComponentMoveData(session, L"DATA", 0),
                  answer == IDYES ? static_cast<int32_t>(HRESULT_FROM_WIN32(ERROR_CANCELLED)) : 0);
        EXPECT_EQ(engine::test::Exists(session.folder().Target(L"a.bin")), answer == IDNO);
        EXPECT_EQ(_DisableStatus(session), 0);
    }
}

HWND KeptPicture() { return FindWindowW(L"VHEnginePicture", nullptr); }

TEST_F(EngineWindows, KeepThePictureOfADialogUntilTheNext)
{
    for (const int32_t on : {0, 1}) {
        EXPECT_EQ(_EnableDialogCache(session, on), 0);
        RECT place{};
        {
            const TestDialog dialog(session, Stage::shown);
            place = PlaceOnScreen(dialog.window());
        }
        ASSERT_EQ(KeptPicture() != nullptr, on != 0);
        if (!on)
            continue;
        EXPECT_EQ(PlaceOnScreen(KeptPicture()), place);
        EXPECT_TRUE(IsWindowVisible(KeptPicture()));
        const HDC over = GetDC(KeptPicture());
        PatBlt(over, 0, 0, 50, 50, BLACKNESS);
        ReleaseDC(KeptPicture(), over);
        RedrawWindow(KeptPicture(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        EXPECT_NE(PixelOf(KeptPicture(), 40, 40), RGB(0, 0, 0)) << "it paints itself";
        const TestDialog next(session, Stage::created, L"n", 200);
        EXPECT_NE(KeptPicture(), nullptr);
        ASSERT_EQ(next.WaitOrHelp(), 8);
        EXPECT_EQ(KeptPicture(), nullptr);
    }
    ASSERT_NE(KeptPicture(), nullptr) << "of the last one";
    EXPECT_EQ(_EnableDialogCache(session, 0), 0);
    EXPECT_EQ(KeptPicture(), nullptr);
}

TEST(EngineWindowHandles, StayLevelOverManyRuns)
{
    const auto run = [] {
        TextSession session(L"", StandardTexts(), nullptr, {}, engine::Windows::all);
        _SetTitle(session, L"Title", 30, 0xFFFFFF);
        _PlaceBitmap(session, (StandardTexts() + L";501").c_str(), 1, 0, 0, 16);
        _SdShowMsg(session, L"x", 1);
        _SdShowMsg(session, L"x", 0);
        _EnableStatus(session, 4);
        _ComponentMoveData(session, L"DATA", 0);
        _GetFont(session, L"Tahoma", 9, 0);
        _DisableStatus(session);
    };
    const auto handles = [] { return std::pair(OpenGdiObjects(), Windows()); };
    for (int i = 0; i < 3; ++i)
        run();
    const auto before = handles();
    for (int i = 0; i < 10; ++i)
        run();
    EXPECT_EQ(handles(), before);
    EXPECT_EQ(FindWindowW(L"VHEngineWindow", nullptr), nullptr);
}

} // namespace
