// A skin from its file to the pixels of a dialog.
#include <windows.h>

#include <commctrl.h>

#include "../../dialogs/dialog_skin.h"
#include "../../pictures/placement.h"
#include "../../scriptdata/late_windows.h"
#include "../../skin/skin_profile.h"
#include "../support/bitmap_writer.h"
#include "../support/handle_counts.h"
#include "../support/pixels.h"

namespace {

constexpr COLORREF red = RGB(255, 0, 0), green = RGB(0, 255, 0), blue = RGB(0, 0, 255), yellow = RGB(255, 255, 0);

constexpr const char* skin_text =
    "[SKINS]\r\nVERSION=3\r\n"
    "[ALL]\r\nRECTS=1\r\nRECT1=255,255,0\r\nRECT1AREA=1000,1000\r\n"
    "TEXTCOLOR=255,0,0\r\nBUTTONSDISTXTCLR=0,0,255\r\nBUTTONSUP=up.bmp\r\nBUTTONSDOWN=down.bmp\r\n"
    "[ALL-0407]\r\nBUTTONSUP=down.bmp\r\n"
    "[Page]\r\nRECTS=2\r\nRECT1=0,0,255\r\nRECT1POS=0,0\r\nRECT1AREA=40,40\r\n"
    "RECT2=0,255,0\r\nRECT2POS=20,0\r\nRECT2AREA=60,20\r\n"
    "IMAGES=1\r\nIMAGE1=up.bmp\r\nIMAGE1OPT=HCENTER\r\nIMAGE1POS=0,48\r\n"
    "BUTTONS=1\r\nBUTTON1=12\r\nBUTTON1POS=8,56\r\nBUTTON1UP=wide.bmp\r\n"
    "[Page-0007]\r\nTEXTCOLOR=0,255,0\r\n[Bare]\r\n[ALLES]\r\n";

struct Skins : testing::Test {
    std::string Container(const std::string& text = skin_text) const
    {
        std::vector<std::byte> file;
        const auto add = [&](const char* name, const std::string& bytes) {
            AddSkinEntry(file, name, std::as_bytes(std::span(bytes)));
        };
        add("Skin.ini", text);
        add("up.bmp", PlainBitmap(16, 8, 0xFF0000));
        add("down.bmp", PlainBitmap(16, 8, 0x00FF00));
        add("wide.bmp", PlainBitmap(300, 8, 0x0000FF));
        add("note.txt", "no picture");
        ScrambleSkin(file);
        return {reinterpret_cast<const char*>(file.data()), file.size()};
    }
    bool Start(const std::string& bytes)
    {
        return m_skin.Start(m_folder.Write(L"skin file", bytes).c_str(), 0, m_folder.path().c_str());
    }
    std::ptrdiff_t FilesLeft() const
    {
        return m_folder.Entries() + std::filesystem::exists(std::wstring(SkinTempFolder().c_str()) + L"vhpro7");
    }

