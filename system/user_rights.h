// What the user of the current thread may do, told by the groups of the token.
#pragma once

#include <cstdint>

#include <windows.h>

namespace vh {

// Relative identifiers of local groups in the built-in domain.
enum class local_group : DWORD { administrators = 544, power_users = 547 };

// Whether a group counts that is in the token only to be denied by.
enum class membership { granted, any };

// True on a system without rights. False when the token can't be read.
bool IsInLocalGroup(local_group group, membership kind);

} // namespace vh
