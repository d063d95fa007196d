// Libraries of the system that several tables of functions share.
#pragma once

#include "late_library.h"

namespace vh::late {

inline constinit late_library advapi32(L"advapi32.dll");
inline constinit late_library shell32(L"shell32.dll");

} // namespace vh::late