    TempFolder m_folder;
    DialogSkin m_skin;
};

TEST_F(Skins, LoadOnceForTheProcessAndLeaveNoFiles)
{
    EXPECT_FALSE(m_skin.Start(L"no such file", 0, m_folder.path().c_str()));
    const std::string whole = Container();
    for (const std::size_t length : {std::size_t{0}, std::size_t{5}, whole.size() / 2, whole.size() - 1}) {
        EXPECT_FALSE(Start(whole.substr(0, length)));
        m_skin.End();
        EXPECT_EQ(FilesLeft(), 1) << length;
    }
    EXPECT_FALSE(m_skin.loaded() || m_skin.enabled());
    m_skin.Enable(true);
    EXPECT_FALSE(m_skin.enabled()) << "there is none";
    ASSERT_TRUE(Start(whole));
    EXPECT_EQ(FilesLeft(), 2) << "the copy stays as long as the context";
    {
        // Another context has the same skin, whatever file it names.
        DialogSkin other;
        EXPECT_TRUE(other.Start(L"", 0, L"") && other.loaded() && other.enabled());
        other.Enable(false);
        EXPECT_FALSE(other.enabled());
        other.Enable(true);
        EXPECT_TRUE(other.enabled());
        other.End();
    }
    const auto skin = Skin::Shared();
    EXPECT_EQ(skin->version(), 3);
    std::string names;
    for (const auto& [name, section] : skin->sections())
        names += name + " ";
    EXPECT_EQ(names, "ALL ALL-0407 Bare Page Page-0007 ");
    Table<const char*, const char*> found = {
        {"Page", "Page"},  {"Page-0407", "Page-0007"},  {"Bare-0407", "ALL-0407"}, {"Bare-0409", "Bare"},
        {"Nobody", "ALL"}, {"Nobody-0407", "ALL-0407"}, {"ALL-0409", "ALL"},       {"Page-", "Page"}};
    for (const auto& [name, wanted] : found)
        EXPECT_EQ(skin->Find(name)->name, wanted) << name;
    const SkinParts parts = skin->PartsOf(*skin->Find("Page-0007"));
    EXPECT_EQ(parts.rects, &skin->Find("Page")->rects);
    EXPECT_EQ(parts.buttons, &skin->Find("Page")->buttons);
    EXPECT_EQ(parts.textColor, green);
    EXPECT_EQ(skin->PartsOf(*skin->Find("Bare")).textColor, red);
    const SkinSection& page = *skin->Find("Page");
    SkinImage* const up = skin->Find("ALL")->buttons.at(0).upImage;
    EXPECT_NE(page.images.at(1).image, up) << "another set of options";
    EXPECT_EQ(page.buttons.at(0).upImage, up);
    EXPECT_EQ(skin->Find("Page-0007")->buttons.at(0).upImage, up);
    EXPECT_NE(skin->Find("ALL-0407")->buttons.at(0).upImage, up);
}

// vhtool checks a text as the library's own reader has it; setups have the system's.
TEST(SkinProfile, ReadsWhatTheSystemReads)
{
    const TempFolder folder;
    const std::wstring directory = folder.path();
    const std::string of_sample = BytesOf(VHRT_SOURCE_DIR "/samples/skin/quiet/skin.ini");
    ASSERT_GT(of_sample.size(), 2000u);
    const std::string odd =
        "; note\r\n[ALL] behind\r\n  TEXTCOLOR = 1,2,3  \r\nrects=1\r\nRECT1=\"4,5,6\"\r\n;RECT1=9,9,9\r\n"
        "RECT1=7,7,7\r\nRECT1AREA=1,2,3\r\nRECT1POS\r\nBUTTONSUP='up one.gif'\r\n\r\n"
        "[]\r\nRECTS=1\r\n[Open\r\nRECTS=1\r\n[Page]\nIMAGES=2\nIMAGE1=a=b.gif\nIMAGE2=;c.gif\nIMAGE2OPT=HCENTER, "
        "SCALE\nIMAGE1POS=+4, 5\n"
        "[ Blank ]\r\nTEXTCOLOR=\"1,1,1\r\nRECTS=\r\n[Page]\r\nIMAGES=0\r\n[Last]\r\nTEXTCOLOR=2,2,2";
    for (const std::string& text : {of_sample, odd}) {
        const stringx place(directory.c_str());
        skin_text_file file(place);
        file.Write(std::as_bytes(std::span(text)));
        const skin_profile profile(text);
        const auto by_system = ReadSkinText(file.reader(), file.sections(), {1, 2, 3});
        const auto by_profile = ReadSkinText(profile.reader(), profile.names(), {1, 2, 3});
        ASSERT_EQ(by_system.size(), by_profile.size());
        for (std::size_t i = 0; i < by_system.size(); ++i)
            EXPECT_TRUE(by_system[i] == by_profile[i]) << by_profile[i].name;
    }
}

// A dialog whose units are told by the system, with controls of each kind.
struct SkinnedDialogs : Skins {
    enum : int { push = 12, standard = 13, check = 14, group = 15, label = 16, marked = 17, icon = 18 };

