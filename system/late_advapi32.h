// The functions of services, of access lists and of the registry's roots, bound on first use.
#pragma once

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include "../scriptdata/late_libraries.h"

namespace vh::late {

inline constinit late_function<decltype(AllocateAndInitializeSid)> allocate_sid(advapi32, "AllocateAndInitializeSid");
inline constinit late_function<decltype(CloseServiceHandle)> close_service(advapi32, "CloseServiceHandle");
inline constinit late_function<decltype(ControlService)> control_service(advapi32, "ControlService");
inline constinit late_function<decltype(ConvertStringSidToSidW)> sid_from_text(advapi32, "ConvertStringSidToSidW");
inline constinit late_function<decltype(CopySid)> copy_sid(advapi32, "CopySid");
inline constinit late_function<decltype(CreateWellKnownSid)> create_well_known_sid(advapi32, "CreateWellKnownSid");
inline constinit late_function<decltype(EnumDependentServicesW)> enum_dependents(advapi32, "EnumDependentServicesW");
inline constinit late_function<decltype(FreeSid)> free_sid(advapi32, "FreeSid");
inline constinit late_function<decltype(GetNamedSecurityInfoW)> get_security_info(advapi32, "GetNamedSecurityInfoW");
inline constinit late_function<decltype(IsValidSid)> is_valid_sid(advapi32, "IsValidSid");
inline constinit late_function<decltype(LookupAccountNameW)> lookup_account(advapi32, "LookupAccountNameW");
inline constinit late_function<decltype(OpenSCManagerW)> open_service_manager(advapi32, "OpenSCManagerW");
inline constinit late_function<decltype(OpenServiceW)> open_service(advapi32, "OpenServiceW");
inline constinit late_function<decltype(QueryServiceStatusEx)> query_service(advapi32, "QueryServiceStatusEx");
inline constinit late_function<decltype(RegOverridePredefKey)> override_root(advapi32, "RegOverridePredefKey");
inline constinit late_function<decltype(SetEntriesInAclW)> set_entries(advapi32, "SetEntriesInAclW");
inline constinit late_function<decltype(SetNamedSecurityInfoW)> set_security_info(advapi32, "SetNamedSecurityInfoW");

} // namespace vh::late
