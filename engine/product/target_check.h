// Finds files of a product that would overwrite each other.
#pragma once

#include <functional>

#include "product.h"

namespace vh::engine {

// Calls `fault`, which may throw, with the place of the second of two files with one target, whatever the case of
// their names. The same payload may belong to several features, and files that are never for the same languages or
// systems may share a target.
void CheckTargets(const Product& product,
                  const std::function<void(const std::string& place, const std::wstring& reason)>& fault);

} // namespace vh::engine
