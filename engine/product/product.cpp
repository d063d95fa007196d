#include "product.h"

namespace vh::engine {

Item* Item::Find(std::wstring_view child) const
{
    for (const auto& item : children)
        if (SameText(item->name, child))
            return item.get();
    return nullptr;
}

std::wstring Item::Path() const { return parent && parent->parent ? parent->Path() + L'\\' + name : name; }

Item* Product::Feature(std::wstring_view path) const
{
    const Item* at = &data;
    Item* found = nullptr;
    while (true) {
        const std::size_t slash = path.find(L'\\');
        found = at->Find(path.substr(0, slash));
        if (!found || slash == std::wstring_view::npos)
            return found;
        at = found;
        path.remove_prefix(slash + 1);
    }
}

} // namespace vh::engine
