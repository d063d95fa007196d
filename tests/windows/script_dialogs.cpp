// Script dialogs, driven by what their controls send.
#include <windows.h>

#include <commctrl.h>

#include "../support/screenshot.h"
#include "../support/script_dialogs.h"

using namespace vh::test;

namespace {

constexpr int edit = 1001, combo = 1002, list = 1003, button = 1004, text = 1005, link = 1006, tree = 1007;

class ScriptDialogs : public ::testing::Test {
protected:
    TextSession session{DialogTemplates(), StandardTexts()};
};

TEST_F(ScriptDialogs, AreCreatedThenShownThenEnded)
{
    const TestDialog dialog(session, L"d", 100);
    EXPECT_EQ(_ReleaseDialog(session, L"d"), 0) << "not created yet";
    const TestDialog again(session, L"d", 100);
    EXPECT_EQ(_CmdGetHwndDlg(session, L"d"), 0);
    EXPECT_EQ(_CmdGetMsg(session, L"d"), 0);

    EXPECT_EQ(again.Wait(), DialogCreated);
    const HWND window = again.window();
    EXPECT_TRUE(IsWindow(window) && !IsWindowVisible(window));
    EXPECT_EQ(_ReleaseDialog(session, L"d"), -2);
    EXPECT_EQ(again.WaitOrHelp(), 8);
    EXPECT_TRUE(IsWindowVisible(window));
    KeepPicture(window, L"script-dialog-classic");

    EXPECT_EQ(again.End(), 0);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(again.Wait(), DialogCreated) << "can be waited on again";
}

// What a control's command becomes in the two ways of delivery, and under which codes.
TEST_F(ScriptDialogs, TellCommandsByClassAndCode)
{
    constexpr int none = 8; // only the help key came
    Table<int, UINT, bool, bool, int32_t, int32_t> cases = {
        {edit, EN_CHANGE, true, true, -1007, -1007},
        {edit, EN_UPDATE, true, false, -999, EN_UPDATE},
        {edit, EN_MAXTEXT, true, false, -999, EN_MAXTEXT},
        {edit, EN_SETFOCUS, false, false, 0, 0},
        {edit, EN_HSCROLL, false, false, 0, 0},
        {combo, CBN_SELCHANGE, true, true, -1005, -1005},
        {combo, CBN_DBLCLK, true, false, -999, CBN_DBLCLK},
        {combo, CBN_SETFOCUS, false, false, 0, 0},
        {combo, CBN_EDITCHANGE, true, true, -1004, CBN_EDITCHANGE},
        {combo, CBN_EDITUPDATE, true, false, -999, CBN_EDITUPDATE},
        {combo, CBN_DROPDOWN, true, false, -999, CBN_DROPDOWN},
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
        {4711, BN_CLICKED, false, false, 0, 0},
    };
    const std::pair<int32_t, bool> modes[] = {{DialogStandardEvents, false}, {DialogAllCommands, true}};
    for (const auto& [mode, all] : modes) {
        const TestDialog dialog(session, L"d", 100, mode | DialogCentered);
        ASSERT_EQ(dialog.Wait(), DialogCreated);
        EXPECT_EQ(dialog.WaitOrHelp(), none);
        for (const auto& [id, code, standard, wanted_all, sub, notification] : cases) {
            dialog.Post(id, code);
            const bool delivered = all ? wanted_all : standard;
            ASSERT_EQ(dialog.WaitOrHelp(), delivered ? id : none) << id << " " << code << " " << mode;
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
    const TestDialog deaf(session, L"deaf", 100, DialogCentered);
    ASSERT_EQ(deaf.Wait(), DialogCreated);
    deaf.Post(button, BN_CLICKED);
    EXPECT_EQ(deaf.WaitOrHelp(), none);
}

} // namespace