    SkinnedDialogs()
    {
        EXPECT_TRUE(Start(Container()));
        Open();
    }
    ~SkinnedDialogs() override
    {
        Close();
        m_skin.End();
    }
    void Open()
    {
        m_dialog = NewDialog({WS_POPUP | WS_VISIBLE, 0, 0, 0, 0, 200, 120});
        Add(push, WC_BUTTONW, L"Push", BS_PUSHBUTTON, 0);
        Add(standard, WC_BUTTONW, L"@Standard", BS_DEFPUSHBUTTON, 60);
        Add(check, WC_BUTTONW, L"Check", BS_AUTOCHECKBOX, 120);
        Add(group, WC_BUTTONW, L"Group", BS_GROUPBOX, 180);
        Add(label, WC_STATICW, L"Label", SS_LEFT, 240);
        Add(marked, WC_STATICW, L"@picture", SS_LEFT, 300);
        SendMessageW(Add(icon, WC_STATICW, L"", SS_ICON, 340), STM_SETICON,
                     reinterpret_cast<WPARAM>(LoadIconW(nullptr, IDI_WARNING)), 0);
        RECT base{0, 0, 4, 8};
        MapDialogRect(m_dialog, &base);
        m_x = base.right;
        m_y = base.bottom;
    }
    HWND Add(int id, const wchar_t* type, const wchar_t* text, DWORD style, int left) const
    {
        return NewWindow(type, WS_CHILD | WS_VISIBLE | style, {left, 100, left + 50, 120}, m_dialog, id, text);
    }
    void Close() { DestroyWindow(std::exchange(m_dialog, nullptr)); }
    bool Apply(const wchar_t* section) const { return m_skin.Apply(m_skin.Record(m_dialog, section, L"brand")); }
    HWND Control(int id) const { return GetDlgItem(m_dialog, id); }
    LRESULT Draw(int id, UINT action, UINT state) const
    {
        DRAWITEMSTRUCT item{};
        item.CtlType = ODT_BUTTON;
        item.CtlID = static_cast<UINT>(id);
        item.itemAction = action;
        item.itemState = state;
        item.hwndItem = Control(id);
        GetClientRect(item.hwndItem, &item.rcItem);
        item.hDC = GetDC(item.hwndItem);
        const LRESULT answer = SendMessageW(m_dialog, WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
        ReleaseDC(item.hwndItem, item.hDC);
        return answer;
    }

    HWND m_dialog = nullptr;
    LONG m_x = 0, m_y = 0;
};

TEST_F(SkinnedDialogs, ComposeRectanglesThenPictures)
{
    ASSERT_TRUE(Apply(L"Page"));
    EXPECT_FALSE(Apply(L"Page")) << "it has one";
    // Corners, not sizes; the second lies over the first; the picture over both.
    EXPECT_EQ(PixelOf(m_dialog, 1, 1), blue);
    EXPECT_EQ(PixelOf(m_dialog, 20 * m_x / 4 + 1, 1), green);
    EXPECT_EQ(PixelOf(m_dialog, 40 * m_x / 4 - 1, 40 * m_y / 8 - 2), blue);
    EXPECT_EQ(PixelOf(m_dialog, 59 * m_x / 4, 19 * m_y / 8), green);
    EXPECT_EQ(PixelOf(m_dialog, 61 * m_x / 4, 1), GetSysColor(COLOR_BTNFACE));
    RECT client{};
    GetClientRect(m_dialog, &client);
    EXPECT_EQ(PixelOf(m_dialog, client.right / 2, 48 * m_y / 8 + 4), red);
    EXPECT_NE(PixelOf(m_dialog, client.right / 2 - 9, 48 * m_y / 8 + 4), red);
    EXPECT_EQ(SendMessageW(m_dialog, WM_ERASEBKGND, 0, 0), 1);
    Close();
    Open();
    ASSERT_TRUE(Apply(L"Nobody"));
    EXPECT_EQ(PixelOf(m_dialog, client.right - 2, client.bottom - 2), yellow) << "what all sections share";
}

TEST_F(SkinnedDialogs, TakeEachControlByItsKind)
{
    const auto style = [this](int id) { return GetWindowLongPtrW(Control(id), GWL_STYLE) & BS_TYPEMASK; };
    const auto procedure = [](HWND window) { return GetWindowLongPtrW(window, GWLP_WNDPROC); };
    const auto before = procedure(m_dialog);
    const auto of_marked = procedure(Control(marked));
    ASSERT_TRUE(Apply(L"Page"));
    EXPECT_EQ(style(push), BS_OWNERDRAW);
    EXPECT_EQ(style(standard), BS_OWNERDRAW) << "the mark counts for labels alone";
    EXPECT_EQ(style(check), BS_AUTOCHECKBOX);
    RECT place = PlaceIn(m_dialog, Control(push));
    EXPECT_EQ(place.left, MulDiv(8, static_cast<int>(m_x), 4));
    EXPECT_EQ(place.top, MulDiv(56, static_cast<int>(m_y), 8));
    EXPECT_EQ(std::pair(WidthOf(place), HeightOf(place)), std::pair(300, 20)) << "as wide as its picture";
    place = PlaceIn(m_dialog, Control(standard));
    EXPECT_EQ(std::pair(place.left, WidthOf(place)), std::pair(LONG{60}, 50));
    EXPECT_EQ(procedure(Control(marked)), of_marked);
    EXPECT_EQ(GetPropW(Control(marked), L"PROP_STAT_PSKIN"), nullptr);
    EXPECT_EQ(GetPropW(Control(label), L"PROP_STAT_PSKIN"), GetPropW(m_dialog, L"PROP_PSKIN"));
    EXPECT_FALSE(IsWindowVisible(Control(icon)));
    const auto icon_place = PlaceIn(m_dialog, Control(icon));
    int painted = 0;
    for (LONG i = 0; i < 30; ++i)
        painted += PixelOf(m_dialog, icon_place.left + i, icon_place.top + 16) != GetSysColor(COLOR_BTNFACE);
    EXPECT_GT(painted, 5) << "its picture stands on the surface";
    // The caption of the group has a label of its own, next to it.
    EXPECT_EQ(ui::TextOf(Control(group)), L"");
    const HWND caption = GetWindow(Control(group), GW_HWNDNEXT);
    EXPECT_EQ(ui::TextOf(caption), L"Group");
    EXPECT_EQ(PlaceIn(m_dialog, caption).left, PlaceIn(m_dialog, Control(group)).left + 10);
    // Colours: controls with a piece of the surface as their brush, and those without.
    const HDC context = CreateCompatibleDC(nullptr);
    const auto brush = [&](UINT message, HWND control) {
        return SendMessageW(m_dialog, message, reinterpret_cast<WPARAM>(context), reinterpret_cast<LPARAM>(control));
    };
    const auto none = reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH));
    EXPECT_EQ(brush(WM_CTLCOLORSTATIC, Control(label)), none);
    EXPECT_EQ(GetTextColor(context), red);
    EXPECT_EQ(GetBkMode(context), TRANSPARENT);
    EXPECT_NE(brush(WM_CTLCOLORSTATIC, Control(check)), none);
    EXPECT_NE(brush(WM_CTLCOLORSTATIC, caption), none);
    EXPECT_EQ(brush(WM_CTLCOLORBTN, Control(check)), none);
    EXPECT_NE(brush(WM_CTLCOLORBTN, Control(label)), none) << "the dialog's own answer";
    DeleteDC(context);
    // All is as before when the dialog goes.
    const HWND kept = Control(label);
    SendMessageW(m_dialog, WM_DESTROY, 0, 0);
    EXPECT_EQ(procedure(m_dialog), before);
    EXPECT_EQ(GetPropW(m_dialog, L"PROP_PSKIN"), nullptr);
    SetWindowTextW(kept, L"without a surface");
}

