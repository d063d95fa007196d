// The functions of the print spooler that the library calls.
#pragma once

#include <windows.h>

#include <winspool.h>

#include "../scriptdata/late_library.h"

namespace vh::late {

inline constinit late_library winspool(L"winspool.drv");
inline constinit late_function<decltype(EnumPortsW)> enum_ports(winspool, "EnumPortsW");

} // namespace vh::late
