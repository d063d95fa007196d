// The product, or what a header file describes, as a run sees it.
#pragma once

#include <functional>
#include <set>

#include "product.h"

namespace vh::engine {

class Core;

struct DataSet {
    std::unique_ptr<Product> product;
    // Languages and systems that filters took out.
    std::set<WORD> languagesOut;
    uint64_t systemsOut = 0;
    bool maintenance = false;
    bool updateMode = false;
    bool removeAllMode = false;
    bool reinstallMode = false;
    bool patchMode = false;

    // Takes out all languages but this one, and all systems but those of the bits.
    void FilterFor(WORD language, uint64_t systems);
    bool Admits(const Audience& audience) const;
    // Whether the item and those above it are for this run.
    bool Admits(const Item& item) const;
    // The item's own files that are for this run.
    void EachFile(const Item& item, const std::function<void(const FileGroup&, const ProductFile&)>& visit) const;
    // Files of the item itself, or with those below, whatever the selection says.
    uint64_t Size(const Item& item, bool wholeTree) const;
};

// Calls `visit` for the item and all below it, parents first.
template <class SomeItem, class Visit>
void ForEachItem(SomeItem& item, Visit&& visit)
{
    visit(item);
    for (const auto& child : item.children)
        ForEachItem(static_cast<SomeItem&>(*child), visit);
}

} // namespace vh::engine
