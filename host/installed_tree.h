// The files that a setup put on the machine, compared with what they came from.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/engine.h"
#include "engine/product/pack.h"

namespace host {

struct TreeCounts {
    std::size_t files = 0;
    std::size_t different = 0;
    uint64_t bytes = 0;
};

// Prints the files under the folder, those elsewhere by their full path, and what differs from its source.
TreeCounts ShowInstalledTree(const std::wstring& folder, const std::vector<vh::engine::InstalledFile>& files,
                             const vh::engine::Pack* pack);

} // namespace host
