// The product's entry in the system's list of installed programs.
#pragma once

#include "core.h"

namespace vh::engine {

// True also when the host wants none.
bool HasProgramEntry(const Core& core);
// What is there of it stays through an upgrade.
void WantProgramEntry(const Core& core);
// Written as other values of the product are, so that it comes and goes with it: it goes when nothing else of the
// product is left.
void WriteProgramEntry(Core& core, const std::wstring& target);

} // namespace vh::engine
