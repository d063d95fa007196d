// Rights that a product of the machine needs.
#pragma once

#include <optional>

#include "exit_codes.h"

namespace host {

// Whether this process may write what belongs to all users.
bool HasMachineRights();

// Starts this program with the same words and asks the user for the rights; gives its exit code, or exit_rights when
// the user would not.
ExitCode RunWithMachineRights();

// How a run of a product of the machine ends where it is; nothing when it can go on.
std::optional<ExitCode> SeeToRights(bool for_machine, bool silent);

} // namespace host
