// The folder picker, driven as a user drives it.
#include <shlobj.h>

#include "../support/dialog_driver.h"
#include "../support/pixels.h"
#include "../support/session.h"

namespace {

constexpr int32_t folders_only = BIF_RETURNONLYFSDIRS, with_edit = folders_only | BIF_EDITBOX;
constexpr const wchar_t* title = L"Where to";
constexpr const wchar_t* error_title = L"Standard caption";
constexpr int status_id = 0x3743; // of the platform's status line

HWND Dialog() { return DialogNamed(title); }
HWND Edit() { return VisibleChild(Dialog(), L"Edit"); }
HWND OkButton() { return GetDlgItem(Dialog(), IDOK); }
HWND Tree(HWND parent)
{
    if (const HWND tree = FindWindowExW(parent, nullptr, L"SysTreeView32", nullptr))
        return tree;
    for (const HWND child : VisibleChildren(parent))
        if (const HWND tree = Tree(child))
            return tree;
    return nullptr;
}
bool Press(HWND dialog, int button) { return PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0); }
bool Type(const std::wstring& text) { return SetWindowTextW(Edit(), text.c_str()); }
LRESULT Tell(HWND window, UINT message, WPARAM what, LPARAM of) { return SendMessageW(window, message, what, of); }
LRESULT Tell(HWND window, UINT message, WPARAM what, auto* of)
{
    return SendMessageW(window, message, what, reinterpret_cast<LPARAM>(of));
}

// Common steps. The picker stands on the screen when the focus is where it puts it.
using Step = DialogDriver::Step;
bool EditStands() { return Edit() && GetFocus() == Edit(); }
bool TreeStands() { return Dialog() && IsWindowVisible(Dialog()) && Tree(Dialog()); }
bool BareTreeStands() { return TreeStands() && !Edit(); }
bool TreeHasFocus() { return GetFocus() == Tree(Dialog()); }
bool OkIsOn() { return IsWindowEnabled(OkButton()) != 0; }
bool OkIsOff() { return !OkIsOn(); }
bool PressOk() { return Press(Dialog(), IDOK); }
bool PressCancel() { return Press(Dialog(), IDCANCEL); }
Step Once(auto body)
{
    return [body] { return body(), true; };
}
Step Typed(std::wstring text)
{
    return [text = std::move(text)] { return Type(text); };
}
Step Key(WPARAM code)
{
    return [code] { return PostMessageW(GetFocus(), WM_KEYDOWN, code, 0) != 0; };
}
Step Kept(std::wstring name)
{
    return Once([name] { KeepPicture(Dialog(), name); });
}
// Lets the tree select a folder, as a click would.
Step Selected(const wchar_t* path)
{
    return Once([path] { Tell(Dialog(), BFFM_SETSELECTIONW, TRUE, path); });
}
// The dialog, wider and higher by some pixels.
Step Sized(int by)
{
    return Once([by] {
        const RECT place = PlaceOnScreen(Dialog());
        SetWindowPos(Dialog(), nullptr, 0, 0, place.right - place.left + by, place.bottom - place.top + by,
                     SWP_NOMOVE | SWP_NOZORDER);
    });
}
// An error box with that text in it; it is closed, and the edit has the focus again.
Step Refused(std::wstring path)
{
    return [text = L"The folder \"" + path + L"\" cannot be used.", seen = false]() mutable {
        const HWND box = DialogNamed(error_title);
        if (!box && seen && EditStands()) {
            EXPECT_EQ(Tell(Edit(), EM_GETSEL, 0, 0), MAKELONG(0, TextOf(Edit()).size())) << "not all is selected";
            return true;
        }
        if (box && !seen) {
            EXPECT_TRUE(VisibleChild(box, L"Static", text.c_str())) << "missing: " << text;
            seen = Press(box, IDOK);
        }
        return false;
    };
}

// One call: what it is given, and what is done in its dialog.
struct Shown {
    std::wstring start;
    std::vector<Step> steps;
    int32_t flags = with_edit;
    bool verify = false;
    int32_t size = MAX_PATH;
    std::wstring label = L"&Folder:", second_label = L"Or from here:";
};

