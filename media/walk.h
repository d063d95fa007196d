// One walk over an engine collection, written once.
#pragma once

#include "../Src/inc/engine_features.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/variant.h"
#include "media_codes.h"

namespace vh {

// The item at a 1-based index; `no_item` when the collection says in one of its ways that there is none.
template <class Item>
HRESULT ItemAt(ISetupCollection<Item>* collection, long index, com_ptr<Item>& item, HRESULT no_item = media_no_item)
{
    const variant position(index);
    const HRESULT code = collection->Item(position.get(), item.put());
    return SUCCEEDED(code) && !item ? E_POINTER : NoItemCode(code, no_item);
}

// The same by name.
template <class Item>
HRESULT ItemNamed(ISetupCollection<Item>* collection, std::wstring_view name, com_ptr<Item>& item,
                  HRESULT no_item = media_no_item)
{
    const variant wanted(name);
    const HRESULT code = collection->Item(wanted.get(), item.put());
    return SUCCEEDED(code) && !item ? E_POINTER : NoItemCode(code, no_item);
}

// Visits the items from a 1-based index to the end; the first failure ends the walk and is the result.
template <class Item, class Visit>
HRESULT ForEachItem(ISetupCollection<Item>* collection, long first, Visit&& visit, HRESULT no_item = media_no_item)
{
    if (!collection)
        return E_POINTER;
    long count = 0;
    HRESULT code = collection->Count(&count);
    for (long index = first; SUCCEEDED(code) && index <= count; ++index) {
        com_ptr<Item> item;
        code = ItemAt(collection, index, item, no_item);
        if (SUCCEEDED(code))
            code = visit(item.get());
    }
    return FAILED(code) ? code : S_OK;
}

} // namespace vh
