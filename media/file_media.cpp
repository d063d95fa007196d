#include "file_media.h"

#include <algorithm>

#include "walk.h"

// The data set is released before the collection that came from it, and after the items.
template <class Item, class Items>
CVHFileMediaImpl<Item, Items>::~CVHFileMediaImpl()
{
    m_cache = Cache<Item, Items>(nullptr);
    m_data.reset();
}

template <class Item, class Items>
void CVHFileMediaImpl<Item, Items>::UseCollection(vh::com_ptr<Items> collection)
{
    m_collection = std::move(collection);
    m_cache = Cache<Item, Items>(m_collection);
}

template <class Item, class Items>
HRESULT CVHFileMediaImpl<Item, Items>::FindItem(text path, ISetupAnyItem*& found)
{
    CacheNode<Item, Items>* node = nullptr;
    const HRESULT code = m_cache.Find(path, node);
    if (SUCCEEDED(code))
        found = node->item.get();
    return code;
}

template <class Item, class Items>
HRESULT CVHFileMediaImpl<Item, Items>::FindChildren(text parent, Items*& found)
{
    if (parent.empty()) {
        found = m_collection.get();
        return found ? S_OK : E_POINTER;
    }
    CacheNode<Item, Items>* node = nullptr;
    if (const HRESULT code = m_cache.Find(parent, node); FAILED(code))
        return Fail(code, parent);
    found = node->children.get();
    return S_OK;
}

template <class Item, class Items>
HRESULT CVHFileMediaImpl<Item, Items>::ReadChild(Items* children, long index, text parent, vh::bstr& name,
                                                 stringx& path, vh::com_ptr<Item>& child)
{
    if (const HRESULT code = vh::ItemAt(children, index, child); FAILED(code))
        return code;
    if (const HRESULT code = child->GetName(name.put()); FAILED(code))
        return vh::NoItemCode(code);
    path = parent;
    if (!parent.empty())
        path += L'\\';
    path += name.view();
    CacheNode<Item, Items>* node = nullptr;
    return vh::NoItemCode(m_cache.Insert(path, child, node));
}

template <class Item, class Items>
int32_t CVHFileMediaImpl<Item, Items>::ListItems(text parent, std::vector<stringx>& items, int32_t& count,
                                                 bool visible_only)
{
    count = 0;
    Items* children = nullptr;
    if (const HRESULT code = FindChildren(parent, children); FAILED(code))
        return code;
    long all = 0;
    if (children)
        if (const HRESULT code = children->Count(&all); FAILED(code))
            return code;
    items.reserve(static_cast<std::size_t>(std::max(all, 0L)));
    vh::bstr name;
    stringx path;
    for (long index = 1; index <= all; ++index) {
        vh::com_ptr<Item> child;
        if (const HRESULT code = ReadChild(children, index, parent, name, path, child); FAILED(code))
            return code;
        VARIANT_BOOL visible = VARIANT_TRUE;
        if (visible_only)
            if (const HRESULT code = child->GetVisible(&visible); FAILED(code))
                return code;
        if (!visible)
            continue;
        items.push_back(path);
        ++count;
    }
    return 0;
}

template <class Item, class Items>
int32_t CVHFileMediaImpl<Item, Items>::GetChildCount(text parent, int32_t& count, int32_t mode)
{
    Items* children = nullptr;
    if (const HRESULT code = FindChildren(parent, children); FAILED(code))
        return code;
    long all = 0;
    if (children)
        if (const HRESULT code = children->Count(&all); FAILED(code))
            return code;
    count = all;
    if (mode != 1)
        return 0;
    count = 0;
    return vh::ForEachItem(children, 1, all, [&](Item* child) {
        VARIANT_BOOL visible = VARIANT_FALSE;
        const HRESULT code = child->GetVisible(&visible);
        count += visible ? 1 : 0;
        return vh::NoItemCode(code);
    });
}

template <class Item, class Items>
int32_t CVHFileMediaImpl<Item, Items>::GetChild(text parent, int32_t index, stringx& name)
{
    Items* children = nullptr;
    if (const HRESULT code = FindChildren(parent, children); FAILED(code))
        return code;
    if (!children)
        return Fail(vh::media_no_item, parent);
    vh::bstr read;
    stringx path;
    vh::com_ptr<Item> child;
    const HRESULT code = ReadChild(children, index, parent, read, path, child);
    if (SUCCEEDED(code))
        name = read.view();
    return code;
}

template <class Item, class Items>
int32_t CVHFileMediaImpl<Item, Items>::GetTotalSize(text item, bool whole_tree, bool, int64_t& size, int32_t)
{
    const auto add = [&](ISetupAnyItem& found) {
        unsigned long low = 0;
        unsigned long high = 0;
        const HRESULT code = found.GetSize(whole_tree ? VARIANT_TRUE : VARIANT_FALSE, &low, &high);
        if (SUCCEEDED(code))
            size = static_cast<int64_t>(static_cast<uint64_t>(size) + vh::Combine(low, high));
        return code;
    };
    size = 0;
    if (!item.empty())
        return WithItem(item, add);
    return vh::ForEachItem(m_collection.get(), 1, [&](Item* child) { return add(*child); });
}

template <class Item, class Items>
int32_t CVHFileMediaImpl<Item, Items>::GetOrderBase()
{
    vh::com_ptr<Item> second;
    const HRESULT code = m_collection ? vh::ItemAt(m_collection.get(), 2, second) : HRESULT{vh::media_no_item};
    if (FAILED(code))
        return code;
    short order = 0;
    const HRESULT read = second->GetDisplayOrder(&order);
    return FAILED(read) ? read : order;
}

template class CVHFileMediaImpl<ISetupComponent, ISetupComponents>;
template class CVHFileMediaImpl<ISetupFeature, ISetupFeatures>;
