// Bytes per drive root, as the engine tells them.
#pragma once

#include <map>

#include "../Src/inc/engine_features.h"
#include "../scriptdata/stringx.h"

namespace vh {

// Roots compare without regard to case.
using drive_costs = std::map<stringx, uint64_t, text_less_i>;

enum class merge { assign, add };

// Brings the engine's costs into the map. A failing end of the engine's array is raised.
HRESULT MergeCosts(ISetupCosts* costs, merge how, drive_costs& map);

HRESULT ReadTotal(ISetupCosts* costs, uint64_t& bytes);

inline uint64_t Combine(unsigned long low, unsigned long high) { return static_cast<uint64_t>(high) << 32 | low; }

} // namespace vh
