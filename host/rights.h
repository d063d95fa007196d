// Rights that a product of the machine needs.
#pragma once

#include "exit_codes.h"

namespace host {

// Whether this process may write what belongs to all users.
bool HasMachineRights();

// Starts this program with the same words and asks the user for the rights; gives its exit code, or exit_rights when
// the user would not.
ExitCode RunWithMachineRights();

} // namespace host