TEST_F(SkinnedDialogs, DrawButtonsFromPictures)
{
    ASSERT_TRUE(Apply(L"ALL"));
    EXPECT_EQ(Draw(standard, ODA_DRAWENTIRE, 0), 0);
    EXPECT_EQ(PixelOf(Control(standard), 1, 1), red) << "up, as large as the control";
    EXPECT_EQ(PixelOf(Control(standard), 48, 18), red);
    Draw(standard, ODA_SELECT, ODS_SELECTED);
    EXPECT_EQ(PixelOf(Control(standard), 1, 1), green);
    const LRESULT default_before = SendMessageW(m_dialog, DM_GETDEFID, 0, 0);
    Draw(push, ODA_DRAWENTIRE, 0);
    EXPECT_EQ(SendMessageW(m_dialog, DM_GETDEFID, 0, 0), default_before);
    const auto picture = [&] {
        std::vector<COLORREF> pixels;
        for (LONG at = 0; at < 20 * 50; ++at)
            pixels.push_back(PixelOf(Control(push), at % 50, at / 50));
        return pixels;
    };
    Draw(push, ODA_DRAWENTIRE, ODS_DISABLED);
    EXPECT_GT(std::ranges::count(picture(), blue), 5) << "the text's other colour";
    Draw(push, ODA_DRAWENTIRE, 0);
    const auto plain = picture();
    EXPECT_EQ(std::ranges::count(plain, blue), 0);
    Draw(push, ODA_FOCUS, ODS_FOCUS);
    const auto frame = std::ranges::mismatch(plain, picture()).in1 - plain.begin();
    TEXTMETRICW metric{};
    const HDC screen = GetDC(Control(push));
    GetTextMetricsW(screen, &metric);
    ReleaseDC(Control(push), screen);
    EXPECT_EQ(frame / 50, std::max(10 - metric.tmHeight / 2 - 2, LONG{0})) << "two pixels above the text";
    EXPECT_EQ(LOWORD(SendMessageW(m_dialog, DM_GETDEFID, 0, 0)), push);
    // A label's new text stands on the surface, not on the old text.
    SetWindowTextW(Control(label), L"WWWWW");
    UpdateWindow(Control(label));
    SetWindowTextW(Control(label), L"");
    UpdateWindow(Control(label));
    for (LONG x = 0; x < 50; ++x)
        ASSERT_EQ(PixelOf(Control(label), x, 8), yellow) << x;
}

