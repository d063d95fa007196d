// A media that lives in the library alone: a tree of items that the script builds.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "../scriptdata/com_ptr.h"
#include "media.h"

namespace vh {

struct ScriptComponent {
    stringx displayName;
    stringx description;
    stringx miscText;
    stringx text18;
    stringx text17;
    bool visible = true;
    bool selected = false;
    int64_t size = 0;
    int32_t displayOrder = 0;
    // How many direct children are selected.
    int32_t selectedChildren = 0;
    // The view that listens, and its cookie for the item.
    int64_t treeItem = 0;
    com_ptr<ISetupBasicFeatureStateEvents> sink;
};

// Children in order of insertion, found by key through an index. Nothing is ever removed, so positions and
// addresses stay valid; growing moves pointers, never subtrees. A tree without children is small.
template <class T, wchar_t Separator>
class tree {
public:
    tree() = default;
    tree(tree* parent, std::wstring_view key) : m_parent(parent), m_key(key) {}

    T data;

    // The key in the parent, which is the last component of the path; the root has none.
    const stringx& key() const { return m_key; }
    tree* parent() const { return m_parent; }
    std::size_t size() const { return m_children ? m_children->items.size() : 0; }
    tree& at(std::size_t position) const { return *m_children->items[position]; }

    // Null when a component of the path is missing. Keys compare by unit.
    tree* Find(std::wstring_view wanted)
    {
        const split parts = Split(wanted);
        tree* entry = FindChild(parts.head);
        return !entry || parts.tail.empty() ? entry : entry->Find(parts.tail);
    }

    // The tree at the path; missing ancestors are made on the way.
    tree& Create(std::wstring_view wanted)
    {
        if (wanted.empty())
            return *this;
        const split parts = Split(wanted);
        return GetOrCreate(parts.head).Create(parts.tail);
    }

    // Depth first, without this tree's own record.
    template <class Visit>
    void ForEachBelow(Visit&& visit)
    {
        for (std::size_t position = 0; position < size(); ++position) {
            visit(at(position));
            at(position).ForEachBelow(visit);
        }
    }

private:
    struct split {
        std::wstring_view head;
        std::wstring_view tail;
    };
    struct children {
        std::vector<std::unique_ptr<tree>> items;
        // The keys are the entries' own.
        std::unordered_map<std::wstring_view, std::size_t> index;
    };

    static split Split(std::wstring_view path)
    {
        const std::size_t at = path.find(Separator);
        return at == path.npos ? split{path, {}} : split{path.substr(0, at), path.substr(at + 1)};
    }

    tree* FindChild(std::wstring_view key) const
    {
        if (!m_children)
            return nullptr;
        const auto found = m_children->index.find(key);
        return found == m_children->index.end() ? nullptr : m_children->items[found->second].get();
    }

    tree& GetOrCreate(std::wstring_view key)
    {
        if (tree* found = FindChild(key))
            return *found;
        if (!m_children)
            m_children = std::make_unique<children>();
        auto& [items, index] = *m_children;
        items.push_back(std::make_unique<tree>(this, key));
        index.try_emplace(items.back()->m_key, items.size() - 1);
        return *items.back();
    }

    tree* m_parent = nullptr;
    stringx m_key;
    std::unique_ptr<children> m_children;
};

} // namespace vh

class CVHScriptMedia final : public CVHRTMedia {
public:
    int32_t IsScriptMedia() override { return 1; }
    int32_t GetData(text item, int32_t code, int32_t* number, wchar_t* buffer, int32_t length) override;
    int32_t SetData(text item, int32_t code, int32_t number, text value, ObjectContext* context) override;
    int32_t GetDescription(text item, stringx& value) override;
    int32_t GetDisplayName(text item, stringx& value) override;
    int32_t GetMiscText(text item, stringx& value) override;
    int32_t IsSelected(text item, bool& truth) override;
    int32_t SelectItem(text item, bool truth, ObjectContext* context) override;
    // Never; the item is not even looked up.
    int32_t IsPartlySelected(text, bool& truth) override
    {
        truth = false;
        return 0;
    }
    int32_t IsVisible(text item, bool& truth) override;
    int32_t GetChildCount(text parent, int32_t& count, int32_t mode) override;
    int32_t GetChild(text parent, int32_t index, stringx& name) override;
    int32_t GetItemSize(text item, int32_t& size) override;
    int32_t GetTotalSize(text item, bool whole_tree, bool flag, int64_t& size, int32_t shift) override;
    int32_t SetItemSize(text item, int32_t size) override;
    int32_t GetCost(text item, text target, uint64_t& bytes) override;
    int32_t Advise(text item, ISetupBasicFeatureStateEvents* view, int64_t view_item, int32_t& cookie) override;
    int32_t Unadvise(text item, int32_t cookie) override;
    int32_t GetDisplayOrder(text item, int32_t& order) override;
    int32_t AddItem(text path, int32_t size, bool selected) override;

private:
    using tree = vh::tree<vh::ScriptComponent, L'\\'>;

    // Runs `use` on the item, or fails with the error set.
    template <class Use>
    int32_t WithItem(text item, Use&& use);
    // The root for an empty name.
    tree* FindParent(text parent);
    static void SetSelected(tree& entry, bool selected);
    static void Apply(tree& entry, bool selected);
    void AdjustTopAncestor(text path, bool selected);

    tree m_root;
};
