// The rules of selection: an item needs those above it, brings those below it, and a required one stays.
#pragma once

#include "data_set.h"

namespace vh::engine {

// Selects or unselects the item with all below it; selecting brings those above it too. False, with nothing
// changed, when something required would have to go.
bool SelectItem(Item& item, bool on);
// All items of a tree; required ones stay unless `force`. "Disk<1>" follows like any other.
void SelectAll(Item& root, bool on, bool force = false);
// The items of a setup type, with all below them, and no others but the required ones.
void ActivateSetupType(Product& product, const SetupType& type);
// Selects exactly these features, what they need above them and what is required. Gives the paths that the product does
// not have; with one of those nothing changes.
std::vector<std::wstring> SelectOnly(Product& product, const std::vector<std::wstring>& paths);

// Selected, but not with all that is below.
bool IsPartlySelected(const Item& item);

} // namespace vh::engine