// The result, and what the buffer holds then.
std::wstring Browse(ObjectContext* context, Shown shown)
{
    std::wstring buffer(static_cast<std::size_t>(shown.size) + 1, L'~');
    shown.start.copy(buffer.data(), shown.start.size());
    buffer[shown.start.size()] = L'\0';
    const DialogDriver driver(std::move(shown.steps));
    const int64_t result =
        _BrowseForFolder(context, title, L"Pick one of these.", shown.label.c_str(), shown.second_label.c_str(),
                         shown.flags, buffer.data(), shown.size, shown.verify);
    EXPECT_EQ(buffer.back(), L'~') << "written behind the buffer";
    return std::to_wstring(result) + L" " + buffer.c_str();
}

struct FolderPicker : testing::Test {
    TextSession session{UserTexts(), StandardTexts()};
};

void ExpectTidy()
{
    ExpectApart(Dialog(), [](HWND, HWND) { return false; });
}

// Label, edit, second label and tree, from top to bottom and one as wide as the other.
void ExpectEditAboveTree()
{
    std::vector<RECT> places = {{}};
    for (const HWND control : {VisibleChild(Dialog(), L"Static", L"&Folder:"), Edit(),
                               VisibleChild(Dialog(), L"Static", L"Or from here:"), Tree(Dialog())}) {
        ASSERT_TRUE(control) << places.size();
        const RECT place = PlaceOnScreen(control);
        EXPECT_TRUE(place.top >= places.back().bottom && place.top < place.bottom) << places.size();
        places.push_back(place);
    }
    EXPECT_EQ(places[2].left, places[1].left);
    EXPECT_EQ(places[2].right, places[3].right);
    EXPECT_NEAR(places[2].right, places[4].right, 2);
    EXPECT_EQ(GetNextDlgTabItem(Dialog(), Edit(), FALSE), Tree(Dialog()));
    ExpectTidy();
}

void ExpectCentre(HWND window, LONG x, LONG y)
{
    const RECT place = PlaceOnScreen(window);
    EXPECT_NEAR((place.left + place.right) / 2.0, x, 2);
    EXPECT_NEAR((place.top + place.bottom) / 2.0, y, 2);
}

TEST_F(FolderPicker, ShowsTheStartingFolderInAnEditAboveTheTree)
{
    const auto look = [] {
        EXPECT_EQ(TextOf(Edit()), L"c:\\windows");
        EXPECT_EQ(Tell(Edit(), EM_GETSEL, 0, 0), MAKELONG(0, 10));
        EXPECT_EQ(Tell(Edit(), EM_GETLIMITTEXT, 0, 0), 260);
        EXPECT_TRUE(VisibleChild(Dialog(), L"Static", L"Pick one of these.") && OkIsOn());
        ExpectEditAboveTree();
        ExpectCentre(Dialog(), GetSystemMetrics(SM_CXSCREEN) / 2, GetSystemMetrics(SM_CYSCREEN) / 2);
    };
    EXPECT_EQ(Browse(session, {L"c:\\windows\\", {EditStands, Once(look), Kept(L"folder picker with edit"), PressOk}}),
              L"1 c:\\windows");
    const Step ordered = Once(ExpectEditAboveTree);
    EXPECT_EQ(Browse(session, {L"c:\\windows",
                               {EditStands, ordered, Kept(L"folder picker in the new style"), Sized(80), ordered,
                                Sized(-60), ordered, Sized(-400), ordered, PressCancel},
                               with_edit | BIF_NEWDIALOGSTYLE}),
              L"2 c:\\windows");
}

TEST_F(FolderPicker, LetsOkBePressedOnlyWhileSomethingIsTyped)
{
    const auto ok_follows = [] {
        for (const wchar_t* nothing : {L"", L"  ", L"\t "}) {
            Type(nothing);
            EXPECT_TRUE(OkIsOff()) << nothing;
            Type(L"x");
            EXPECT_TRUE(OkIsOn());
        }
        Tell(Edit(), EM_SETSEL, 0, -1);
        Tell(Edit(), WM_CHAR, VK_BACK, 0);
        EXPECT_TRUE(OkIsOff());
        Tell(Edit(), WM_CHAR, L'y', 0);
        EXPECT_TRUE(OkIsOn());
    };
    EXPECT_EQ(Browse(session, {L"", {EditStands, OkIsOff, Once(ok_follows), Typed(L" c:\\not there\\ "), PressOk}}),
              L"1 c:\\not there");
}

