// Script dialogs, driven by what their controls send.
#include "../support/script_dialogs.h"
#include "../support/bitmap_writer.h"
#include "../support/handle_counts.h"
#include "../support/pixels.h"

#include <commctrl.h>

namespace {

constexpr int edit = 1001, combo = 1002, list = 1003, button = 1004, text = 1005, link = 1006, tree = 1007;
constexpr int help = 8; // only the key came that ends a wait

struct ScriptDialogs : testing::Test {
    TextSession session{DialogTemplates(), StandardTexts()};
};

TEST_F(ScriptDialogs, AreCreatedThenShownThenEnded)
{
    const TestDialog dialog(session, Stage::defined);
    EXPECT_EQ(_ReleaseDialog(session, L"d"), 0) << "not created yet";
    const TestDialog again(session, Stage::defined);
    EXPECT_EACH(0, _CmdGetHwndDlg(session, L"d"), _CmdGetMsg(session, L"d"));

    EXPECT_EQ(again.Wait(), DialogCreated);
    const HWND window = again.window();
    EXPECT_TRUE(IsWindow(window) && !IsWindowVisible(window));
    EXPECT_EQ(_ReleaseDialog(session, L"d"), -2);
    // Events that wait already come before the window shows.
    SendMessageW(window, WM_COMMAND, button, reinterpret_cast<LPARAM>(again.Control(button)));
    EXPECT_EQ(again.Wait(), button);
    EXPECT_FALSE(IsWindowVisible(window));
    EXPECT_EQ(again.WaitOrHelp(), help);
    EXPECT_TRUE(IsWindowVisible(window));
    KeepPicture(window, L"script-dialog-classic");

    SendMessageW(window, WM_COMMAND, IDCANCEL, reinterpret_cast<LPARAM>(again.Control(IDCANCEL)));
    EXPECT_EQ(again.End(), 0);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(_CmdGetMsg(session, L"d"), WM_COMMAND) << "the event stays";
    EXPECT_EQ(_CmdGetParam1(session, L"d"), button);
    EXPECT_EQ(again.Wait(), DialogCreated) << "can be waited on again";
    EXPECT_EQ(again.WaitOrHelp(), 8) << "what waited at the end is gone";
}

// What a control's command becomes in the two ways of delivery, and under which codes.
TEST_F(ScriptDialogs, TellCommandsByClassAndCode)
{
    Table<int, UINT, bool, bool, int32_t, int32_t> cases = {
        {edit, EN_CHANGE, true, true, -1007, -1007},
        {edit, EN_UPDATE, true, false, -999, EN_UPDATE},
        {edit, EN_MAXTEXT, true, false, -999, EN_MAXTEXT},
        {edit, EN_SETFOCUS, false, false, 0, 0},
        {edit, EN_HSCROLL, false, false, 0, 0},
        {edit, EN_VSCROLL, false, false, 0, 0},
        {combo, CBN_SELCHANGE, true, true, -1005, -1005},
        {combo, CBN_DBLCLK, true, false, -999, CBN_DBLCLK},
        {combo, CBN_SETFOCUS, false, false, 0, 0},
        {combo, CBN_EDITCHANGE, true, true, -1004, CBN_EDITCHANGE},
        {combo, CBN_EDITUPDATE, true, false, -999, CBN_EDITUPDATE},
        {combo, CBN_DROPDOWN, true, false, -999, CBN_DROPDOWN},
        {combo, CBN_CLOSEUP, true, false, -999, CBN_CLOSEUP},
        {combo, CBN_SELENDOK, true, false, -999, CBN_SELENDOK},
        {combo, CBN_SELENDCANCEL, true, false, -999, CBN_SELENDCANCEL},
        {list, LBN_SELCHANGE, true, true, -1009, -1009},
        {list, LBN_DBLCLK, true, true, -1008, -1008},
        {list, LBN_SELCANCEL, true, false, -999, LBN_SELCANCEL},
        {list, LBN_SETFOCUS, false, false, 0, 0},
        {button, BN_CLICKED, true, true, -1010, BN_CLICKED},
        {button, BN_KILLFOCUS, true, true, -1010, BN_KILLFOCUS},
        {text, STN_CLICKED, false, true, -999, STN_CLICKED},
        {link, 0, false, true, -999, 0},
        {tree, 1, false, false, 0, 0},
        {4711, BN_CLICKED, false, false, 0, 0}};
    for (const bool all : {false, true}) {
        const int32_t mode = all ? DialogAllCommands : DialogStandardEvents;
        const TestDialog dialog(session, Stage::shown, L"d", 100, mode | DialogCentered);
        for (const auto& [id, code, standard, wanted_all, sub, notification] : cases) {
            dialog.Post(id, code);
            const bool delivered = all ? wanted_all : standard;
            ASSERT_EQ(dialog.WaitOrHelp(), delivered ? id : help) << id << " " << code << " " << mode;
            if (!delivered)
                continue;
            EXPECT_EQ(_CmdGetMsg(session, L"d"), WM_COMMAND);
            EXPECT_EQ(_CmdGetParam1(session, L"d"), MAKEWPARAM(id, code));
            EXPECT_EQ(_CmdGetParam2(session, L"d"), reinterpret_cast<int64_t>(dialog.Control(id)));
            EXPECT_EQ(_CtrlGetSubCommand(session, L"d"), sub) << id << " " << code;
            EXPECT_EQ(_CtrlGetNotificationCode(session, L"d"), notification) << id << " " << code;
        }
    }
    // Without a way of delivery nothing comes.
    const TestDialog deaf(session, Stage::created, L"deaf", 100, DialogCentered);
    deaf.Post(button, BN_CLICKED);
    EXPECT_EQ(deaf.WaitOrHelp(), help);
}

// A notification as the control of that number would send it.
LRESULT Notify(const TestDialog& dialog, int id, UINT code)
{
    NMLINK sent{};
    sent.hdr = {dialog.Control(id), static_cast<UINT_PTR>(id), code};
    std::wcscpy(sent.item.szUrl, id == link ? L"http://127.0.0.1/page" : L"");
    std::wcscpy(sent.item.szID, L"first");
    return SendMessageW(dialog.window(), WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&sent));
}

