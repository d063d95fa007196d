// The functions of WinInet that the library calls.
#pragma once

#include <windows.h>

#include <wininet.h>

#include "../scriptdata/late_library.h"

namespace vh::late {

inline constinit late_library wininet(L"wininet.dll");
inline constinit late_function<decltype(InternetCrackUrlW)> internet_crack_url(wininet, "InternetCrackUrlW");
inline constinit late_function<decltype(InternetCanonicalizeUrlW)>
    internet_canonicalize_url(wininet, "InternetCanonicalizeUrlW");

} // namespace vh::late
