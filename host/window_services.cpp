#include "window_services.h"

#include <algorithm>
#include <string>

#include <windows.h>

#include <shellapi.h>

#include "script_value.h"

namespace host {

namespace {

void Expect(std::span<const VARIANT> arguments, std::size_t count, const wchar_t* usage)
{
    if (arguments.size() != count)
        throw script_error(usage);
}

// The window of the first argument and, in it, the control of the second; number 0 means the window itself.
HWND Target(std::span<const VARIANT> arguments, std::size_t count, const wchar_t* usage)
{
    Expect(arguments, count, usage);
    const std::wstring_view whole(usage);
    const std::wstring name(whole.substr(0, whole.find(L'(')));
    const int64_t number = ToInt64(arguments[0]);
    const auto window = reinterpret_cast<HWND>(number);
    const int32_t id = ToInt(arguments[1]);
    if (!IsWindow(window))
        throw script_error(name + L": there is no window " + std::to_wstring(number));
    const HWND target = id == 0 ? window : GetDlgItem(window, id);
    if (!target)
        throw script_error(name + L": the window has no control " + std::to_wstring(id));
    return target;
}

// Messages whose last number is where the control writes to: a text of the script is no place for that.
constexpr UINT writing_messages[] = {WM_GETTEXT, EM_GETLINE, CB_GETLBTEXT, LB_GETTEXT};

} // namespace

vh::variant ControlText(std::span<const VARIANT> arguments)
{
    const HWND target = Target(arguments, 2, L"ControlText(window, control)");
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(target)), L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(target, text.data(), static_cast<int>(text.size() + 1))));
    return vh::variant(text.c_str());
}

vh::variant SetControlText(std::span<const VARIANT> arguments)
{
    const HWND target = Target(arguments, 3, L"SetControlText(window, control, text)");
    SetWindowTextW(target, ToText(arguments[2]).c_str());
    return {};
}

vh::variant EnableControl(std::span<const VARIANT> arguments)
{
    const HWND target = Target(arguments, 3, L"EnableControl(window, control, on)");
    EnableWindow(target, ToInt(arguments[2]) != 0);
    return {};
}

vh::variant FocusControl(std::span<const VARIANT> arguments)
{
    const HWND target = Target(arguments, 2, L"FocusControl(window, control)");
    // By the dialog, which also moves the mark of the default button.
    SendMessageW(reinterpret_cast<HWND>(ToInt64(arguments[0])), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(target), TRUE);
    return {};
}

vh::variant ControlWindow(std::span<const VARIANT> arguments)
{
    return FromInt64(reinterpret_cast<int64_t>(Target(arguments, 2, L"ControlWindow(window, control)")));
}

vh::variant SendControl(std::span<const VARIANT> arguments)
{
    const HWND target = Target(arguments, 5, L"SendControl(window, control, message, number, number or text)");
    const auto message = static_cast<UINT>(ToInt(arguments[2]));
    if (V_VT(&arguments[4]) == VT_BSTR && std::ranges::find(writing_messages, message) != std::end(writing_messages))
        throw script_error(L"SendControl: message " + std::to_wstring(message) + L" gives a text and takes none");
    const std::wstring text = V_VT(&arguments[4]) == VT_BSTR ? ToText(arguments[4]) : std::wstring();
    const LPARAM last = V_VT(&arguments[4]) == VT_BSTR ? reinterpret_cast<LPARAM>(text.c_str())
                                                       : static_cast<LPARAM>(ToInt64(arguments[4]));
    return FromInt64(SendMessageW(target, message, static_cast<WPARAM>(ToInt64(arguments[3])), last));
}

vh::variant OpenInShell(std::span<const VARIANT> arguments)
{
    Expect(arguments, 1, L"OpenInShell(path or address)");
    SHELLEXECUTEINFOW order{};
    order.cbSize = sizeof(order);
    order.fMask = SEE_MASK_FLAG_NO_UI;
    const std::wstring file = ToText(arguments[0]);
    order.lpFile = file.c_str();
    order.nShow = SW_SHOWNORMAL;
    return vh::variant(ShellExecuteExW(&order) != FALSE);
}

} // namespace host
