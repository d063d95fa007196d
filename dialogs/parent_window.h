// The window that fits as parent of a further dialog.
#pragma once

#include <windows.h>

class CDialogManager;

namespace vh {

// The current dialog's; else, where setup fact 40 asks for it, the installer's. Null when there is none.
HWND ParentWindow(const CDialogManager& dialogs);

} // namespace vh
