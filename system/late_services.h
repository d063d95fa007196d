// The service manager's functions, bound on first use.
#pragma once

#include <windows.h>

#include "../scriptdata/late_library.h"

namespace vh::late {

inline constinit late_library advapi32(L"advapi32.dll");
inline constinit late_function<decltype(CloseServiceHandle)> close_service(advapi32, "CloseServiceHandle");
inline constinit late_function<decltype(ControlService)> control_service(advapi32, "ControlService");
inline constinit late_function<decltype(EnumDependentServicesW)> enum_dependents(advapi32, "EnumDependentServicesW");
inline constinit late_function<decltype(OpenSCManagerW)> open_service_manager(advapi32, "OpenSCManagerW");
inline constinit late_function<decltype(OpenServiceW)> open_service(advapi32, "OpenServiceW");
inline constinit late_function<decltype(QueryServiceStatusEx)> query_service(advapi32, "QueryServiceStatusEx");

} // namespace vh::late
