// Finds files of a product that would overwrite each other.
#pragma once

#include "product.h"

namespace vh::engine {

// Throws for two files with one target, whatever the case of their names. The same payload may belong to several
// features, and files that are never for the same languages or systems may share a target.
void CheckTargets(const Product& product);

} // namespace vh::engine
