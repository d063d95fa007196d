#include "control_values.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "text.h"

namespace host {

namespace {

enum class Type { other, edit, check, radio, combo, list };

struct ClassType {
    const wchar_t* name;
    Type type;
};
constexpr ClassType class_types[] = {
    {L"Edit", Type::edit},        {L"RichEdit", Type::edit},    {L"RichEdit20A", Type::edit},
    {L"RichEdit20W", Type::edit}, {L"RICHEDIT50W", Type::edit}, {L"ComboBox", Type::combo},
    {L"ListBox", Type::list},
};

LONG StyleOf(HWND control) { return static_cast<LONG>(GetWindowLongPtrW(control, GWL_STYLE)); }

Type TypeOfButton(HWND control)
{
    switch (StyleOf(control) & BS_TYPEMASK) {
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    case BS_3STATE:
    case BS_AUTO3STATE:
        return Type::check;
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
        return Type::radio;
    default:
        return Type::other;
    }
}

Type TypeOf(HWND control)
{
    wchar_t name[64] = L"";
    GetClassNameW(control, name, static_cast<int>(std::size(name)));
    if (_wcsicmp(name, L"Button") == 0)
        return TypeOfButton(control);
    for (const ClassType& row : class_types)
        if (_wcsicmp(name, row.name) == 0)
            return row.type;
    return Type::other;
}

std::wstring TextOf(HWND control)
{
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)), L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(control, text.data(), static_cast<int>(text.size() + 1))));
    return text;
}

// What combo boxes and lists have in common, by their messages.
struct Choices {
    UINT current, choose, length, text, find;
    LONG own_drawing, has_strings;
};
constexpr Choices combo_choices{CB_GETCURSEL,  CB_SETCURSEL,       CB_GETLBTEXTLEN,
                                CB_GETLBTEXT,  CB_FINDSTRINGEXACT, CBS_OWNERDRAWFIXED | CBS_OWNERDRAWVARIABLE,
                                CBS_HASSTRINGS};
constexpr Choices list_choices{LB_GETCURSEL,  LB_SETCURSEL,       LB_GETTEXTLEN,
                               LB_GETTEXT,    LB_FINDSTRINGEXACT, LBS_OWNERDRAWFIXED | LBS_OWNERDRAWVARIABLE,
                               LBS_HASSTRINGS};

bool HasTexts(HWND control, const Choices& of)
{
    const LONG style = StyleOf(control);
    return !(style & of.own_drawing) || (style & of.has_strings);
}

std::wstring TextAt(HWND control, const Choices& of, WPARAM place)
{
    const LRESULT length = SendMessageW(control, of.length, place, 0);
    if (length < 0)
        return {};
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    SendMessageW(control, of.text, place, reinterpret_cast<LPARAM>(text.data()));
    return text;
}

ControlValue ChoiceOf(HWND control, const Choices& of)
{
    const LRESULT place = SendMessageW(control, of.current, 0, 0);
    if (place < 0)
        return int64_t{-1};
    if (!HasTexts(control, of))
        return static_cast<int64_t>(place);
    return TextAt(control, of, static_cast<WPARAM>(place));
}

bool TakesSeveral(HWND list) { return (StyleOf(list) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0; }

bool IsEditable(HWND combo)
{
    const LONG kind = StyleOf(combo) & (CBS_SIMPLE | CBS_DROPDOWN);
    return kind == CBS_SIMPLE || kind == CBS_DROPDOWN;
}

std::vector<std::wstring> ChosenTexts(HWND list)
{
    std::vector<std::wstring> texts;
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i)
        if (SendMessageW(list, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0)
            texts.push_back(TextAt(list, list_choices, static_cast<WPARAM>(i)));
    return texts;
}

ControlValue ValueOf(HWND control, Type type)
{
    switch (type) {
    case Type::edit:
        if (StyleOf(control) & ES_PASSWORD)
            return HiddenValue{std::hash<std::wstring>()(TextOf(control))};
        return TextOf(control);
    case Type::combo:
        if (IsEditable(control))
            return TextOf(control);
        return ChoiceOf(control, combo_choices);
    case Type::list:
        if (TakesSeveral(control) && HasTexts(control, list_choices))
            return ChosenTexts(control);
        return ChoiceOf(control, list_choices);
    default: {
        const LRESULT state = SendMessageW(control, BM_GETCHECK, 0, 0);
        if (state == BST_INDETERMINATE)
            return int64_t{BST_INDETERMINATE};
        return state == BST_CHECKED;
    }
    }
}

std::wstring NameOf(int control) { return L"control " + std::to_wstring(control); }

[[noreturn]] void Refuse(int control, const std::wstring& reason)
{
    throw std::invalid_argument(Utf8(NameOf(control) + L" " + reason));
}

template <class Wanted>
const Wanted& As(int control, const ControlValue& value, const wchar_t* wanted)
{
    if (const Wanted* given = std::get_if<Wanted>(&value))
        return *given;
    Refuse(control, std::wstring(L"wants ") + wanted);
}

WPARAM PlaceOf(HWND control, int number, const Choices& of, const std::wstring& text)
{
    const LRESULT place =
        SendMessageW(control, of.find, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
    if (place < 0)
        Refuse(number, L"has no entry \"" + text + L"\"");
    return static_cast<WPARAM>(place);
}

void Choose(HWND control, int number, const Choices& of, const ControlValue& value)
{
    const int64_t* given = std::get_if<int64_t>(&value);
    const WPARAM place =
        given ? static_cast<WPARAM>(*given) : PlaceOf(control, number, of, As<std::wstring>(number, value, L"a text"));
    if (SendMessageW(control, of.choose, place, 0) < 0 && place != static_cast<WPARAM>(-1))
        Refuse(number, L"has no entry " + std::to_wstring(*given));
}

void ChooseSeveral(HWND list, int number, const ControlValue& value)
{
    const auto& texts = As<std::vector<std::wstring>>(number, value, L"a list of texts");
    std::vector<WPARAM> places;
    for (const std::wstring& text : texts)
        places.push_back(PlaceOf(list, number, list_choices, text));
    SendMessageW(list, LB_SETSEL, FALSE, -1);
    for (const WPARAM place : places)
        SendMessageW(list, LB_SETSEL, TRUE, static_cast<LPARAM>(place));
}

int SetCombo(HWND combo, int number, const ControlValue& value)
{
    if (!IsEditable(combo) || !std::holds_alternative<std::wstring>(value)) {
        Choose(combo, number, combo_choices, value);
        return CBN_SELCHANGE;
    }
    const auto& text = std::get<std::wstring>(value);
    if (SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str())) >= 0) {
        Choose(combo, number, combo_choices, value);
        return CBN_SELCHANGE;
    }
    SetWindowTextW(combo, text.c_str());
    return CBN_EDITCHANGE;
}