// The item above the drives has no path; the platform would leave OK as it pleases.
void SelectComputer()
{
    const auto tree = [](UINT message, WPARAM what, LPARAM of) { return Tell(Tree(Dialog()), message, what, of); };
    LPARAM item = tree(TVM_GETNEXTITEM, TVGN_CARET, 0);
    while (item && !TextOf(Edit()).empty()) {
        item = tree(TVM_GETNEXTITEM, TVGN_PARENT, item);
        tree(TVM_SELECTITEM, TVGN_CARET, item);
    }
    EXPECT_TRUE(item) << "each item has a path";
}

TEST_F(FolderPicker, AnswersAsItIsDriven)
{
    const TempFolder folder;
    const std::wstring there = folder.path().wstring();
    const auto shows_system32 = [] { return _wcsicmp(TextOf(Edit()).c_str(), L"c:\\windows\\system32") == 0; };
    const auto shows_status = [] { return TextOf(GetDlgItem(Dialog(), status_id)) == L"Or from here:"; };
    const auto windows_is_selected = [] {
        wchar_t name[MAX_PATH] = L"";
        const auto caret = reinterpret_cast<HTREEITEM>(Tell(Tree(Dialog()), TVM_GETNEXTITEM, TVGN_CARET, 0));
        TVITEMW item{TVIF_TEXT, caret, 0, 0, name, MAX_PATH, 0, 0, 0, 0};
        Tell(Tree(Dialog()), TVM_GETITEMW, 0, &item);
        return _wcsicmp(name, L"windows") == 0;
    };
    const std::pair<Shown, std::wstring> cases[] = {
        {{L"c:\\start\\",
          {EditStands, Typed(L" c:\\a|b\\"), PressOk, Refused(L"c:\\a|b"), Typed(L"q:\\folder"), PressOk,
           Refused(L"q:\\folder"), Typed(L"folder"), PressOk, Refused(L"folder"), PressCancel}},
         L"2 c:\\start"},
        // A folder that is there already is refused where a new one is wanted.
        {{there, {EditStands, PressOk, Refused(there), Typed(there + L"\\new\\below\\"), PressOk}, with_edit, true},
         L"1 " + there + L"\\new\\below"},
        {{L"c:\\", {EditStands, Typed(L"c:\\ten units"), PressOk}, with_edit, false, 12}, L"-1 c:"},
        {{L"c:\\", {EditStands, Typed(L"c:\\ten unit"), PressOk}, with_edit, false, 12}, L"1 c:\\ten unit"},
        {{L"c:\\windows", {EditStands, Key(VK_TAB), TreeHasFocus, Key(VK_ESCAPE)}}, L"2 c:\\windows"},
        {{L"c:\\windows",
          {EditStands, Typed(L"q:\\none"), Key(VK_RETURN), Refused(L"q:\\none"), Typed(L"c:\\typed"), Key(VK_RETURN)}},
         L"1 c:\\typed"},
        {{L"c:\\start",
          {EditStands, Selected(L"c:\\windows\\system32"), shows_system32, OkIsOn, Once(SelectComputer), OkIsOff,
           Typed(L"c:\\typed"), OkIsOn, PressOk},
          BIF_EDITBOX},
         L"1 c:\\typed"},
        // Without an edit.
        {{L"c:\\windows\\",
          {BareTreeStands, shows_status, windows_is_selected, PressOk},
          folders_only | BIF_STATUSTEXT},
         L"1 c:\\windows"},
        {{L"c:\\", {TreeStands, Selected(L"c:\\windows\\system32"), PressOk}, folders_only},
         L"1 c:\\windows\\system32"},
        {{L"c:\\windows\\", {TreeStands, PressCancel}, folders_only}, L"2 c:\\windows"},
        {{L"c:\\windows\\", {BareTreeStands, PressOk}, BIF_EDITBOX | BIF_BROWSEFORPRINTER}, L"1 c:\\windows"},
        {{L"c:\\", {BareTreeStands, PressCancel}, BIF_EDITBOX | BIF_BROWSEFORCOMPUTER}, L"2 c:"}};
    for (const auto& [shown, answer] : cases)
        EXPECT_EQ(_wcsicmp(Browse(session, shown).c_str(), answer.c_str()), 0) << answer;
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    EXPECT_GT(Browse(session, {L"", {BareTreeStands, PressOk}, BIF_EDITBOX | BIF_BROWSEFORCOMPUTER}), L"1 ")
        << "no name of what was picked";

    wchar_t buffer[] = L"c:\\";
    for (const auto& [to, size] : {std::pair<wchar_t*, int32_t>(nullptr, 260), {buffer, 0}, {buffer, -5}})
        EXPECT_EQ(_BrowseForFolder(session, title, L"", L"", L"", with_edit, to, size, 0), -1);
    EXPECT_STREQ(buffer, L"c:\\");
}

