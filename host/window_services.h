// What a script does with the controls of its dialogs: the library shows and waits, the host reads and fills.
#pragma once

#include <span>

#include "scriptdata/variant.h"

namespace host {

// Each takes the arguments that docs/setup-scripts.md tells, first of all the dialog's window as CmdGetHwndDlg
// gives it. A control that is not there is a script_error.
vh::variant ControlText(std::span<const VARIANT> arguments);
vh::variant SetControlText(std::span<const VARIANT> arguments);
vh::variant EnableControl(std::span<const VARIANT> arguments);
vh::variant FocusControl(std::span<const VARIANT> arguments);
vh::variant ControlWindow(std::span<const VARIANT> arguments);
vh::variant SendControl(std::span<const VARIANT> arguments);

// Opens a document, a program or an address as the user's shell does; false where it knows no way.
vh::variant OpenInShell(std::span<const VARIANT> arguments);

} // namespace host
