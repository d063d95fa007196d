// File operations that are put off to the next start of the system.
#pragma once

#include <set>

#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

// Moves a file over another, or deletes it when the target is empty, before anybody has them in use. A system that
// can't put off a move has the file "WININIT.INI" for it; there, a path that can't be shortened leaves everything as it
// is, and the result is 0. Result: 0 or the system's error.
DWORD ScheduleAtReboot(const stringxi& source, const stringxi& target);

// Takes all operations on these sources out of the system's list again. Result: 0 or the system's error.
LSTATUS WithdrawAtReboot(const std::set<stringxi>& sources);

} // namespace vh
