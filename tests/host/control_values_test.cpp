// What a user sets in a dialog, read from its controls and set again.
#include "host/control_values.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include <commctrl.h>

namespace {

using host::ControlValue;
using Texts = std::vector<std::wstring>;

// A window with one control of each kind; it counts what it is told.
class Dialog {
public:
    struct Row {
        int number;
        const wchar_t* type;
        DWORD style;
        std::vector<const wchar_t*> entries;
    };

    explicit Dialog(const std::vector<Row>& rows)
        : m_window(CreateWindowW(L"#32770", L"", WS_OVERLAPPED, 0, 0, 400, 400, nullptr, nullptr, nullptr, nullptr))
    {
        SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&m_told));
        SetWindowLongPtrW(m_window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(&Procedure));
        for (const Row& row : rows) {
            const HWND control =
                CreateWindowW(row.type, L"", WS_CHILD | WS_VISIBLE | row.style, 0, 0, 100, 100, m_window,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(row.number)), nullptr, nullptr);
            const UINT add = std::wstring_view(row.type) == L"ListBox" ? LB_ADDSTRING : CB_ADDSTRING;
            for (const wchar_t* entry : row.entries)
                SendMessageW(control, add, 0, reinterpret_cast<LPARAM>(entry));
        }
        m_told = 0;
    }
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;
    ~Dialog() { DestroyWindow(m_window); }

    HWND window() const { return m_window; }
    int told() const { return m_told; }

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM, LPARAM)
    {
        if (message == WM_COMMAND)
            ++*reinterpret_cast<int*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        return FALSE;
    }

    HWND m_window;
    int m_told = 0;
};

const std::vector<Dialog::Row> all_kinds = {
    {1, L"Button", BS_PUSHBUTTON, {}},
    {10, L"Edit", 0, {}},
    {11, L"Edit", ES_PASSWORD, {}},
    {12, L"Edit", ES_READONLY, {}},
    {20, L"Button", BS_AUTOCHECKBOX, {}},
    {21, L"Button", BS_AUTO3STATE, {}},
    {30, L"Button", BS_AUTORADIOBUTTON | WS_GROUP, {}},
    {31, L"Button", BS_AUTORADIOBUTTON, {}},
    {40, L"ComboBox", CBS_DROPDOWNLIST | WS_GROUP, {L"Eins", L"Zwei"}},
    {41, L"ComboBox", CBS_DROPDOWN, {L"Eins", L"Zwei"}},
    {50, L"ListBox", LBS_NOTIFY, {L"Eins", L"Zwei"}},
    {51, L"ListBox", LBS_NOTIFY | LBS_EXTENDEDSEL, {L"Eins", L"Zwei", L"Drei"}},
    {60, L"Static", 0, {}},
};

TEST(ControlValues, AreSetAsTheyAreReadAndTheDialogHearsNothing)
{
    const Dialog dialog(all_kinds);
    const host::ControlValues fresh = host::ValuesOf(dialog.window());
    std::vector<int> numbers;
    for (const auto& [number, value] : fresh)
        numbers.push_back(number);
    EXPECT_EQ(numbers, (std::vector<int>{10, 11, 20, 21, 30, 31, 40, 41, 50, 51}));

    const struct {
        int control;
        ControlValue value;
        int code;
    } rows[] = {
        {10, L"a \"text\"", EN_CHANGE},
        {20, true, BN_CLICKED},
        {21, int64_t{BST_INDETERMINATE}, BN_CLICKED},
        {31, true, BN_CLICKED},
        {30, true, BN_CLICKED},
        {40, L"Zwei", CBN_SELCHANGE},
        {40, L"Eins", CBN_SELCHANGE},
        {41, L"of my own", CBN_EDITCHANGE},
        {41, L"Zwei", CBN_SELCHANGE},
        {50, L"Eins", LBN_SELCHANGE},
        {51, Texts{L"Eins", L"Drei"}, LBN_SELCHANGE},
        {51, Texts{}, LBN_SELCHANGE},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(host::SetValue(dialog.window(), row.control, row.value), row.code) << row.control;
        EXPECT_TRUE(host::ValuesOf(dialog.window()).at(row.control) == row.value) << row.control;
    }
    EXPECT_TRUE(host::ValuesOf(dialog.window()).at(31) == ControlValue(false)) << "one of a row";
    EXPECT_EQ(dialog.told(), 0);
    SetDlgItemTextW(dialog.window(), 10, L"x");
    EXPECT_GT(dialog.told(), 0) << "told again afterwards";
}

TEST(ControlValues, PasswordsShowThatTheyChangedAndNothingElse)
{
    const Dialog dialog(all_kinds);
    const ControlValue empty = host::ValuesOf(dialog.window()).at(11);
    host::SetValue(dialog.window(), 11, L"geheim");
    wchar_t text[20] = L"";
    GetDlgItemTextW(dialog.window(), 11, text, 20);
    EXPECT_STREQ(text, L"geheim");
    const ControlValue typed = host::ValuesOf(dialog.window()).at(11);
    EXPECT_TRUE(std::holds_alternative<host::HiddenValue>(typed));
    EXPECT_FALSE(typed == empty);
}

TEST(ControlValues, OfAnotherKindAreRefusedByName)
{
    const Dialog dialog(all_kinds);
    const struct {
        int control;
        ControlValue value;
        const char* reason;
    } rows[] = {
        {99, true, "control 99 is none of the dialog's"},
        {60, true, "control 60 takes no value"},
        {10, true, "control 10 wants a text"},
        {20, L"yes", "control 20 wants true or false"},
        {30, int64_t{2}, "control 30 wants true or false"},
        {40, L"Drei", "control 40 has no entry \"Drei\""},
        {40, int64_t{7}, "control 40 has no entry 7"},
        {50, L"Drei", "control 50 has no entry \"Drei\""},
        {51, L"Eins", "control 51 wants a list of texts"},
        {51, Texts{L"Eins", L"Neun"}, "control 51 has no entry \"Neun\""},
    };
    const host::ControlValues before = host::ValuesOf(dialog.window());
    for (const auto& row : rows) {
        try {
            host::SetValue(dialog.window(), row.control, row.value);
            ADD_FAILURE() << row.reason;
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), row.reason);
        }
    }
    EXPECT_TRUE(host::ValuesOf(dialog.window()) == before);
}

TEST(ControlValues, OnlyUseIsAnAnswer)
{
    const Dialog dialog(all_kinds);
    const struct {
        int control, code;
        bool use;
    } rows[] = {{1, BN_CLICKED, true},   {1, BN_SETFOCUS, false},    {20, BN_CLICKED, false},
                {31, BN_CLICKED, false}, {10, EN_CHANGE, false},     {40, CBN_DROPDOWN, false},
                {50, LBN_DBLCLK, true},  {50, LBN_SELCHANGE, false}, {60, STN_CLICKED, true}};
    for (const auto& row : rows)
        EXPECT_EQ(host::TellsOfUse(GetDlgItem(dialog.window(), row.control), row.code), row.use) << row.control;
}

} // namespace
