// Exported functions by which a script reaches beyond the library.
#include "../exports/vhrt/calls.h"

int32_t _SetDllDirectory(const wchar_t* path) { return SetDllDirectoryW(path ? path : L""); }
