// Which of the systems that a product may be for this machine has.
#pragma once

#include <cstdint>

#include <windows.h>

namespace vh::engine {

// A bit of system_names; 0 for a system that has none.
uint64_t SystemBit(const OSVERSIONINFOEXW& version);
uint64_t ThisSystem();

} // namespace vh::engine