TEST_F(SkinnedDialogs, ShareASectionAndLeaveNothing)
{
    int handles = 0;
    for (int cycle = 0; cycle < 40; ++cycle) {
        ASSERT_TRUE(Apply(L"Page"));
        const HWND below = std::exchange(m_dialog, nullptr);
        Open();
        ASSERT_TRUE(Apply(L"Page"));
        Close();
        SetWindowTextW(GetDlgItem(below, label), L"still painted");
        RedrawWindow(below, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        EXPECT_EQ(PixelOf(below, 1, 1), blue);
        DestroyWindow(below);
        Open();
        if (cycle == 5)
            handles = OpenGdiObjects();
    }
    EXPECT_EQ(OpenGdiObjects(), handles);
    // The skin's end does not take the surface from a dialog that still stands.
    ASSERT_TRUE(Apply(L"Page"));
    m_skin.End();
    RedrawWindow(m_dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(PixelOf(m_dialog, 1, 1), blue);
    Draw(standard, ODA_DRAWENTIRE, 0);
    EXPECT_EQ(PixelOf(Control(standard), 1, 1), red);
}

int g_themes_off = 0;

TEST_F(SkinnedDialogs, SwitchThemesOffOnlyWhereThereAreSome)
{
    for (const DWORD properties : {3u, 1u}) {
        m_skin.End();
        static DWORD told = 0;
        told = properties;
        const Replaced themes(
            late::get_theme_properties, +[]() WINAPI -> DWORD { return told; });
        const Replaced off(
            late::set_window_theme, +[](HWND, const wchar_t* name, const wchar_t*) WINAPI -> HRESULT {
                g_themes_off += *name == L' ';
                return S_OK;
            });
        ASSERT_TRUE(Start(Container()));
        g_themes_off = 0;
        NewWindow(PROGRESS_CLASSW, WS_CHILD, {0, 0, 10, 10}, m_dialog);
        Add(19, WC_BUTTONW, L"Radio", BS_AUTORADIOBUTTON, 0);
        ASSERT_TRUE(Apply(L"Page"));
        EXPECT_EQ(g_themes_off, properties & 2 ? 4 : 0) << "check box, group box, progress bar, radio button";
        Close();
        Open();
    }
}

} // namespace
