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
    // A number owns nothing, so that it needs no holder.
    VARIANT position;
    position.vt = VT_I4;
    position.lVal = index;
    const HRESULT code = collection->Item(position, item.put());
    return NoItemCode(Given(code, item), no_item);
}

// The same by name.
template <class Item>
HRESULT ItemNamed(ISetupCollection<Item>* collection, std::wstring_view name, com_ptr<Item>& item,
                  HRESULT no_item = media_no_item)
{
    const variant wanted(name);
    const HRESULT code = collection->Item(wanted.get(), item.put());
    return NoItemCode(Given(code, item), no_item);
}

// Visits the items from a 1-based index to another; the first failure ends the walk and is the result.
template <class Item, class Visit>
HRESULT ForEachItem(ISetupCollection<Item>* collection, long first, long last, Visit&& visit,
                    HRESULT no_item = media_no_item)
{
    for (long index = first; index <= last; ++index) {
        com_ptr<Item> item;
        HRESULT code = ItemAt(collection, index, item, no_item);
        if (SUCCEEDED(code))
            code = visit(item.get());
        if (FAILED(code))
            return code;
    }
    return S_OK;
}

// The same to the end, as the collection counts.
template <class Item, class Visit>
HRESULT ForEachItem(ISetupCollection<Item>* collection, long first, Visit&& visit, HRESULT no_item = media_no_item)
{
    if (!collection)
        return E_POINTER;
    long count = 0;
    const HRESULT code = collection->Count(&count);
    return FAILED(code) ? code : ForEachItem(collection, first, count, visit, no_item);
}

} // namespace vh