TEST_F(ScriptDialogs, TellNotificationsInStandardDeliveryAlone)
{
    constexpr UINT moved = 49; // as scripts know them
    Table<int, UINT, UINT> delivered = {{tree, TVN_SELCHANGEDW, TVN_SELCHANGEDW + moved},
                                        {tree, NM_DBLCLK, NM_DBLCLK + moved},
                                        {tree, NM_KEYDOWN, NM_KEYDOWN + moved},
                                        {edit, 4000, 4000}};
    const TestDialog all(session, Stage::created, L"all", 100, DialogAllCommands);
    const TestDialog dialog(session, Stage::shown);
    for (const auto& [id, code, told] : delivered) {
        Notify(all, id, code);
        EXPECT_EQ(all.WaitOrHelp(), help) << code;
        Notify(dialog, id, code);
        ASSERT_EQ(dialog.WaitOrHelp(), id) << code;
        EXPECT_EQ(_CmdGetMsg(session, L"d"), WM_NOTIFY);
        EXPECT_EQ(_CmdGetParam1(session, L"d"), id);
        EXPECT_EQ(_CtrlGetNotificationCode(session, L"d"), static_cast<int32_t>(told));
        EXPECT_EQ(_CtrlGetSubCommand(session, L"d"), EventNone);
    }
    for (const UINT code :
         {NM_CUSTOMDRAW, NM_SETCURSOR, NM_RELEASEDCAPTURE, NM_NCHITTEST, NM_HOVER, NM_KILLFOCUS, NM_SETFOCUS, 4000u}) {
        Notify(dialog, code == 4000 ? button : tree, code);
        EXPECT_EQ(dialog.WaitOrHelp(), help) << code;
    }
}