void SetCheck(HWND dialog, HWND button, int number, Type type, const ControlValue& value)
{
    if (const int64_t* state = std::get_if<int64_t>(&value); state && type == Type::check) {
        if (*state < BST_UNCHECKED || *state > BST_INDETERMINATE)
            Refuse(number, L"has no state " + std::to_wstring(*state));
        SendMessageW(button, BM_SETCHECK, static_cast<WPARAM>(*state), 0);
        return;
    }
    const bool on = As<bool>(number, value, L"true or false");
    for (HWND other = GetNextDlgGroupItem(dialog, button, FALSE); on && type == Type::radio && other && other != button;
         other = GetNextDlgGroupItem(dialog, other, FALSE))
        if (TypeOf(other) == Type::radio)
            SendMessageW(other, BM_SETCHECK, BST_UNCHECKED, 0);
    SendMessageW(button, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
}

// Keeps notifications from a dialog while its controls are set.
class QuietDialog {
public:
    explicit QuietDialog(HWND dialog) : m_dialog(dialog)
    {
        SetPropW(
            dialog, procedure_property,
            reinterpret_cast<HANDLE>(SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure))));
    }
    QuietDialog(const QuietDialog&) = delete;
    QuietDialog& operator=(const QuietDialog&) = delete;
    ~QuietDialog()
    {
        SetWindowLongPtrW(m_dialog, GWLP_WNDPROC,
                          reinterpret_cast<LONG_PTR>(RemovePropW(m_dialog, procedure_property)));
    }

private:
    static constexpr const wchar_t* procedure_property = L"VHRT quiet dialog";

    static LRESULT CALLBACK Procedure(HWND dialog, UINT message, WPARAM first, LPARAM second)
    {
        if (message == WM_COMMAND || message == WM_NOTIFY)
            return 0;
        return CallWindowProcW(reinterpret_cast<WNDPROC>(GetPropW(dialog, procedure_property)), dialog, message, first,
                               second);
    }

    HWND m_dialog;
};

} // namespace

ControlValues ValuesOf(HWND dialog)
{
    ControlValues values;
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        const Type type = TypeOf(control);
        const int number = GetDlgCtrlID(control);
        if (type != Type::other && number > 0 && number < 0xFFFF &&
            !(type == Type::edit && (StyleOf(control) & ES_READONLY)))
            values.emplace(number, ValueOf(control, type));
    }
    return values;
}

int SetValue(HWND dialog, int control, const ControlValue& value)
{
    const HWND window = GetDlgItem(dialog, control);
    if (!window)
        Refuse(control, L"is none of the dialog's");
    const QuietDialog quiet(dialog);
    const Type type = TypeOf(window);
    switch (type) {
    case Type::edit:
        SetWindowTextW(window, As<std::wstring>(control, value, L"a text").c_str());
        return EN_CHANGE;
    case Type::combo:
        return SetCombo(window, control, value);
    case Type::list:
        if (TakesSeveral(window) && HasTexts(window, list_choices))
            ChooseSeveral(window, control, value);
        else
            Choose(window, control, list_choices, value);
        return LBN_SELCHANGE;
    case Type::check:
    case Type::radio:
        SetCheck(dialog, window, control, type, value);
        return BN_CLICKED;
    default:
        Refuse(control, L"takes no value");
    }
}

bool IsRadioButton(HWND control) { return TypeOf(control) == Type::radio; }

bool TellsOfUse(HWND control, int code)
{
    switch (TypeOf(control)) {
    case Type::edit:
    case Type::combo:
    case Type::check:
    case Type::radio:
        return false;
    case Type::list:
        return code == LBN_DBLCLK;
    default:
        return code != BN_SETFOCUS && code != BN_KILLFOCUS;
    }
}

} // namespace host