TEST_F(FolderPicker, GivesLongLabelsTheirRoomAndKeepsTheRestInSight)
{
    for (const int lines : {4, 400}) {
        std::wstring label;
        for (int line = 0; line < lines; ++line)
            label += L"some words of a long label, ";
        const Step look = Once([&] {
            ExpectTidy();
            const auto height = [](HWND window) { return PlaceOnScreen(window).bottom - PlaceOnScreen(window).top; };
            EXPECT_GT(height(VisibleChild(Dialog(), L"Static", label.c_str())), height(Edit()));
            EXPECT_GT(height(Tree(Dialog())), height(Edit()));
            const RECT dialog = PlaceOnScreen(Dialog());
            EXPECT_TRUE(dialog.top >= 0 && dialog.bottom <= GetSystemMetrics(SM_CYSCREEN));
        });
        const Step keep = Kept(L"folder picker with long labels " + std::to_wstring(lines));
        for (const bool sizable : {true, false})
            EXPECT_EQ(Browse(session, {L"c:\\",
                                       {EditStands, look, keep, Sized(sizable ? -400 : 0), look, PressCancel},
                                       with_edit | (sizable ? BIF_NEWDIALOGSTYLE : 0),
                                       false,
                                       MAX_PATH,
                                       label,
                                       label}),
                      L"2 c:");
    }
}

TEST(FolderPickerOfAMainWindow, StandsOverItAndGivesItBack)
{
    const HWND main = NewWindow(L"Static", WS_OVERLAPPEDWINDOW | WS_VISIBLE, {20, 30, 620, 530});
    const TextSession session(UserTexts(), StandardTexts(), main);
    const auto look = [&] {
        EXPECT_EQ(GetWindow(Dialog(), GW_OWNER), main);
        EXPECT_FALSE(IsWindowEnabled(main));
        ExpectCentre(Dialog(), 320, 280);
    };
    EXPECT_EQ(Browse(session, {L"c:\\", {EditStands, Once(look), PressCancel}}), L"2 c:");
    EXPECT_TRUE(IsWindowEnabled(main));
    DestroyWindow(main);
}

TEST_F(FolderPicker, TakesMissingTextsFromTheResourceLibraries)
{
    wchar_t buffer[MAX_PATH] = L"c:\\";
    const auto dialog = [] { return DialogNamed(L"User title"); };
    const auto stands = [&](const wchar_t* text) {
        return [=] { return VisibleChild(dialog(), L"Static", text) != nullptr; };
    };
    const DialogDriver driver({stands(L"Standard message"), stands(L"Standard &folder:"), stands(L"Standard status:"),
                               [&] { return Press(dialog(), IDCANCEL); }});
    EXPECT_EQ(_BrowseForFolder(session, L"", nullptr, L"", nullptr, with_edit, buffer, MAX_PATH, 0), 2);
}

TEST_F(FolderPicker, LeavesTheThreadsWayOfSharingObjectsAsItWas)
{
    ASSERT_EQ(Browse(session, {L"c:\\", {EditStands, PressCancel}}), L"2 c:");
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK) << "the picker left the thread with a way";
    EXPECT_EQ(Browse(session, {L"c:\\windows", {EditStands, PressOk}, with_edit | BIF_NEWDIALOGSTYLE}),
              L"1 c:\\windows");
    CoUninitialize();
}

BSTR WINAPI NoText(const OLECHAR*, UINT) { return nullptr; }

TEST_F(FolderPicker, EndsWithTheErrorWhenMemoryRunsOutInside)
{
    std::optional<Patched> no_memory;
    const auto run_out = [&] {
        no_memory.emplace("SysAllocStringLen", NoText, L"VHRT.dll");
        return Type(L"c:\\a text that is not short");
    };
    EXPECT_EQ(CodeOf<vh::com_exception>([&] { Browse(session, {L"c:\\", {EditStands, run_out}}); }), E_OUTOFMEMORY);
    EXPECT_FALSE(Dialog());
}

} // namespace