TEST_F(ScriptDialogs, KeepTheAddressOfALinkThatWasClicked)
{
    const TestDialog dialog(session);
    // Result, size and text.
    const auto link_of = [&](int id, int32_t size) {
        wchar_t buffer[64] = L"~";
        const int32_t result = _CtrlGetUrlForLinkClicked(session, L"d", id, buffer, &size);
        return std::to_wstring(result) + L" " + std::to_wstring(size) + L" " + buffer;
    };
    const auto set = [&](int id, const wchar_t* content) {
        const int32_t result = _CtrlSetHtmlContent(session, L"d", id, content);
        return std::to_wstring(result) + (dialog.Control(id) ? L" " + TextOf(dialog.Control(id)) : L" gone");
    };
    // The mark made a link of the static control.
    const std::wstring made = L"Go <a href=\"http://127.0.0.1/x\">there</a>";
    EXPECT_EQ(ClassOf(dialog.Control(1008)), L"SysLink");
    RECT told{100, 110, 200, 120};
    MapDialogRect(dialog.window(), &told);
    EXPECT_EQ(dialog.Place(1008), told);
    EXPECT_EQ(GetWindowLongW(dialog.Control(1008), GWL_STYLE), 0x50010000);
    EXPECT_EQ(GetWindowLongW(dialog.Control(1008), GWL_EXSTYLE), 32);
    EXPECT_EQ(SendMessageW(dialog.Control(1008), WM_GETFONT, 0, 0), SendMessageW(dialog.window(), WM_GETFONT, 0, 0));
    EXPECT_EQ(link_of(1008, 10), L"0 10 ") << "nothing clicked yet";
    EXPECT_EQ(link_of(link, 10), L"-1 10 ~") << "no holder";

    EXPECT_EQ(set(link, L"[hyperlink]<a>x</a>"), L"0 <a>x</a>");
    for (const UINT code : {NM_CLICK, NM_RETURN}) {
        Notify(dialog, link, code);
        ASSERT_EQ(dialog.WaitOrHelp(), link);
        EXPECT_EQ(_CmdGetMsg(session, L"d"), WM_COMMAND);
        EXPECT_EQ(_CmdGetParam1(session, L"d"), link);
    }
    EXPECT_EQ(link_of(link, 20), L"111 21 ~") << "no room";
    EXPECT_EQ(link_of(link, 21), L"0 21 http://127.0.0.1/page");
    // Without an address the link's name stands in.
    Notify(dialog, 1008, NM_CLICK);
    ASSERT_EQ(dialog.WaitOrHelp(), 1008);
    EXPECT_EQ(link_of(1008, 63), L"0 63 first");

    EXPECT_EQ(set(1008, L"plain"), L"-1 " + made);
    EXPECT_EQ(set(1008, L"[HTML]x"), L"-1 " + made);
    EXPECT_EQ(set(button, L"plain"), L"0 &Next");
    EXPECT_EQ(set(1008, L"[html]<a>y</a>"), L"0 <a>y</a>") << "the kind is not looked at again";
    EXPECT_EQ(set(text, L"[html]<p>x"), L"-1 gone") << "there is no browser to host here";
    // Links stay with the definition: another run makes none anew.
    EXPECT_EQ(dialog.End(), 0);
    ASSERT_EQ(dialog.Wait(), DialogCreated);
    EXPECT_EQ(ClassOf(dialog.Control(1008)), L"Static");
    EXPECT_EQ(link_of(1008, 63), L"0 63 first");
}

// How a dialog wants a static control's ground.
std::wstring ColorOf(HWND dialog, int id)
{
    const HDC device = GetDC(dialog);
    SetBkMode(device, OPAQUE);
    const auto brush = SendMessageW(dialog, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(device),
                                    reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
    const bool transparent = GetBkMode(device) == TRANSPARENT;
    ReleaseDC(dialog, device);
    LOGBRUSH kind{};
    GetObjectW(reinterpret_cast<HBRUSH>(brush), sizeof(kind), &kind);
    if (transparent && kind.lbStyle == BS_NULL)
        return L"clear";
    return kind.lbColor == GetSysColor(COLOR_WINDOW) ? L"window" : L"usual";
}

TEST_F(ScriptDialogs, PrepareTheirSpecialControls)
{
    ASSERT_EQ(_DialogSetFont(session, L"A face whose name is longer than 32 units", 12), 0);
    const TestDialog dialog(session, Stage::defined, L"d", 200);
    ASSERT_EQ(_DialogSetFont(session, L"", 0), 0);
    ASSERT_EQ(dialog.Wait(), DialogCreated);
    const auto font_of = [&](int id) {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(dialog.Control(id), WM_GETFONT, 0, 0)), sizeof(font), &font);
        return font;
    };
    EXPECT_EQ(font_of(50).lfWeight, 700);
    EXPECT_EQ(font_of(51).lfWeight, 700) << "the template's own";
    EXPECT_EQ(font_of(51).lfItalic, 1);
    EXPECT_EQ(GetWindowLongW(dialog.Control(1300), GWL_STYLE) & 0x17, SS_ETCHEDHORZ);
    EXPECT_TRUE(GetWindowLongW(dialog.Control(1300), GWL_EXSTYLE) & WS_EX_STATICEDGE);
    EXPECT_NE(SendMessageW(dialog.Control(17808), STM_GETICON, 0, 0), 0);

    EXPECT_EQ(ColorOf(dialog.window(), 50), L"clear");
    EXPECT_EQ(ColorOf(dialog.window(), 51), L"clear");
    EXPECT_EQ(ColorOf(dialog.window(), 52), L"window");
    EXPECT_EQ(ColorOf(dialog.window(), 1005), L"usual");
    EXPECT_EQ(dialog.WaitOrHelp(), help);
    KeepPicture(dialog.window(), L"script-dialog-extended");
}

