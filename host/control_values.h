// What a user sets in the controls of a dialog: read, and set as the user would.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include <windows.h>

namespace host {

// A password is told apart from others and never kept; a check box or chosen radio button is a truth, one in its third
// state a number; an edit, a combo box and a list are texts, a list of several choices a list of texts; lists without
// texts are places.
struct HiddenValue {
    std::size_t mark = 0;
    bool operator==(const HiddenValue&) const = default;
};
using ControlValue = std::variant<HiddenValue, bool, int64_t, std::wstring, std::vector<std::wstring>>;
using ControlValues = std::map<int, ControlValue>;

// By number, those of the dialog's own controls that a user may change.
ControlValues ValuesOf(HWND dialog);

// Sets a control; the dialog hears nothing of it. Result: the code by which the control would have told. Throws
// std::invalid_argument for a control that the dialog does not have, or that can't have this value.
int SetValue(HWND dialog, int control, const ControlValue& value);

bool IsRadioButton(HWND control);
// Whether a notification tells that a button, a link or an entry was used, not that a value or the focus changed.
bool TellsOfUse(HWND control, int code);

} // namespace host
