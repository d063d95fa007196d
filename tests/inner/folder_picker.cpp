// What the folder picker asks of the platform's dialog, and what it makes of the answer.
#include "../../dialogs/folder_picker.h"
#include "../../dialogs/late_dialogs.h"
#include "../../scriptdata/task_memory.h"
#include "../support/test.h"

namespace {

const vh::PickerTexts texts{};

// Pickers on a dialog of the test's in the place of the platform's.
struct FolderPicker : testing::Test {
    FolderPicker() { EXPECT_EQ(SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, windows.put()), S_OK); }

    static inline std::function<PIDLIST_ABSOLUTE(BROWSEINFOW*)> show;
    const Replaced<decltype(vh::late::browse_for_folder)> replaced{
        vh::late::browse_for_folder, [](BROWSEINFOW* info) WINAPI -> PIDLIST_ABSOLUTE { return show(info); }};
    vh::unique_id_list windows;
};

TEST_F(FolderPicker, HidesItsOwnEditFromThePlatform)
{
    // A thread that shares its objects with others gets the plain style.
    Table<int32_t, UINT, bool, bool> cases = {
        {0, 0, false, false},          {0x1, 0x1, false, false},      {0x5, 0x5, false, false},
        {0x15, 0x1, false, false},     {0x1014, 0x1004, true, false}, {0x2014, 0x2004, false, false},
        {0x3014, 0x3004, true, false}, {0x51, 0x41, false, false},    {0x51, 0x1, false, true}};
    for (const auto& [asked, seen, root, shares] : cases) {
        UINT flags = 0;
        bool has_root = false;
        show = [&](const BROWSEINFOW* info) {
            flags = info->ulFlags;
            has_root = info->pidlRoot != nullptr;
            return nullptr;
        };
        ASSERT_TRUE(!shares || CoInitializeEx(nullptr, COINIT_MULTITHREADED) == S_OK);
        EXPECT_FALSE(vh::FolderPicker(texts, asked, false).Run(nullptr, L"c:\\start"));
        EXPECT_GIVES(flags, seen, has_root, root);
        if (shares)
            CoUninitialize();
    }
}

TEST_F(FolderPicker, AnswersWithThePathOfWhatIsSelectedOrItsName)
{
    const std::wstring windows_path = Filled(GetWindowsDirectoryW);
    const wchar_t* const path = windows_path.c_str();
    const PIDLIST_ABSOLUTE folder = windows.get();
    constexpr PIDLIST_ABSOLUTE no_path = nullptr;
    Table<int32_t, std::optional<PIDLIST_ABSOLUTE>, const wchar_t*> cases = {{0x1, folder, path},
                                                                             {0x2, folder, path},
                                                                             {0x8, no_path, L"display name"},
                                                                             {0x1, no_path, L""},
                                                                             {0x2, no_path, L"display name"},
                                                                             {0x1000, no_path, L"display name"},
                                                                             {0x4, no_path, L""},
                                                                             {0x1, std::nullopt, L"c:\\start"},
                                                                             {0x2000, no_path, L"display name"}};
    for (const auto& [flags, selected, wanted] : cases) {
        show = [selection = selected](const BROWSEINFOW* info) {
            if (selection)
                info->lpfn(nullptr, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(*selection), info->lParam);
            wcscpy_s(info->pszDisplayName, MAX_PATH, L"display name");
            PIDLIST_ABSOLUTE answer = nullptr;
            SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &answer);
            return answer;
        };
        vh::FolderPicker picker(texts, flags, false);
        EXPECT_TRUE(picker.Run(nullptr, L"c:\\start"));
        EXPECT_EQ(_wcsicmp(picker.Path().c_str(), wanted), 0) << flags << " " << picker.Path().c_str();
    }
}

// A dialog with nothing in it, which tells the picker what a platform's would.
class BareDialog : Pinned {
public:
    explicit BareDialog(const BROWSEINFOW* info) : m_info(info) {}
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
        return Filled([this](auto... to) { GetDlgItemTextW(m_window, vh::PickerEdit::edit_id, to...); });
    }

private:
    const BROWSEINFOW* m_info;
    HWND m_window = NewDialog({WS_POPUP | WS_CAPTION, WS_EX_CONTEXTHELP, 0, 0, 0, 150, 100});
};

TEST_F(FolderPicker, NeedsNoControlOfThePlatforms)
{
    using Story = std::function<void(const BareDialog&)>;
    Table<Story, bool> cases = {// The starting folder stays while the tree comes up.
                                {[&](const BareDialog& shown) {
                                     EXPECT_EQ(GetWindowLongPtrW(shown.window(), GWL_EXSTYLE) & WS_EX_CONTEXTHELP, 0);
                                     shown.Tell(BFFM_SELCHANGED, windows.get());
                                     EXPECT_EQ(shown.Typed(), L"c:\\start");
                                     shown.Settle();
                                     EXPECT_EQ(shown.Typed(), L"c:\\start");
                                     shown.Tell(BFFM_SELCHANGED, windows.get());
                                     EXPECT_NE(shown.Typed(), L"c:\\start");
                                 },
                                 false},
                                {[](const BareDialog& shown) { shown.Settle(), shown.Press(IDOK); }, true},
                                {[](const BareDialog& shown) { shown.Press(IDOK), shown.Press(IDCANCEL); }, false}};
    for (const auto& [story, picked] : cases) {
        show = [&, &tell = story](const BROWSEINFOW* info) {
            const BareDialog dialog(info);
            dialog.Tell(BFFM_INITIALIZED);
            tell(dialog);
            return nullptr;
        };
        vh::FolderPicker picker(texts, BIF_EDITBOX, false);
        EXPECT_EQ(picker.Run(nullptr, L"c:\\start"), picked);
        EXPECT_STREQ(picker.Path().c_str(), L"c:\\start");
    }
}

} // namespace
