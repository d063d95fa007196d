// Functions that a supported system may lack. Whoever calls one has another way when it is not there, and a test
// that hides the rows of `fallbacks` makes the library take it.
#pragma once

#include <windows.h>

#include <shellscalingapi.h>

#include "late_library.h"

namespace vh::late {

inline constinit late_library kernel32(L"kernel32.dll");
inline constinit late_function<decltype(GlobalMemoryStatusEx)> global_memory_status_ex(kernel32,
                                                                                       "GlobalMemoryStatusEx");
inline constinit late_function<decltype(IsWow64Process)> is_wow64_process(kernel32, "IsWow64Process");
inline constinit late_function<BOOL WINAPI(HANDLE, USHORT*, USHORT*)> is_wow64_process2(kernel32, "IsWow64Process2");
inline constinit late_function<decltype(Wow64DisableWow64FsRedirection)>
    wow64_disable_fs_redirection(kernel32, "Wow64DisableWow64FsRedirection");
inline constinit late_function<decltype(Wow64RevertWow64FsRedirection)>
    wow64_revert_fs_redirection(kernel32, "Wow64RevertWow64FsRedirection");
inline constinit late_function<decltype(Wow64EnableWow64FsRedirection)>
    wow64_enable_fs_redirection(kernel32, "Wow64EnableWow64FsRedirection");
inline constinit late_function<decltype(LCIDToLocaleName)> lcid_to_locale_name(kernel32, "LCIDToLocaleName");
inline constinit late_function<decltype(LocaleNameToLCID)> locale_name_to_lcid(kernel32, "LocaleNameToLCID");
inline constinit late_function<decltype(GetSystemDefaultUILanguage)>
    get_system_default_ui_language(kernel32, "GetSystemDefaultUILanguage");

inline constinit late_library shcore(L"Shcore.dll");
inline constinit late_function<decltype(GetDpiForMonitor)> get_dpi_for_monitor(shcore, "GetDpiForMonitor");

inline constinit late_library mlang(L"mlang.dll");
inline constinit late_function<HRESULT WINAPI(LCID, wchar_t*, int)> lcid_to_rfc1766(mlang, "LcidToRfc1766W");
inline constinit late_function<HRESULT WINAPI(LCID*, const wchar_t*)> rfc1766_to_lcid(mlang, "Rfc1766ToLcidW");

inline constexpr late_binding* fallbacks[] = {
    &global_memory_status_ex,
    &is_wow64_process,
    &is_wow64_process2,
    &wow64_disable_fs_redirection,
    &wow64_revert_fs_redirection,
    &wow64_enable_fs_redirection,
    &lcid_to_locale_name,
    &locale_name_to_lcid,
    &get_system_default_ui_language,
    &get_dpi_for_monitor,
    &lcid_to_rfc1766,
    &rfc1766_to_lcid,
};

} // namespace vh::late
