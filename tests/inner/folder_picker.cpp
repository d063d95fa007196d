// What the folder picker asks of the platform's dialog, and what it makes of the answer.
#include "../../dialogs/folder_picker.h"
#include "../../dialogs/late_dialogs.h"
#include "../../scriptdata/task_memory.h"
#include "../support/test.h"

namespace {

using namespace vh::test;

// Stands in for the platform's dialog: notes what it is asked, and picks an item of the test's.
struct FakeDialog {
    static PIDLIST_ABSOLUTE WINAPI Show(BROWSEINFOW* info)
    {
        s_flags = info->ulFlags;
        s_has_root = info->pidlRoot != nullptr;
        if (s_selection)
            info->lpfn(nullptr, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(*s_selection), info->lParam);
        if (!s_picks)
            return nullptr;
        wcscpy_s(info->pszDisplayName, MAX_PATH, L"display name");
        PIDLIST_ABSOLUTE answer = nullptr;
        SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &answer);
        return answer;
    }

    // `selection` is null when nothing is selected, and points to a null item for one without a path.
    FakeDialog(bool picks, const PIDLIST_ABSOLUTE* selection)
    {
        s_picks = picks;
        s_selection = selection;
        vh::late::browse_for_folder.replace(&Show);
    }
    FakeDialog(const FakeDialog&) = delete;
    FakeDialog& operator=(const FakeDialog&) = delete;
    ~FakeDialog() { vh::late::browse_for_folder.replace(nullptr); }

    static inline UINT s_flags = 0;
    static inline bool s_has_root = false;
    static inline bool s_picks = false;
    static inline const PIDLIST_ABSOLUTE* s_selection = nullptr;
};

const vh::PickerTexts texts;

TEST(FolderPicker, HidesItsOwnEditFromThePlatform)
{
    const struct {
        int32_t asked;
        UINT seen;
        bool root;
        // A thread that shares its objects with others gets the plain style.
        bool shares = false;
    } cases[] = {{0, 0, false},          {0x1, 0x1, false},      {0x5, 0x5, false},
                 {0x15, 0x1, false},     {0x1014, 0x1004, true}, {0x2014, 0x2004, false},
                 {0x3014, 0x3004, true}, {0x51, 0x41, false},    {0x51, 0x1, false, true}};
    for (const auto& one : cases) {
        if (one.shares) {
            ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        }
        const FakeDialog dialog(false, nullptr);
        EXPECT_FALSE(vh::FolderPicker(texts, one.asked, false).Run(nullptr, L"c:\\start"));
        EXPECT_EQ(FakeDialog::s_flags, one.seen) << std::hex << one.asked;
        EXPECT_EQ(FakeDialog::s_has_root, one.root) << std::hex << one.asked;
        if (one.shares)
            CoUninitialize();
    }
}

TEST(FolderPicker, AnswersWithThePathOfWhatIsSelectedOrItsName)
{
    wchar_t windows[MAX_PATH];
    GetWindowsDirectoryW(windows, MAX_PATH);
    vh::unique_id_list item;
    ASSERT_EQ(SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, item.put()), S_OK);
    const PIDLIST_ABSOLUTE folder = item.get();
    const PIDLIST_ABSOLUTE no_path = nullptr;
    Table<int32_t, const PIDLIST_ABSOLUTE*, const wchar_t*> cases = {
        {0x1, &folder, windows}, {0x2, &folder, windows},          {0x8, &no_path, L"display name"},
        {0x1, &no_path, L""},    {0x2, &no_path, L"display name"}, {0x1000, &no_path, L"display name"},
        {0x4, &no_path, L""},    {0x1, nullptr, L"c:\\start"},     {0x2000, &no_path, L"display name"}};
    for (const auto& [flags, selection, path] : cases) {
        const FakeDialog dialog(true, selection);
        vh::FolderPicker picker(texts, flags, false);
        EXPECT_TRUE(picker.Run(nullptr, L"c:\\start"));
        EXPECT_EQ(_wcsicmp(picker.Path().c_str(), path), 0) << flags << " " << picker.Path().c_str();
    }
}

// A dialog with nothing in it, which tells the picker what a platform's would.
class BareDialog {
public:
    explicit BareDialog(BROWSEINFOW* info) : m_info(info)
    {
        const struct {
            DLGTEMPLATE dialog;
            WORD no_menu, no_class, no_title;
        } bare{{WS_POPUP | WS_CAPTION, WS_EX_CONTEXTHELP, 0, 0, 0, 150, 100}, 0, 0, 0};
        m_window = CreateDialogIndirectParamW(nullptr, &bare.dialog, nullptr, &Procedure, 0);
    }
    BareDialog(const BareDialog&) = delete;
    BareDialog& operator=(const BareDialog&) = delete;
    ~BareDialog() { DestroyWindow(m_window); }

    HWND window() const { return m_window; }
    void Tell(UINT notice, PIDLIST_ABSOLUTE item = nullptr) const
    {
        m_info->lpfn(m_window, notice, reinterpret_cast<LPARAM>(item), m_info->lParam);
    }
    // The dialog's own messages to itself.
    void Settle() const
    {
        MSG message;
        while (PeekMessageW(&message, m_window, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }
    void Press(int button) const { SendMessageW(m_window, WM_COMMAND, static_cast<WPARAM>(button), 0); }
    std::wstring Typed() const
    {
        wchar_t text[MAX_PATH] = L"";
        GetDlgItemTextW(m_window, vh::PickerEdit::edit_id, text, MAX_PATH);
        return text;
    }

private:
    static INT_PTR CALLBACK Procedure(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

    BROWSEINFOW* m_info;
    HWND m_window;
};

using Story = void (*)(const BareDialog&);
Story s_story;

TEST(FolderPicker, NeedsNoControlOfThePlatforms)
{
    const std::pair<Story, bool> cases[] = {
        // The starting folder stays while the tree comes up.
        {[](const BareDialog& shown) {
             EXPECT_EQ(GetWindowLongPtrW(shown.window(), GWL_EXSTYLE) & WS_EX_CONTEXTHELP, 0);
             vh::unique_id_list item;
             ASSERT_EQ(SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, item.put()), S_OK);
             shown.Tell(BFFM_SELCHANGED, item.get());
             EXPECT_EQ(shown.Typed(), L"c:\\start");
             shown.Settle();
             EXPECT_EQ(shown.Typed(), L"c:\\start");
             shown.Tell(BFFM_SELCHANGED, item.get());
             EXPECT_NE(shown.Typed(), L"c:\\start");
         },
         false},
        {[](const BareDialog& shown) { shown.Settle(), shown.Press(IDOK); }, true},
        {[](const BareDialog& shown) { shown.Press(IDOK), shown.Press(IDCANCEL); }, false}};
    vh::late::browse_for_folder.replace([](BROWSEINFOW* info) -> PIDLIST_ABSOLUTE {
        const BareDialog dialog(info);
        dialog.Tell(BFFM_INITIALIZED);
        s_story(dialog);
        return nullptr;
    });
    for (const auto& [story, picked] : cases) {
        s_story = story;
        vh::FolderPicker picker(texts, BIF_EDITBOX, false);
        EXPECT_EQ(picker.Run(nullptr, L"c:\\start"), picked);
        EXPECT_STREQ(picker.Path().c_str(), L"c:\\start");
    }
    vh::late::browse_for_folder.replace(nullptr);
}

} // namespace
