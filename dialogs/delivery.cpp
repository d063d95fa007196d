#include "delivery.h"

#include <algorithm>

#include <windows.h>

#include <commctrl.h>

#include "../scriptdata/late_windows.h"

namespace vh {

namespace {

constexpr int any_code = -1;
constexpr int32_t no_code = -999;
constexpr int32_t opened_code = -100;
constexpr int32_t closed_code = -200;

struct ClassCode {
    const wchar_t* type;
    int code;
};

constexpr ClassCode entering[] = {
    {L"Edit", EN_CHANGE},
    {L"Edit", EN_UPDATE},
    {L"Edit", EN_MAXTEXT},
    {L"ComboBox", CBN_SELCHANGE},
    {L"ComboBox", CBN_DBLCLK},
    {L"ComboBox", CBN_EDITCHANGE},
    {L"ComboBox", CBN_EDITUPDATE},
    {L"ComboBox", CBN_DROPDOWN},
    {L"ComboBox", CBN_CLOSEUP},
    {L"ComboBox", CBN_SELENDOK},
    {L"ComboBox", CBN_SELENDCANCEL},
    {L"ListBox", LBN_SELCHANGE},
    {L"ListBox", LBN_DBLCLK},
    {L"ListBox", LBN_SELCANCEL},
    {L"Button", any_code},
};

constexpr ClassCode leaving[] = {
    {L"ComboBox", CBN_SELCHANGE}, {L"ComboBox", CBN_EDITCHANGE}, {L"Edit", EN_CHANGE},     {L"Button", any_code},
    {L"Static", any_code},        {L"ListBox", LBN_SELCHANGE},   {L"ListBox", LBN_DBLCLK}, {L"SysLink", any_code},
};

constexpr ClassCode scrolling[] = {{L"Edit", EN_HSCROLL}, {L"Edit", EN_VSCROLL}};

constexpr UINT shut_out[] = {NM_SETCURSOR,  NM_RELEASEDCAPTURE, NM_NCHITTEST, NM_HOVER,
                             NM_CUSTOMDRAW, NM_KILLFOCUS,       NM_SETFOCUS};

// A command's code for scripts; the last column says whether notification codes know it too.
struct CommandCode {
    const wchar_t* type;
    int code;
    int32_t result;
    bool in_notifications;
};
constexpr CommandCode command_codes[] = {
    {L"ComboBox", CBN_EDITCHANGE, -1004, false}, {L"ComboBox", CBN_SELCHANGE, -1005, true},
    {L"Edit", EN_CHANGE, -1007, true},           {L"ListBox", LBN_DBLCLK, -1008, true},
    {L"ListBox", LBN_SELCHANGE, -1009, true},    {L"Button", any_code, -1010, false},
};

template <class Row>
bool Fits(const Row& row, const stringxi& type, UINT code)
{
    return (row.code == any_code || static_cast<UINT>(row.code) == code) && type == row.type;
}

template <std::size_t Count>
bool Lists(const ClassCode (&rows)[Count], const stringxi& type, UINT code)
{
    return std::any_of(std::begin(rows), std::end(rows), [&](const ClassCode& row) { return Fits(row, type, code); });
}

HWND CommandSource(const DialogEvent& event) { return reinterpret_cast<HWND>(event.lParam); }
UINT CommandCodeOf(const DialogEvent& event) { return HIWORD(event.wParam); }

const CommandCode* FindCommandCode(const DialogEvent& event)
{
    const stringxi type = ClassNameOf(CommandSource(event));
    const auto found = std::find_if(std::begin(command_codes), std::end(command_codes),
                                    [&](const CommandCode& row) { return Fits(row, type, CommandCodeOf(event)); });
    return found == std::end(command_codes) ? nullptr : found;
}

bool LeavesAllCommands(const DialogEvent& event, bool linked)
{
    if (event.message == WM_CLOSE || event.message == WM_INITDIALOG)
        return true;
    const HWND source = CommandSource(event);
    if (event.message != WM_COMMAND || !late::is_window(source))
        return false;
    const stringxi type = ClassNameOf(source);
    return Lists(leaving, type, CommandCodeOf(event)) || (linked && HostsPages(type));
}

} // namespace

stringxi ClassNameOf(HWND window)
{
    wchar_t name[257] = L"";
    return window && late::get_class_name(window, name, static_cast<int>(std::size(name))) ? name : L"";
}

bool HostsPages(const stringxi& type) { return type.folded().starts_with(stringxi::view_type(L"AtlAxWin")); }

bool EntersStandard(const stringxi& type, UINT code) { return Lists(entering, type, code); }

bool PassesNotifyTest(const stringxi& type, UINT code)
{
    if (std::find(std::begin(shut_out), std::end(shut_out), code) != std::end(shut_out))
        return false;
    return type != L"Button";
}

bool Leaves(Delivery delivery, const DialogEvent& event, bool linked)
{
    switch (delivery) {
    case Delivery::standard:
        // Notifications passed their test on the way in.
        return event.message != WM_COMMAND ||
               !Lists(scrolling, ClassNameOf(CommandSource(event)), CommandCodeOf(event));
    case Delivery::all_commands:
        return LeavesAllCommands(event, linked);
    default:
        return false;
    }
}

int32_t SubCommandOf(const DialogEvent& event)
{
    if (event.message == WM_CLOSE)
        return closed_code;
    if (event.message == WM_INITDIALOG)
        return opened_code;
    const CommandCode* found = event.message == WM_COMMAND ? FindCommandCode(event) : nullptr;
    return found ? found->result : no_code;
}

int32_t NotificationCodeOf(const DialogEvent& event)
{
    if (event.message == WM_NOTIFY)
        return static_cast<int32_t>(event.code);
    if (event.message != WM_COMMAND)
        return no_code;
    const CommandCode* found = FindCommandCode(event);
    // Combo box edits and buttons appear raw here, and so does what no row names.
    return found && found->in_notifications ? found->result : static_cast<int32_t>(CommandCodeOf(event));
}

} // namespace vh