// A page of a wizard shows its own ground behind labels, where it has a banner.
TEST_F(ScriptDialogs, ShowTheGroundOfAWizardPageBehindItsLabels)
{
    const HMODULE themes = LoadLibraryW(L"uxtheme.dll");
    const auto properties =
        reinterpret_cast<DWORD(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(themes, "GetThemeAppProperties")));
    const std::wstring themed = properties() & 2 ? L"window" : L"clear";
    FreeLibrary(themes);
    const Table<int32_t, const wchar_t*, std::wstring, std::wstring> cases = {
        {10205, L"#200", L"clear", themed},   {12006, L"#200", L"clear", themed},  {12031, L"#200", L"clear", themed},
        {12032, L"#200", L"clear", themed},   {12063, L"#200", L"clear", themed},  {12064, L"#200", L"clear", themed},
        {12065, L"#200", L"usual", L"usual"}, {12006, L"#100", L"usual", L"usual"}};
    for (const auto& [number, name, label, radio] : cases) {
        const TestDialog dialog(session, Stage::created, L"d", number, 1, DialogTemplates(), name);
        NewWindow(L"Button", WS_CHILD | BS_AUTORADIOBUTTON, {0, 0, 9, 9}, dialog.window(), 2001);
        EXPECT_EQ(ColorOf(dialog.window(), 1005), label) << number << name;
        EXPECT_EQ(ColorOf(dialog.window(), 2001), radio) << number << name;
    }
}

TEST_F(ScriptDialogs, ShowTheBrandOrALongerLine)
{
    for (const bool brand : {true, false}) {
        EXPECT_EQ(brand ? 0 : _DisableBranding(session, L""), 0);
        EXPECT_EQ(brand ? 0 : _SetTitle(session, L"Caption", 0, static_cast<int32_t>(0xFF000100)), 0);
        const TestDialog dialog(session, Stage::created, L"d", 200);
        const RECT line = dialog.Place(1300), mark = dialog.Place(7);
        RECT told{60, 164, 290, 165};
        MapDialogRect(dialog.window(), &told);
        EXPECT_EQ(TextOf(dialog.window()), brand ? L"Extended" : L"Caption");
        EXPECT_EQ(line.left, brand ? told.left : mark.left);
        EXPECT_TRUE(line.right == told.right && line.top == told.top);
        ASSERT_EQ(dialog.WaitOrHelp(), 8);
        Repaint(dialog.window());
        EXPECT_FALSE(GetUpdateRect(dialog.window(), nullptr, FALSE));
        const RECT around{mark.left - 1, mark.top - 1, mark.left + 40, mark.top + 14};
        const long shadow = CountPixels(dialog.window(), around, GetSysColor(COLOR_BTNSHADOW));
        EXPECT_EQ(shadow > 40, brand) << shadow;
    }
    const TestDialog untitled(session, Stage::created, L"untitled");
    EXPECT_EQ(TextOf(untitled.window()), L"Classic");
}

TEST_F(ScriptDialogs, StandInTheMiddleOfTheirParent)
{
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const auto middle = [](LONG from, LONG to) { return (from + to) / 2; };
    enum state { visible, hidden, iconic };
    const RECT usual{300, 200, 700, 600};
    const POINT of_screen{middle(work.left, work.right), middle(work.top, work.bottom)};
    // At the edge all of the dialog stays in sight.
    const Table<state, RECT, POINT> cases = {{visible, usual, {500, 400}},
                                             {visible, {0, 0, 40, 40}, {-1, -1}},
                                             {hidden, usual, of_screen},
                                             {iconic, usual, of_screen}};
    for (const auto& [seen, place, centre] : cases) {
        const HWND parent = NewWindow(L"Static", WS_POPUP | (seen == hidden ? 0 : WS_VISIBLE), place);
        if (seen == iconic)
            ShowWindow(parent, SW_MINIMIZE);
        ASSERT_EQ(_DefineDialog(session, L"d", nullptr, L"", 100, L"", 0, parent, DialogCentered), 0);
        ASSERT_EQ(_WaitOnDialog(session, L"d"), DialogCreated);
        const RECT own = PlaceOnScreen(reinterpret_cast<HWND>(_CmdGetHwndDlg(session, L"d")));
        const bool at_edge = own.left == work.left && own.top == work.top;
        EXPECT_EQ(at_edge, centre.x < 0);
        EXPECT_TRUE(at_edge || (std::abs(middle(own.left, own.right) - centre.x) <= 1 &&
                                std::abs(middle(own.top, own.bottom) - centre.y) <= 1))
            << seen;
        EXPECT_FALSE(IsIconic(parent)) << "restored";
        EXPECT_EACH(0, _EndDialog(session, L"d"), _ReleaseDialog(session, L"d"));
        DestroyWindow(parent);
    }
}

