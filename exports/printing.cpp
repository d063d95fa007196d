// Exported functions of printing: nothing prints yet.
#include "vhrt/printing.h"

int32_t _PrintFile(HWND, const wchar_t*) { return -1; }
