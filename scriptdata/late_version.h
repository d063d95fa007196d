// The functions of the system's version library.
#pragma once

#include <windows.h>

#include "late_library.h"

namespace vh::late {

inline constinit late_library version(L"version.dll");
inline constinit late_function<decltype(GetFileVersionInfoSizeW)> get_version_size(version, "GetFileVersionInfoSizeW");
inline constinit late_function<decltype(GetFileVersionInfoW)> get_version(version, "GetFileVersionInfoW");
inline constinit late_function<decltype(VerQueryValueW)> query_version(version, "VerQueryValueW");

} // namespace vh::late
