// The folder picker, driven as a user drives it.
#include <gtest/gtest.h>

#include <shlobj.h>

#include "../../exports/vhrt/folders.h"
#include "../../scriptdata/exception.h"
#include "../support/dialog_driver.h"
#include "../support/import_patch.h"
#include "../support/screenshot.h"
#include "../support/temp_folder.h"
#include "../support/texts.h"

using namespace vh::test;

namespace {

constexpr int32_t folders_only = BIF_RETURNONLYFSDIRS;
constexpr int32_t with_edit = folders_only | BIF_EDITBOX;
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

// Common steps. The picker stands on the screen when the focus is where it puts it.
bool EditStands() { return Edit() && GetFocus() == Edit(); }
bool TreeStands() { return Dialog() && IsWindowVisible(Dialog()) && Tree(Dialog()); }
bool PressOk() { return Press(Dialog(), IDOK); }
bool PressCancel() { return Press(Dialog(), IDCANCEL); }
DialogDriver::Step Typed(std::wstring text)
{
    return [text = std::move(text)] { return Type(text); };
}
// An error box with that text in it; it is closed, and the edit has the focus again.
DialogDriver::Step Refused(std::wstring path)
{
    return [text = L"The folder \"" + path + L"\" cannot be used.", seen = false]() mutable {
        const HWND box = DialogNamed(error_title);
        if (!box && seen && EditStands()) {
            DWORD end = 0;
            SendMessageW(Edit(), EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
            EXPECT_EQ(end, TextOf(Edit()).size()) << "not all is selected";
            return true;
        }
        if (!box)
            return false;
        EXPECT_TRUE(seen || VisibleChild(box, L"Static", text.c_str())) << "missing: " << text;
        if (!seen)
            Press(box, IDOK);
        seen = true;
        return false;
    };
}

class FolderPicker : public ::testing::Test {
protected:
    // What the call answers, and what the buffer holds then.
    int64_t Browse(const std::wstring& start, int32_t flags, bool verify, std::vector<DialogDriver::Step> steps,
                   int32_t size = MAX_PATH)
    {
        m_buffer.assign(static_cast<std::size_t>(size) + 1, L'~');
        start.copy(m_buffer.data(), start.size());
        m_buffer[start.size()] = L'\0';
        const DialogDriver driver(std::move(steps));
        const int64_t result = _BrowseForFolder(m_session, title, L"Pick one of these.", L"&Folder:", L"Or from here:",
                                                flags, m_buffer.data(), size, verify);
        EXPECT_EQ(m_buffer.back(), L'~') << "written behind the buffer";
        return result;
    }
    const wchar_t* Path() const { return m_buffer.data(); }
    ObjectContext* Context() const { return m_session; }

private:
    TextSession m_session{UserTexts(), StandardTexts()};
    std::vector<wchar_t> m_buffer;
};

// Nothing that can be seen lies on anything else or beyond the dialog's edge.
void ExpectTidy(HWND dialog)
{
    RECT client{};
    GetClientRect(dialog, &client);
    MapWindowPoints(dialog, nullptr, reinterpret_cast<POINT*>(&client), 2);
    const auto children = VisibleChildren(dialog);
    for (std::size_t i = 0; i < children.size(); ++i) {
        const RECT place = PlaceOnScreen(children[i]);
        EXPECT_TRUE(place.left >= client.left && place.top >= client.top && place.right <= client.right &&
                    place.bottom <= client.bottom)
            << ClassOf(children[i]) << " is cut";
        for (std::size_t j = 0; j < i; ++j) {
            const RECT other = PlaceOnScreen(children[j]);
            RECT common{};
            EXPECT_FALSE(IntersectRect(&common, &place, &other))
                << ClassOf(children[i]) << " " << TextOf(children[i]) << " lies on " << ClassOf(children[j]) << " "
                << TextOf(children[j]);
        }
    }
}

// Label, edit, second label and tree, from top to bottom and one as wide as the other.
void ExpectEditAboveTree(HWND dialog)
{
    const HWND column[] = {VisibleChild(dialog, L"Static", L"&Folder:"), Edit(),
                           VisibleChild(dialog, L"Static", L"Or from here:"), Tree(dialog)};
    for (std::size_t i = 0; i < std::size(column); ++i) {
        ASSERT_TRUE(column[i]) << i;
        EXPECT_GT(PlaceOnScreen(column[i]).bottom, PlaceOnScreen(column[i]).top) << i;
        const LONG least = i > 0 ? PlaceOnScreen(column[i - 1]).bottom : 0;
        EXPECT_GE(PlaceOnScreen(column[i]).top, least) << i;
    }
    EXPECT_EQ(PlaceOnScreen(column[1]).left, PlaceOnScreen(column[0]).left);
    EXPECT_EQ(PlaceOnScreen(column[1]).right, PlaceOnScreen(column[2]).right);
    EXPECT_NEAR(PlaceOnScreen(column[1]).right, PlaceOnScreen(column[3]).right, 2);
    EXPECT_EQ(GetNextDlgTabItem(dialog, Edit(), FALSE), Tree(dialog));
    ExpectTidy(dialog);
}

TEST_F(FolderPicker, ShowsTheStartingFolderInAnEditAboveTheTree)
{
    const auto look = [] {
        EXPECT_EQ(TextOf(Edit()), L"c:\\windows");
        DWORD from = 0;
        DWORD to = 0;
        SendMessageW(Edit(), EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
        EXPECT_EQ(from, 0u);
        EXPECT_EQ(to, 10u);
        EXPECT_EQ(SendMessageW(Edit(), EM_GETLIMITTEXT, 0, 0), 260);
        EXPECT_TRUE(VisibleChild(Dialog(), L"Static", L"Pick one of these."));
        EXPECT_TRUE(IsWindowEnabled(OkButton()));
        ExpectEditAboveTree(Dialog());
        const RECT place = PlaceOnScreen(Dialog());
        EXPECT_NEAR((place.left + place.right) / 2.0, GetSystemMetrics(SM_CXSCREEN) / 2.0, 2);
        EXPECT_NEAR((place.top + place.bottom) / 2.0, GetSystemMetrics(SM_CYSCREEN) / 2.0, 2);
        return true;
    };
    const auto keep = [] {
        KeepPicture(Dialog(), L"folder picker with edit");
        return true;
    };
    EXPECT_EQ(Browse(L"c:\\windows\\", with_edit, false, {EditStands, look, keep, PressOk}), 1);
    EXPECT_STREQ(Path(), L"c:\\windows");
}

TEST_F(FolderPicker, LetsOkBePressedOnlyWhileSomethingIsTyped)
{
    const auto ok_follows = [] {
        for (const wchar_t* nothing : {L"", L"  ", L"\t "}) {
            Type(nothing);
            EXPECT_FALSE(IsWindowEnabled(OkButton())) << nothing;
            Type(L"x");
            EXPECT_TRUE(IsWindowEnabled(OkButton()));
        }
        SendMessageW(Edit(), EM_SETSEL, 0, -1);
        SendMessageW(Edit(), WM_CHAR, VK_BACK, 0);
        EXPECT_FALSE(IsWindowEnabled(OkButton()));
        SendMessageW(Edit(), WM_CHAR, L'y', 0);
        EXPECT_TRUE(IsWindowEnabled(OkButton()));
        return true;
    };
    EXPECT_EQ(Browse(L"", with_edit, false,
                     {[] {
                          if (!EditStands())
                              return false;
                          EXPECT_FALSE(IsWindowEnabled(OkButton()));
                          return true;
                      },
                      ok_follows, Typed(L" c:\\not there\\ "), PressOk}),
              1);
    EXPECT_STREQ(Path(), L"c:\\not there");
}

TEST_F(FolderPicker, StaysOpenOnAFolderThatCanNotBe)
{
    EXPECT_EQ(Browse(L"c:\\start\\", with_edit, false,
                     {EditStands, Typed(L" c:\\a|b\\"), PressOk, Refused(L"c:\\a|b"), Typed(L"q:\\folder"), PressOk,
                      Refused(L"q:\\folder"), Typed(L"folder"), PressOk, Refused(L"folder"), PressCancel}),
              2);
    EXPECT_STREQ(Path(), L"c:\\start");
}

TEST_F(FolderPicker, AsksForANewFolderWhenItVerifies)
{
    const TempFolder folder;
    const std::wstring there = folder.path().wstring();
    EXPECT_EQ(Browse(there, with_edit, true,
                     {EditStands, PressOk, Refused(there), Typed(there + L"\\new\\below\\"), PressOk}),
              1);
    EXPECT_EQ(Path(), there + L"\\new\\below");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(FolderPicker, FailsWhenTheFolderDoesNotFitTheBuffer)
{
    EXPECT_EQ(Browse(L"c:\\", with_edit, false, {EditStands, Typed(L"c:\\ten units"), PressOk}, 12), -1);
    EXPECT_STREQ(Path(), L"c:");
    EXPECT_EQ(Browse(L"c:\\", with_edit, false, {EditStands, Typed(L"c:\\ten unit"), PressOk}, 12), 1);
    EXPECT_STREQ(Path(), L"c:\\ten unit");
}

TEST_F(FolderPicker, ObeysTheKeyboard)
{
    const auto key = [](WPARAM code) { return [code] { return PostMessageW(GetFocus(), WM_KEYDOWN, code, 0) != 0; }; };
    const auto tree_has_focus = [] { return GetFocus() == Tree(Dialog()); };
    EXPECT_EQ(Browse(L"c:\\windows", with_edit, false, {EditStands, key(VK_TAB), tree_has_focus, key(VK_ESCAPE)}), 2);
    EXPECT_EQ(Browse(L"c:\\windows", with_edit, false,
                     {EditStands, Typed(L"q:\\none"), key(VK_RETURN), Refused(L"q:\\none"), Typed(L"c:\\typed"),
                      key(VK_RETURN)}),
              1);
    EXPECT_STREQ(Path(), L"c:\\typed");
}

TEST_F(FolderPicker, NeedsABuffer)
{
    wchar_t buffer[] = L"c:\\";
    EXPECT_EQ(_BrowseForFolder(Context(), title, L"", L"", L"", with_edit, nullptr, 260, 0), -1);
    EXPECT_EQ(_BrowseForFolder(Context(), title, L"", L"", L"", with_edit, buffer, 0, 0), -1);
    EXPECT_EQ(_BrowseForFolder(Context(), title, L"", L"", L"", with_edit, buffer, -5, 0), -1);
    EXPECT_STREQ(buffer, L"c:\\");
}

// The dialog, wider and higher by some pixels.
DialogDriver::Step Sized(int by)
{
    return [by] {
        const RECT place = PlaceOnScreen(Dialog());
        SetWindowPos(Dialog(), nullptr, 0, 0, place.right - place.left + by, place.bottom - place.top + by,
                     SWP_NOMOVE | SWP_NOZORDER);
        return true;
    };
}

TEST_F(FolderPicker, GivesLongLabelsTheirRoomAndKeepsTheRestInSight)
{
    std::wstring words;
    std::vector<std::wstring> labels;
    for (int lines = 0; lines < 400; ++lines) {
        words += L"some words of a long label, ";
        if (lines == 3 || lines == 399)
            labels.push_back(words);
    }
    for (const std::wstring& label : labels) {
        wchar_t buffer[MAX_PATH] = L"c:\\";
        const auto look = [&] {
            ExpectTidy(Dialog());
            const HWND shown = VisibleChild(Dialog(), L"Static", label.c_str());
            const RECT place = PlaceOnScreen(shown);
            const RECT edit = PlaceOnScreen(Edit());
            EXPECT_GT(place.bottom - place.top, edit.bottom - edit.top);
            const RECT tree = PlaceOnScreen(Tree(Dialog()));
            EXPECT_GT(tree.bottom - tree.top, edit.bottom - edit.top);
            const RECT dialog = PlaceOnScreen(Dialog());
            EXPECT_TRUE(dialog.top >= 0 && dialog.bottom <= GetSystemMetrics(SM_CYSCREEN));
            return true;
        };
        const auto keep = [&] {
            KeepPicture(Dialog(), L"folder picker with long labels " + std::to_wstring(label.size()));
            return true;
        };
        for (const int32_t style : {BIF_NEWDIALOGSTYLE, 0}) {
            std::vector<DialogDriver::Step> steps{EditStands, look, keep};
            if (style)
                steps.insert(steps.end(), {Sized(-400), look});
            steps.push_back(PressCancel);
            const DialogDriver driver(std::move(steps));
            EXPECT_EQ(_BrowseForFolder(Context(), title, L"Pick one of these.", label.c_str(), label.c_str(),
                                       with_edit | style, buffer, MAX_PATH, 0),
                      2);
        }
    }
}

// A main window for as long as a test needs one.
class MainWindow {
public:
    MainWindow()
        : m_window(CreateWindowExW(0, L"Static", L"Setup", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 30, 600, 500, nullptr,
                                   nullptr, nullptr, nullptr))
    {
    }
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    ~MainWindow() { DestroyWindow(m_window); }
    operator HWND() const { return m_window; }

private:
    HWND m_window;
};

TEST(FolderPickerOfAMainWindow, StandsOverItAndGivesItBack)
{
    const MainWindow main;
    const TextSession session(UserTexts(), StandardTexts(), main);
    wchar_t buffer[MAX_PATH] = L"c:\\";
    const auto look = [&] {
        EXPECT_EQ(GetWindow(Dialog(), GW_OWNER), main);
        EXPECT_FALSE(IsWindowEnabled(main));
        const RECT place = PlaceOnScreen(Dialog());
        EXPECT_NEAR((place.left + place.right) / 2.0, 320, 2);
        EXPECT_NEAR((place.top + place.bottom) / 2.0, 280, 2);
        return true;
    };
    const DialogDriver driver({EditStands, look, PressCancel});
    EXPECT_EQ(_BrowseForFolder(session, title, L"", L"", L"", with_edit, buffer, MAX_PATH, 0), 2);
    EXPECT_TRUE(IsWindowEnabled(main));
}

// Lets the tree select a folder, as a click would.
DialogDriver::Step Selected(const wchar_t* path)
{
    return [path] {
        SendMessageW(Dialog(), BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(path));
        return true;
    };
}

TEST_F(FolderPicker, PutsWhatIsSelectedIntoTheEdit)
{
    const auto shows_folder = [] { return _wcsicmp(TextOf(Edit()).c_str(), L"c:\\windows\\system32") == 0; };
    // The item above the drives has no path; the platform would leave OK as it pleases.
    const auto select_computer = [] {
        const auto tree = [](UINT message, WPARAM what, LPARAM of) {
            return SendMessageW(Tree(Dialog()), message, what, of);
        };
        LPARAM item = tree(TVM_GETNEXTITEM, TVGN_CARET, 0);
        while (item && !TextOf(Edit()).empty()) {
            item = tree(TVM_GETNEXTITEM, TVGN_PARENT, item);
            tree(TVM_SELECTITEM, TVGN_CARET, item);
        }
        EXPECT_TRUE(item) << "each item has a path";
        return true;
    };
    const auto ok_is_off = [] { return !IsWindowEnabled(OkButton()); };
    const auto ok_is_on = [] { return IsWindowEnabled(OkButton()) != 0; };
    EXPECT_EQ(Browse(L"c:\\start", BIF_EDITBOX, false,
                     {EditStands, Selected(L"c:\\windows\\system32"), shows_folder, ok_is_on, select_computer,
                      ok_is_off, Typed(L"c:\\typed"), ok_is_on, PressOk}),
              1);
    EXPECT_STREQ(Path(), L"c:\\typed");
}

std::wstring SelectedName()
{
    wchar_t name[MAX_PATH] = L"";
    TVITEMW item{};
    item.mask = TVIF_TEXT;
    item.pszText = name;
    item.cchTextMax = MAX_PATH;
    item.hItem = reinterpret_cast<HTREEITEM>(SendMessageW(Tree(Dialog()), TVM_GETNEXTITEM, TVGN_CARET, 0));
    SendMessageW(Tree(Dialog()), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return name;
}

TEST_F(FolderPicker, WithoutAnEditReturnsWhatIsSelectedAndShowsTheStatus)
{
    const auto look = [] {
        if (!TreeStands())
            return false;
        EXPECT_FALSE(Edit());
        EXPECT_EQ(TextOf(GetDlgItem(Dialog(), status_id)), L"Or from here:");
        EXPECT_EQ(_wcsicmp(SelectedName().c_str(), L"windows"), 0) << SelectedName();
        return true;
    };
    EXPECT_EQ(Browse(L"c:\\windows\\", folders_only | BIF_STATUSTEXT, false, {look, PressOk}), 1);
    EXPECT_EQ(_wcsicmp(Path(), L"c:\\windows"), 0) << Path();
    EXPECT_EQ(Browse(L"c:\\", folders_only, false, {TreeStands, Selected(L"c:\\windows\\system32"), PressOk}), 1);
    EXPECT_EQ(_wcsicmp(Path(), L"c:\\windows\\system32"), 0) << Path();
    EXPECT_EQ(Browse(L"c:\\windows\\", folders_only, false, {TreeStands, PressCancel}), 2);
    EXPECT_STREQ(Path(), L"c:\\windows");
}

TEST_F(FolderPicker, HasNoEditForComputersAndPrinters)
{
    const auto look = [] {
        if (!TreeStands())
            return false;
        EXPECT_FALSE(Edit());
        return true;
    };
    EXPECT_EQ(Browse(L"c:\\windows\\", BIF_EDITBOX | BIF_BROWSEFORPRINTER, false, {look, PressOk}), 1);
    EXPECT_EQ(_wcsicmp(Path(), L"c:\\windows"), 0) << Path();
    EXPECT_EQ(Browse(L"", BIF_EDITBOX | BIF_BROWSEFORCOMPUTER, false, {look, PressOk}), 1);
    EXPECT_STRNE(Path(), L"") << "no name of what was picked";
    EXPECT_EQ(Browse(L"c:\\", BIF_EDITBOX | BIF_BROWSEFORCOMPUTER, false, {look, PressCancel}), 2);
    EXPECT_STREQ(Path(), L"c:");
}

TEST_F(FolderPicker, TakesMissingTextsFromTheResourceLibraries)
{
    wchar_t buffer[MAX_PATH] = L"c:\\";
    const auto dialog = [] { return DialogNamed(L"User title"); };
    const DialogDriver driver(
        {[&] { return dialog() && VisibleChild(dialog(), L"Edit"); },
         [&] {
             for (const wchar_t* text : {L"Standard message", L"Standard &folder:", L"Standard status:"})
                 EXPECT_TRUE(VisibleChild(dialog(), L"Static", text)) << text;
             return true;
         },
         [&] { return Press(dialog(), IDCANCEL); }});
    EXPECT_EQ(_BrowseForFolder(Context(), L"", nullptr, L"", nullptr, with_edit, buffer, MAX_PATH, 0), 2);
}

TEST_F(FolderPicker, KeepsItsOrderWhenTheDialogIsSized)
{
    const auto look = [] {
        ExpectEditAboveTree(Dialog());
        return true;
    };
    const auto keep = [] {
        KeepPicture(Dialog(), L"folder picker in the new style");
        return true;
    };
    EXPECT_EQ(Browse(L"c:\\windows", with_edit | BIF_NEWDIALOGSTYLE, false,
                     {EditStands, look, keep, Sized(80), look, Sized(-60), look, Sized(-400), look, PressCancel}),
              2);
}

TEST_F(FolderPicker, LeavesTheThreadsWayOfSharingObjectsAsItWas)
{
    ASSERT_EQ(Browse(L"c:\\", with_edit, false, {EditStands, PressCancel}), 2);
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK) << "the picker left the thread with a way";
    EXPECT_EQ(Browse(L"c:\\windows", with_edit | BIF_NEWDIALOGSTYLE, false, {EditStands, PressOk}), 1);
    EXPECT_STREQ(Path(), L"c:\\windows");
    CoUninitialize();
}

BSTR WINAPI NoText(const OLECHAR*, UINT) { return nullptr; }

TEST_F(FolderPicker, EndsWithTheErrorWhenMemoryRunsOutInside)
{
    HRESULT code = S_OK;
    std::unique_ptr<ImportPatch> no_memory;
    const auto run_out = [&] {
        no_memory = std::make_unique<ImportPatch>(GetModuleHandleW(L"VHRT.dll"), "SysAllocStringLen",
                                                  reinterpret_cast<void*>(&NoText));
        EXPECT_TRUE(no_memory->found());
        return Type(L"c:\\a text that is not short");
    };
    try {
        Browse(L"c:\\", with_edit, false, {EditStands, run_out});
    } catch (const vh::com_exception& failure) {
        code = failure.code();
    }
    no_memory.reset();
    EXPECT_EQ(code, E_OUTOFMEMORY);
    EXPECT_FALSE(Dialog());
}

} // namespace
