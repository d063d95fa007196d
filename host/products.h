// The products that are installed on this machine.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/engine.h"
#include "exit_codes.h"

namespace host {

// Looks in that folder alone, or for an empty one where the user's and then where the machine's products are. Throws
// untrusted_error for one of the machine that others could have put there.
std::optional<vh::engine::InstalledProduct> FindProduct(const std::wstring& guid, const std::wstring& data_folder);

// Where products are looked for: that folder, or for an empty one those of the user and of the machine.
std::vector<std::wstring> DataFolders(const std::wstring& data_folder);

// How a run ends that failed so before it touched anything.
ExitCode CodeOf(const vh::engine::engine_error& error);

ExitCode ListProducts(const std::wstring& data_folder);

} // namespace host