TEST_F(ScriptDialogs, StackNamesAndEnableWhatIsOnTop)
{
    const auto current = [&] {
        wchar_t name[16] = L"~";
        const int32_t code = _GetCurrentDialogName(session, name, 16);
        return std::to_wstring(code) + L" " + name;
    };
    EXPECT_EQ(current(), L"-1 ~");
    const TestDialog upper(session, Stage::defined, L"upper", 200), lower(session, Stage::created, L"lower");
    EXPECT_EQ(current(), L"0 lower");
    ASSERT_EQ(upper.Wait(), DialogCreated);
    EXPECT_EQ(current(), L"0 upper");
    EXPECT_EQ(_CmdGetHwndDlg(session, L""), reinterpret_cast<int64_t>(upper.window()));
    EXPECT_EQ(_CmdGetHwndDlg(session, L"nobody"), 0);
    EXPECT_FALSE(IsWindowEnabled(lower.window()));
    EXPECT_TRUE(IsWindowEnabled(upper.window()));
    wchar_t small[6] = L"~";
    EXPECT_EQ(_GetCurrentDialogName(session, small, 5), 6);
    EXPECT_EQ(small[0], L'~');
    EXPECT_EQ(upper.End(), 0);
    EXPECT_EQ(current(), L"0 lower");
    EXPECT_TRUE(IsWindowEnabled(lower.window()));

    EXPECT_EQ(_EnablePrevDialog(session, 0, L"ghost"), 0);
    EXPECT_FALSE(IsWindowEnabled(lower.window()));
    EXPECT_EQ(current(), L"0 ghost");
    EXPECT_EACH(0, _EnablePrevDialog(session, 0, L"second"), _EnablePrevDialog(session, 1, L"ignored"),
                _EnablePrevDialog(session, 1, nullptr));
    EXPECT_TRUE(IsWindowEnabled(lower.window()));
    // A name that was looked for as the current dialog is taken; one that was only pushed is not.
    EXPECT_EQ(_DefineDialog(session, L"ghost", nullptr, L"", 100, L"", 0, nullptr, 1), -1);
    EXPECT_EQ(_ReleaseDialog(session, L"ghost"), -4);
    EXPECT_EQ(_WaitOnDialog(session, L"ghost"), -1);
    EXPECT_EQ(_DefineDialog(session, L"second", nullptr, L"", 100, L"", 0, nullptr, 1), 0);
}

TEST_F(ScriptDialogs, AreDefinedOnceFromALibraryThatIsThere)
{
    const std::wstring templates = DialogTemplates();
    Table<const wchar_t*, std::wstring, int32_t, const wchar_t*, int32_t, int32_t> cases = {
        {L"own", templates, 100, L"", 0, DialogCreated},
        {L"named", templates, 0, L"NAMED", 0, DialogCreated},
        {L"named", templates, 100, L"", -1, DialogCreated},
        {L"gone", templates + L"x", 100, L"", -1, -1},
        {L"missing number", templates, 4711, L"", 0, -1},
        {L"no number", L"", 4711, L"", 0, -1},
        // Without a library the number leads to it, also where the dialog has a name.
        {L"name alone", L"", 0, L"NAMED", 0, -1},
        {L"no library", StandardTexts() + L"\\..\\vhtexts_dialogs.dll.txt", 100, L"", -1, -1}};
    for (const auto& [name, library, number, template_name, defined, first_wait] : cases) {
        EXPECT_EQ(_DefineDialog(session, name, nullptr, library.c_str(), number, template_name, 4711, nullptr,
                                DialogStandardEvents),
                  defined)
            << name;
        EXPECT_EQ(_WaitOnDialog(session, name), first_wait) << name;
        EXPECT_EQ(_EndDialog(session, name), defined && first_wait == -1 ? -1 : 0) << name;
    }
    // A module that was given goes before the libraries of the context, and behind a library that can be loaded.
    const std::wstring library = DialogTemplates();
    const Table<HMODULE, std::wstring, int32_t> modules = {
        {GetModuleHandleW(nullptr), L"", -1},
        {nullptr, StandardTexts() + L"\\..", -1},
        {LoadLibraryW(library.c_str()), StandardTexts() + L"\\..", DialogCreated},
        {GetModuleHandleW(nullptr), library, DialogCreated}};
    for (const auto& [module, path, first_wait] : modules) {
        ASSERT_EQ(_DefineDialog(session, L"m", module, path.c_str(), 100, L"", 0, nullptr, 1), 0) << path;
        EXPECT_EQ(_WaitOnDialog(session, L"m"), first_wait) << path;
        EXPECT_EACH(0, _EndDialog(session, L"m"), _ReleaseDialog(session, L"m"));
    }
    FreeLibrary(GetModuleHandleW(library.c_str()));
    // A library is held for the creation alone.
    EXPECT_EQ(session.session().CallsOf(L"ISetupResources.Free"), 5);
    EXPECT_EQ(_EndDialog(session, L"unknown"), -1);
    EXPECT_EQ(_ReleaseDialog(session, L"unknown"), -4);
    EXPECT_EACH(-1, _WaitOnDialog(session, L"unknown"), _CmdGetMsg(session, L"unknown"));
}

