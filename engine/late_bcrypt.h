// The system's hashes, bound on first use: by its name this library would be looked for beside a downloaded setup
// first.
#pragma once

#include <windows.h>

#include <bcrypt.h>

#include "../scriptdata/late_library.h"

namespace vh::engine::late {

inline constinit vh::late_library bcrypt(L"bcrypt.dll");
inline constinit late_function<decltype(BCryptOpenAlgorithmProvider)> open_provider(bcrypt,
                                                                                    "BCryptOpenAlgorithmProvider");
inline constinit late_function<decltype(BCryptCloseAlgorithmProvider)> close_provider(bcrypt,
                                                                                      "BCryptCloseAlgorithmProvider");
inline constinit late_function<decltype(BCryptCreateHash)> create_hash(bcrypt, "BCryptCreateHash");
inline constinit late_function<decltype(BCryptHashData)> hash_data(bcrypt, "BCryptHashData");
inline constinit late_function<decltype(BCryptFinishHash)> finish_hash(bcrypt, "BCryptFinishHash");
inline constinit late_function<decltype(BCryptDestroyHash)> destroy_hash(bcrypt, "BCryptDestroyHash");

} // namespace vh::engine::late
