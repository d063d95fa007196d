// Exported functions of printing.
#include "vhrt/printing.h"

#include "../system/print_runtime.h"

int32_t _PrintFile(HWND window, const wchar_t* path) { return vh::PrintFile(window, path) ? 0 : -1; }
