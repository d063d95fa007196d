// Items of an engine collection by path. The engine is asked once for each path and run; nothing is ever
// dropped.
#pragma once

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
        const auto known = m_nodes.find(path);
        if (known != m_nodes.end()) {
            node = &known->second;
            return S_OK;
        }

        Items* collection = m_root.get();
        const std::size_t slash = path.rfind(L'\\');
        if (slash != path.npos) {
            Node* parent = nullptr;
            const HRESULT code = Find(path.substr(0, slash), parent);
            if (FAILED(code))
                return vh::NoItemCode(code);
            collection = parent->children.get();
        }
        if (!collection)
            return E_POINTER;
        const vh::variant name(slash == path.npos ? path : path.substr(slash + 1));
        vh::com_ptr<Item> item;
        const HRESULT code = collection->Item(name.get(), item.put());
        if (FAILED(code))
            return vh::NoItemCode(code);
        return Insert(path, std::move(item), node);
    }

    // Keeps the item with its child collection. Without one the code of that request is the result, and
    // nothing is kept.
    HRESULT Insert(std::wstring_view path, vh::com_ptr<Item> item, Node*& node)
    {
        if (!item)
            return E_POINTER;
        Node made;
        const HRESULT code = item->GetChildren(made.children.put());
        if (FAILED(code))
            return code;
        made.item = std::move(item);
        auto known = m_nodes.find(path);
        if (known == m_nodes.end())
            known = m_nodes.emplace(path, std::move(made)).first;
        node = &known->second;
        return S_OK;
    }

private:
    struct hash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view path) const { return std::hash<std::wstring_view>()(path); }
    };
    struct equal {
        using is_transparent = void;
        bool operator()(std::wstring_view a, std::wstring_view b) const { return a == b; }
    };

    std::unordered_map<stringx, Node, hash, equal> m_nodes;
    vh::com_ptr<Items> m_root;
};

using ComponentCache = Cache<ISetupComponent, ISetupComponents>;
using FeatureCache = Cache<ISetupFeature, ISetupFeatures>;
