// Items of an engine collection by path. The engine is asked once for each path and run; nothing is ever
// dropped.
#pragma once

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "../scriptdata/com_ptr.h"
#include "../scriptdata/variant.h"
#include "media.h"

template <class Item, class Items>
struct CacheNode {
    vh::com_ptr<Item> item;
    vh::com_ptr<Items> children;
};

template <class Item, class Items>
class Cache {
public:
    using Node = CacheNode<Item, Items>;

    // A null collection makes every look-up answer E_POINTER.
    explicit Cache(vh::com_ptr<Items> root) : m_root(std::move(root)) {}

    // The node of an item; 0x8004F069 when there is none. Paths are told apart by unit: other capitals are
    // another path, looked up in the engine again.
    HRESULT Find(std::wstring_view path, Node*& node)
    {
        if (path.empty())
            return vh::media_no_item;
        // Scripts ask several things of one item in a row.
        if (m_last && m_last->first.view() == path) {
            node = &m_last->second;
            return S_OK;
        }
        if (const auto known = m_nodes.find(path); known != m_nodes.end()) {
            m_last = &*known;
            node = &known->second;
            return S_OK;
        }

        // From the top down, one level after the other: a path may have any number of them.
        Items* collection = m_root.get();
        for (std::size_t begin = 0, end = 0; end != path.size(); begin = end + 1) {
            end = std::min(path.find(L'\\', begin), path.size());
            // Above the last level every code that says so means that there is no item.
            if (const HRESULT code = FindLevel(collection, path.substr(0, end), begin, node); FAILED(code))
                return end == path.size() ? code : vh::NoItemCode(code);
            collection = node->children.get();
        }
        return S_OK;
    }

    // Keeps the item with its child collection; a path that is known keeps what it has. Without a collection the code
    // of that request is the result, and nothing is kept.
    HRESULT Insert(std::wstring_view path, vh::com_ptr<Item> item, Node*& node)
    {
        if (!item)
            return E_POINTER;
        if (const auto known = m_nodes.find(path); known != m_nodes.end()) {
            node = &known->second;
            return S_OK;
        }
        Node made;
        const HRESULT code = item->GetChildren(made.children.put());
        if (FAILED(code))
            return code;
        made.item = std::move(item);
        node = &m_nodes.emplace(path, std::move(made)).first->second;
        return S_OK;
    }

private:
    // The node of a path whose last part begins at `name`; its parent has `collection`.
    HRESULT FindLevel(Items* collection, std::wstring_view path, std::size_t name, Node*& node)
    {
        // Before the first backslash there is no item without a name.
        if (path.empty())
            return vh::media_no_item;
        if (const auto known = m_nodes.find(path); known != m_nodes.end()) {
            node = &known->second;
            return S_OK;
        }
        if (!collection)
            return E_POINTER;
        vh::com_ptr<Item> item;
        const vh::variant wanted(path.substr(name));
        const HRESULT code = collection->Item(wanted.get(), item.put());
        return FAILED(code) ? vh::NoItemCode(code) : Insert(path, std::move(item), node);
    }

    struct hash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view path) const { return std::hash<std::wstring_view>()(path); }
    };
    struct equal {
        using is_transparent = void;
        bool operator()(std::wstring_view a, std::wstring_view b) const { return a == b; }
    };

    std::unordered_map<stringx, Node, hash, equal> m_nodes;
    typename decltype(m_nodes)::value_type* m_last = nullptr;
    vh::com_ptr<Items> m_root;
};

using ComponentCache = Cache<ISetupComponent, ISetupComponents>;
using FeatureCache = Cache<ISetupFeature, ISetupFeatures>;