TEST_F(ScriptDialogs, TellOfTheHundredthFailure)
{
    const TestDialog dialog(session, Stage::defined, L"d", 4711);
    for (int i = 0; i < 199; ++i) {
        // The end of a dialog begins the count anew.
        ASSERT_EQ(i == 99 ? dialog.End() : -1, i == 99 ? 0 : -1);
        ASSERT_EQ(dialog.Wait(), -1) << i;
    }
    {
        const DialogDriver driver({[] {
            const HWND box = DialogNamed(L"Standard caption");
            return box && VisibleChild(box, L"Static", L"WaitOnDialog failed.") &&
                   PostMessageW(box, WM_COMMAND, IDOK, 0);
        }});
        EXPECT_EQ(dialog.Wait(), -1);
    }
    // The count starts anew.
    EXPECT_EQ(dialog.Wait(), -1);
}

// A message that was sent ends the dialog in the middle of its own wait.
LRESULT CALLBACK EndOnUser(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR context)
{
    if (message == WM_USER) {
        auto* const owner = reinterpret_cast<ObjectContext*>(context);
        EXPECT_EACH(0, _EndDialog(owner, L"d"), _ReleaseDialog(owner, L"d"));
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(ScriptDialogs, MayEndInsideTheirOwnWait)
{
    for (const bool posted : {true, false}) {
        const TestDialog dialog(session);
        SetWindowSubclass(dialog.window(), &EndOnUser, 1,
                          reinterpret_cast<DWORD_PTR>(static_cast<ObjectContext*>(session)));
        (posted ? PostMessageW : SendNotifyMessageW)(dialog.window(), WM_USER, 0, 0);
        EXPECT_EQ(dialog.Wait(), -1) << posted;
        EXPECT_EQ(_CmdGetMsg(session, L"d"), -1) << "gone";
    }
}

LONG WidthOfBitmap(HBITMAP bitmap)
{
    BITMAP facts{};
    GetObjectW(bitmap, sizeof(facts), &facts);
    return facts.bmWidth;
}
LONG WidthOfIcon(HICON icon)
{
    ICONINFO facts{};
    GetIconInfo(icon, &facts);
    const LONG width = WidthOfBitmap(facts.hbmColor);
    DeleteObject(facts.hbmColor);
    DeleteObject(facts.hbmMask);
    return width;
}

TEST_F(ScriptDialogs, ShowThePicturesThatTheirTextsName)
{
    const TestDialog dialog(session, Stage::created, L"EnterDisk", 400);
    // Made for twice the scale of this display.
    const auto shown = SendMessageW(dialog.Control(902), STM_GETIMAGE, IMAGE_ICON, 0);
    EXPECT_EQ(WidthOfIcon(reinterpret_cast<HICON>(shown)), 4);
    EXPECT_EQ(GetWindowLongW(dialog.Control(902), GWL_STYLE), 0x50000003);
    // A button with the bitmap style takes icons on some systems alone: what it is sent counts.
    std::wstring sent;
    const auto note = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR to) -> LRESULT {
        if (message == BM_SETIMAGE)
            *reinterpret_cast<std::wstring*>(to) += (wParam == IMAGE_ICON ? L"icon " : L"bitmap ") +
                                                    std::to_wstring(WidthOfIcon(reinterpret_cast<HICON>(lParam)));
        return DefSubclassProc(window, message, wParam, lParam);
    };
    SetWindowSubclass(dialog.Control(101), note, 1, reinterpret_cast<DWORD_PTR>(&sent));
    // Once, also where events come before the window shows.
    SendMessageW(dialog.window(), WM_COMMAND, 103, reinterpret_cast<LPARAM>(dialog.Control(103)));
    ASSERT_EQ(dialog.Wait(), 103);
    ASSERT_EQ(dialog.WaitOrHelp(), help);
    EXPECT_EQ(sent, L"icon 4");
    const auto bitmap = SendMessageW(dialog.Control(102), BM_GETIMAGE, IMAGE_BITMAP, 0);
    EXPECT_EQ(WidthOfBitmap(reinterpret_cast<HBITMAP>(bitmap)), 8);
    // A text with two fields ends it: the buttons behind stay as they are.
    const Table<int, LONG> styles = {{101, 0x380},        {102, 0x380},        {103, 0},           {104, BS_OWNERDRAW},
                                     {105, BS_OWNERDRAW}, {106, BS_OWNERDRAW}, {107, BS_OWNERDRAW}};
    for (const auto& [id, style] : styles)
        EXPECT_EQ(GetWindowLongW(dialog.Control(id), GWL_STYLE) & 0x38F, style) << id;
    // The main image is stretched over its control, which is hidden.
    EXPECT_FALSE(IsWindowVisible(dialog.Control(1200)));
    const RECT place = dialog.Place(1200);
    KeepPicture(dialog.window(), L"script-dialog-pictures");
    EXPECT_EQ(RepaintedPixel(dialog.window(), place.left + 1, place.top + 1), RGB(0, 255, 0));
    EXPECT_EQ(RepaintedPixel(dialog.window(), place.right - 2, place.bottom - 2), RGB(0, 255, 0));
    EXPECT_NE(RepaintedPixel(dialog.window(), place.left - 2, place.top - 2), RGB(0, 255, 0));
    EXPECT_EQ(dialog.End(), 0);
    // No picture at all.
    EXPECT_EQ(_SetAltMainImage(session, ImageNone, nullptr), 0);
    ASSERT_EQ(dialog.Wait(), DialogCreated);
    ASSERT_EQ(dialog.WaitOrHelp(), help);
    EXPECT_NE(RepaintedPixel(dialog.window(), place.left + 1, place.top + 1), RGB(0, 255, 0));
}

// Where the control stands, with a picture of 8 by 6 pixels, the lower left one magenta.
TEST_F(ScriptDialogs, ShowTheGroundOfAMainImageAroundIt)
{
    std::string rows;
    for (int i = 0; i < 48; ++i)
        rows += Long(i == 0 ? 0xFF00FF : 0xFF0000);
    const TempFolder folder;
    const std::wstring file = folder.Write(L"red.bmp", BitmapFile(BitmapHeader(8, 6, 32), "", rows));
    const COLORREF red = RGB(255, 0, 0), blue = RGB(0, 0, 255), face = GetSysColor(COLOR_BTNFACE);
    // A dialog without a ground has none of the dialog before it.
    const Table<const wchar_t*, COLORREF, COLORREF> cases = {
        {L";1;0;;0,0,255", blue, blue}, {L";1;0", face, face}, {L";0;0;;0,0,255", RGB(255, 0, 255), blue}};
    for (const auto& [behind, left_out, beside] : cases) {
        ASSERT_EQ(_SetAltMainImage(session, ImageText, (L"@" + file + behind).c_str()), 0);
        const TestDialog dialog(session, Stage::shown, L"d", 400);
        const RECT place = dialog.Place(1200);
        EXPECT_EQ(RepaintedPixel(dialog.window(), place.left + 3, place.top + 3), red) << behind;
        EXPECT_EQ(RepaintedPixel(dialog.window(), place.left, place.top + 5), left_out) << behind;
        EXPECT_EQ(RepaintedPixel(dialog.window(), place.left + 20, place.top + 20), beside) << behind;
    }
}

TEST_F(ScriptDialogs, AnswerForTheUserInSilentMode)
{
    TextSession silent{DialogTemplates(), StandardTexts(), nullptr, {{36, vh::variant(true)}}};
    ASSERT_EQ(__GetCmdLineOptions(silent, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, 0),
              0);
    const Table<const wchar_t*, int, LRESULT, LRESULT> cases = {
        {L"SdWelcomeMaint", 301, BST_UNCHECKED, BST_CHECKED},
        {L"sdwelcomemaint", 301, BST_CHECKED, BST_UNCHECKED},
        {L"SdFinishReboot", 502, BST_UNCHECKED, BST_CHECKED},
        {L"SdFinishUpdateReboot", 502, BST_UNCHECKED, BST_CHECKED},
        {L"SdFinishReboot", 301, BST_CHECKED, BST_UNCHECKED}};
    for (const auto& [name, id, first, second] : cases) {
        const TestDialog dialog(silent, Stage::created, name);
        SendMessageW(dialog.Control(id), BM_SETCHECK, BST_CHECKED, 0);
        EXPECT_EACH(1, dialog.Wait(), dialog.Wait());
        EXPECT_EQ(SendMessageW(dialog.Control(id), BM_GETCHECK, 0, 0), first) << name;
        EXPECT_EQ(SendMessageW(dialog.Control(id + 1), BM_GETCHECK, 0, 0), second) << name;
        EXPECT_FALSE(IsWindowVisible(dialog.window()));
    }
    const int windows = Windows();
    EXPECT_GIVES(_EnableStatus(silent, 4), 0, Windows(), windows);
}

// Counts what a control is asked to take before the dialog's own keys, and takes some of it.
LRESULT CALLBACK TakeKeys(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR seen)
{
    if (message == 895) {
        const auto& forwarded = *reinterpret_cast<const MSG*>(lParam);
        *reinterpret_cast<std::wstring*>(seen) += std::to_wstring(forwarded.message) + L" ";
        return forwarded.message == WM_KEYDOWN && forwarded.wParam == VK_ESCAPE;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(ScriptDialogs, TakeKeysAsDialogsDo)
{
    const TestDialog dialog(session, Stage::shown);
    // The edit of the combo box lies two levels deep; its parent is the dialog's own child.
    const HWND inner = FindWindowExW(dialog.Control(combo), nullptr, L"Edit", nullptr);
    std::wstring seen;
    SetWindowSubclass(dialog.Control(combo), &TakeKeys, 1, reinterpret_cast<DWORD_PTR>(&seen));
    SetFocus(inner);
    const auto type = [&](WPARAM key) {
        PostMessageW(inner, WM_KEYDOWN, key, 0);
        return dialog.WaitOrHelp();
    };
    EXPECT_EQ(type(VK_ESCAPE), help) << "taken by the control";
    EXPECT_EQ(seen.substr(0, 4), L"256 ");
    EXPECT_EQ(type(VK_RETURN), button) << "the default button";
    SetFocus(dialog.Control(edit));
    EXPECT_EQ(dialog.WaitOrHelp(), combo) << "its list gives up";
    seen.clear();
    EXPECT_EQ(type(VK_ESCAPE), IDCANCEL);
    EXPECT_EQ(seen, L"") << "the focus is elsewhere";
    PostMessageW(dialog.window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(dialog.Wait(), IDCANCEL) << "the close box";
    PostMessageW(nullptr, WM_KEYDOWN, VK_F1, 0);
    EXPECT_EQ(dialog.Wait(), 8) << "to whatever window";
    PostQuitMessage(0);
    EXPECT_EQ(dialog.Wait(), 0);
}

TEST_F(ScriptDialogs, ComeForwardOnceAfterTheyLostTheirActivation)
{
    const TestDialog dialog(session, Stage::shown);
    ASSERT_EQ(GetActiveWindow(), dialog.window());
    for (const bool pulled : {true, false}) {
        const HWND stranger = NewWindow(L"Static", WS_POPUP | WS_VISIBLE);
        SetActiveWindow(stranger);
        ASSERT_EQ(dialog.WaitOrHelp(), help);
        EXPECT_EQ(GetActiveWindow() == dialog.window(), pulled);
        DestroyWindow(stranger);
    }
}

TEST_F(ScriptDialogs, TakeTextIntoARichEditThatIsReadOnly)
{
    const TestDialog dialog(session);
    const HWND rich = NewWindow(L"RICHEDIT", WS_CHILD | ES_MULTILINE | ES_READONLY, {0, 0, 100, 60}, dialog.window());
    ASSERT_TRUE(rich) << "the class is there";
    const TempFolder folder;
    const std::string rtf = R"({\rtf1\ansi Bold {\b word}.\par})";
    const std::wstring formatted = folder.Write(L"a.RTF", rtf), plain = folder.Write(L"a.txt", rtf);
    const std::wstring none = folder / L"none.txt";
    // A call that fails leaves the control writable.
    using Setter = int32_t(__stdcall*)(ObjectContext*, const wchar_t*, HWND, const wchar_t*);
    Table<Setter, const wchar_t*, int32_t, std::wstring> cases = {
        {_CtrlSetMLERichText, L"plain", 0, L"plain"},
        {_CtrlSetMLERichText, LR"({\RTF1\ansi Bold {\b word}.\par})", 0, L"Bold word."},
        {_CtrlSetMLERichTextEx, plain.c_str(), 0, LR"({\rtf1\ansi Bold {\b word}.\par})"},
        {_CtrlSetMLERichTextEx, formatted.c_str(), 0, L"Bold word."},
        {_CtrlSetMLERichTextEx, nullptr, -4, L"Bold word."},
        {_CtrlSetMLERichTextEx, none.c_str(), ERROR_FILE_NOT_FOUND, L"Bold word."}};
    for (const auto& [set, given, result, wanted] : cases) {
        SetWindowLongW(rich, GWL_STYLE, GetWindowLongW(rich, GWL_STYLE) | ES_READONLY);
        EXPECT_EQ(set(session, L"d", rich, given), result) << given;
        EXPECT_EQ((GetWindowLongW(rich, GWL_STYLE) & ES_READONLY) != 0, result == 0) << given;
        std::wstring found = TextOf(rich);
        EXPECT_EQ(found.substr(0, found.find_last_not_of(L"\r\n") + 1), wanted) << given;
    }
    EXPECT_EQ(_CtrlSetMLERichText(session, L"unknown", rich, L"x"), -1);
}

} // namespace
