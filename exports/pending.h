// How exports answer whose families are still to come: as their family does when the service behind it is missing.
// docs/status.md lists them.
#pragma once

#include <cstdint>

struct ObjectContext;

namespace vh::pending {

constexpr auto general_failure = static_cast<int32_t>(0x80004005);
constexpr auto no_driver_library = static_cast<int32_t>(0x80029C4A);

// A null context comes first in every family.
constexpr int32_t Missing(const ObjectContext* context, int32_t answer = -1) { return context ? answer : -1; }

} // namespace vh::pending
