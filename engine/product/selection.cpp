#include "selection.h"

#include <algorithm>
#include <unordered_set>

namespace vh::engine {

namespace {

constexpr long selected_state = 2;

void Set(Item& item, bool on)
{
    if (item.selected == on)
        return;
    item.selected = on;
    // A listener may subscribe or leave while it hears this.
    const auto listeners = item.listeners;
    for (const auto& [cookie, listener] : listeners)
        listener.view->OnStateChanged(listener.viewItem, on ? selected_state : 0, item.required ? 1 : 0);
}

bool HoldsRequired(const Item& item)
{
    return (item.required && item.selected) || std::any_of(item.children.begin(), item.children.end(),
                                                           [](const auto& child) { return HoldsRequired(*child); });
}

} // namespace

bool SelectItem(Item& item, bool on)
{
    if (!on && HoldsRequired(item))
        return false;
    for (Item* above = item.parent; on && above && above->parent; above = above->parent)
        Set(*above, true);
    ForEachItem(item, [&](Item& below) { Set(below, on); });
    return true;
}

void SelectAll(Item& root, bool on, bool force)
{
    for (const auto& child : root.children)
        SelectAll(*child, on, force);
    // Children come first: what a required one needs above it stays selected.
    if (root.parent)
        Set(root, on || (!force && HoldsRequired(root)));
}

void ActivateSetupType(Product& product, const SetupType& type)
{
    const bool all = std::find(type.features.begin(), type.features.end(), L"*") != type.features.end();
    std::unordered_set<const Item*> wanted;
    for (const std::wstring& path : type.features)
        if (Item* item = path == L"*" ? nullptr : product.Feature(path))
            wanted.insert(item);
    const auto isWanted = [&](const Item& item) {
        for (const Item* at = &item; at; at = at->parent)
            if (wanted.contains(at))
                return true;
        return all || HoldsRequired(item);
    };
    for (const auto& child : product.data.children) {
        if (child->pseudo)
            continue;
        ForEachItem(*child, [&](Item& item) {
            if (!isWanted(item))
                Set(item, false);
        });
        ForEachItem(*child, [&](Item& item) {
            for (Item* at = isWanted(item) ? &item : nullptr; at && at->parent; at = at->parent)
                Set(*at, true);
        });
    }
}

std::vector<std::wstring> SelectOnly(Product& product, const std::vector<std::wstring>& paths)
{
    std::unordered_set<const Item*> wanted;
    std::vector<std::wstring> unknown;
    for (const std::wstring& path : paths) {
        const Item* item = product.Feature(path);
        if (!item || item->pseudo)
            unknown.push_back(path);
        else
            for (; item->parent; item = item->parent)
                wanted.insert(item);
    }
    if (!unknown.empty())
        return unknown;
    for (const auto& child : product.data.children)
        if (!child->pseudo)
            ForEachItem(*child, [&](Item& item) { Set(item, wanted.contains(&item) || HoldsRequired(item)); });
    return {};
}

bool IsPartlySelected(const Item& item)
{
    return item.selected && std::any_of(item.children.begin(), item.children.end(),
                                        [](const auto& child) { return !child->selected || IsPartlySelected(*child); });
}

} // namespace vh::engine
