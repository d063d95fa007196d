// The seam between a media, which knows its items, and a tree view, which shows them.
#pragma once

#include <cstdint>
#include <string_view>

struct ISetupBasicFeatureStateEvents;

namespace vh {

// A node of the view; 0 is the root.
using tree_item = int64_t;

struct tree_node {
    std::wstring_view name;
    std::wstring_view label;
    bool selected = false;
    bool partly_selected = false;
    int32_t visible_children = 0;
};

class tree_fill {
public:
    virtual ~tree_fill() = default;
    // 0 when the view could not take the node.
    virtual tree_item Insert(tree_item parent, const tree_node& node) = 0;
    virtual void EnsureVisible(tree_item item) = 0;
    // Where changes of the selection are reported; may be null.
    virtual ISetupBasicFeatureStateEvents* Events() = 0;
    // The node is subscribed to its item's changes; with the number it ends that.
    virtual void KeepCookie(tree_item item, int32_t cookie) = 0;
};

} // namespace vh
