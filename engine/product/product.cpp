#include "product.h"

namespace vh::engine {

bool Item::Add(std::unique_ptr<Item> child, bool first)
{
    if (!byName.emplace(Upper(child->name), child.get()).second)
        return false;
    child->parent = this;
    children.insert(first ? children.begin() : children.end(), std::move(child));
    return true;
}

Item* Item::Find(std::wstring_view child) const
{
    const auto found = byName.find(Upper(child));
    return found == byName.end() ? nullptr : found->second;
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
