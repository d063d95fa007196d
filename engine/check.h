// Checks a setup folder before anybody runs it, and tells every fault at once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "messages.h"

namespace vh::engine {

// Line and column count from 1, columns in characters; 0 when unknown.
struct SetupFault {
    std::wstring file;
    unsigned line = 0;
    unsigned column = 0;
    // For a product file it begins with the place, "/features/2: reason".
    std::wstring reason;

    // "file(12,5): reason".
    std::wstring Text() const;
};

struct SetupCheck {
    std::vector<SetupFault> faults;
    // Full paths of the scripts in the order in which they run, which nobody has looked into yet.
    std::vector<std::wstring> scripts;
    std::size_t features = 0;
    std::size_t files = 0;
    uint64_t bytes = 0;
};

// What the product file of a setup folder says, and whether the payload is there. Throws engine_error when there is
// no product file to read.
SetupCheck CheckSetup(const std::wstring& setupFolder);

} // namespace vh::engine
