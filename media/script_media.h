// A media that lives in the library alone: a tree of items that the script builds.
#pragma once

#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "../scriptdata/com_ptr.h"
#include "media.h"

namespace vh {

// The texts that most items never get.
struct ScriptTexts {
    stringx displayName;
    stringx description;
    stringx miscText;
    stringx text18;
    stringx text17;
};

class ScriptComponent {
public:
    const ScriptTexts& texts() const
    {
        static const ScriptTexts none{};
        return m_texts ? *m_texts : none;
    }
    ScriptTexts& texts()
    {
        if (!m_texts)
            m_texts = std::make_unique<ScriptTexts>();
        return *m_texts;
    }

    bool visible = true;
    bool selected = false;
    int64_t size = 0;
    int32_t displayOrder = 0;
    // How many direct children are selected.
    int32_t selectedChildren = 0;
    // The view that listens, and its cookie for the item.
    int64_t treeItem = 0;
    com_ptr<ISetupBasicFeatureStateEvents> sink;

private:
    std::unique_ptr<ScriptTexts> m_texts;
};

// Children in order of insertion, found by key. Nothing is ever removed, so positions and addresses stay valid,
// and growing never moves a subtree. A tree without children is small.
template <class T, wchar_t Separator>
class tree {
public:
    tree() = default;
    tree(tree* parent, std::wstring_view key) : m_parent(parent), m_key(key) {}
    tree(const tree&) = delete;
    tree& operator=(const tree&) = delete;
    ~tree();

    T data;

    // The key in the parent, which is the last component of the path; the root has none.
    const stringx& key() const { return m_key; }
    tree* parent() const { return m_parent; }
    std::size_t size() const { return m_children ? m_children->items.size() : 0; }
    tree& at(std::size_t position) const { return m_children->items[position]; }

    // Null when a component of the path is missing. Keys compare by unit.
    tree* Find(std::wstring_view wanted)
    {
        tree* entry = this;
        do {
            const split parts = Split(wanted);
            entry = entry->FindChild(parts.head);
            wanted = parts.tail;
        } while (entry && !wanted.empty());
        return entry;
    }

    // The tree at the path; missing ancestors are made on the way.
    tree& Create(std::wstring_view wanted)
    {
        tree* entry = this;
        while (!wanted.empty()) {
            const split parts = Split(wanted);
            entry = &entry->GetOrCreate(parts.head);
            wanted = parts.tail;
        }
        return *entry;
    }

    // Depth first, without this tree's own record. The levels that are open stand in a stack of their own.
    template <class Visit>
    void ForEachBelow(Visit&& visit)
    {
        std::vector<std::pair<tree*, std::size_t>> open{{this, 0}};
        while (!open.empty()) {
            auto& [entry, position] = open.back();
            if (position == entry->size()) {
                open.pop_back();
                continue;
            }
            tree& below = entry->at(position++);
            visit(below);
            if (below.size())
                open.emplace_back(&below, 0);
        }
    }

private:
    struct split {
        std::wstring_view head;
        std::wstring_view tail;
    };
    struct children;

    static split Split(std::wstring_view path)
    {
        const std::size_t at = path.find(Separator);
        return at == path.npos ? split{path, {}} : split{path.substr(0, at), path.substr(at + 1)};
    }

    static uint32_t Hash(std::wstring_view key) { return static_cast<uint32_t>(std::hash<std::wstring_view>()(key)); }
    tree* FindChild(std::wstring_view key) const;
    tree& GetOrCreate(std::wstring_view key);

    tree* m_parent = nullptr;
    stringx m_key;
    std::unique_ptr<children> m_children;
};

// Entries stand in blocks and never move. The slots are a hash of the keys with open addressing; each keeps its
// entry's hash, so that neither a search nor growing touches an entry in vain.
template <class T, wchar_t Separator>
struct tree<T, Separator>::children {
    struct slot {
        uint32_t hash = 0;
        // From 1 on; 0 is a free slot.
        uint32_t number = 0;
    };

    std::deque<tree> items;
    std::vector<slot> slots = std::vector<slot>(8);
    // The next of those that wait for their end.
    std::unique_ptr<children> next;

    // The slot of the key, or the free one where it belongs.
    slot& SlotOf(std::wstring_view key, uint32_t hash)
    {
        return Probe(hash, [&](const slot& one) { return one.hash == hash && items[one.number - 1].m_key == key; });
    }
    void Grow()
    {
        std::vector<slot> old(slots.size() * 2);
        old.swap(slots);
        for (const slot& one : old)
            if (one.number)
                Probe(one.hash, [](const slot&) { return false; }) = one;
    }

private:
    template <class Wanted>
    slot& Probe(uint32_t hash, Wanted&& wanted)
    {
        const std::size_t mask = slots.size() - 1;
        std::size_t at = hash & mask;
        while (slots[at].number && !wanted(slots[at]))
            at = (at + 1) & mask;
        return slots[at];
    }
};

// Children whose end has come hand theirs to the queue, so that depth costs no stack.
template <class T, wchar_t Separator>
tree<T, Separator>::~tree()
{
    for (auto queue = std::move(m_children); queue;) {
        const auto ending = std::exchange(queue, std::move(queue->next));
        for (tree& entry : ending->items) {
            if (!entry.m_children)
                continue;
            entry.m_children->next = std::move(queue);
            queue = std::move(entry.m_children);
        }
    }
}

template <class T, wchar_t Separator>
tree<T, Separator>* tree<T, Separator>::FindChild(std::wstring_view key) const
{
    const auto slot = m_children ? m_children->SlotOf(key, Hash(key)) : typename children::slot();
    return slot.number ? &m_children->items[slot.number - 1] : nullptr;
}

template <class T, wchar_t Separator>
tree<T, Separator>& tree<T, Separator>::GetOrCreate(std::wstring_view key)
{
    const uint32_t hash = Hash(key);
    if (!m_children)
        m_children = std::make_unique<children>();
    auto& items = m_children->items;
    if (const auto found = m_children->SlotOf(key, hash); found.number)
        return items[found.number - 1];
    if ((items.size() + 1) * 2 > m_children->slots.size())
        m_children->Grow();
    tree& made = items.emplace_back(this, key);
    m_children->SlotOf(key, hash) = {hash, static_cast<uint32_t>(items.size())};
    return made;
}

} // namespace vh

class CVHScriptMedia : public CVHRTMedia {
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
