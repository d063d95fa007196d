// Registry sets and shell objects of a product.
#pragma once

#include "../core.h"

namespace vh::engine {

// Writes the sets of that name, or all for an empty name, as far as their features are selected. Throws
// engine_error when there is no such set or a value can't be written.
void ApplyRegistrySets(Core& core, const Product& product, std::wstring_view name, bool loose);
// Makes the shortcuts of selected features. `loose` steps are recorded until the run ends.
void MakeShellObjects(Core& core, const Product& product, bool loose);

} // namespace vh::engine
