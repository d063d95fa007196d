// Files that somebody has open, and who that is.
#pragma once

#include <string>

#include <windows.h>

#include <restartmanager.h>

#include "../../scriptdata/late_library.h"

namespace vh::engine {

namespace late {

inline constinit vh::late_library rstrtmgr(L"rstrtmgr.dll");
inline constinit late_function<decltype(RmStartSession)> start_session(rstrtmgr, "RmStartSession");
inline constinit late_function<decltype(RmRegisterResources)> register_resources(rstrtmgr, "RmRegisterResources");
inline constinit late_function<decltype(RmGetList)> get_list(rstrtmgr, "RmGetList");
inline constinit late_function<decltype(RmEndSession)> end_session(rstrtmgr, "RmEndSession");

} // namespace late

// Whether a step on the file failed with this code because somebody has it open or runs it.
bool IsInUse(const std::wstring& path, DWORD code);

// "is in use by A (process 12), B (process 14)", as far as the system knows them; without names else.
std::wstring InUseWords(const std::wstring& path);

} // namespace vh::engine
