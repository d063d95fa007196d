// The entry points of the common language runtime's library, bound for one host at a time.
#pragma once

#include "../scriptdata/late_library.h"
#include "clr_interfaces.h"

namespace vh::late {

inline constinit late_library mscoree(L"mscoree.dll");
inline constinit late_function<HRESULT WINAPI(REFCLSID, REFIID, void**)> clr_create_instance(mscoree,
                                                                                             "CLRCreateInstance");
inline constinit late_function<HRESULT WINAPI(const wchar_t*, const wchar_t*, DWORD, REFCLSID, REFIID, void**)>
    cor_bind_to_runtime(mscoree, "CorBindToRuntimeEx");

} // namespace vh::late
