// The pseudo item "Disk<1>" keeps its state when everything else is selected or unselected.
#pragma once

#include "../scriptdata/com_ptr.h"
#include "../scriptdata/variant.h"
#include "media_codes.h"

namespace vh {

template <class Item, class Items>
class first_disk_keeper {
public:
    // Reads the state; a collection without the item has nothing to keep.
    explicit first_disk_keeper(Items* collection)
    {
        const variant name(first_disk);
        if (collection && SUCCEEDED(collection->Item(name.get(), m_item.put())) && m_item)
            m_item->GetSelected(&m_state);
    }
    void Restore() const
    {
        if (m_item)
            m_item->SetSelected(m_state);
    }

private:
    com_ptr<Item> m_item;
    short m_state = 2;
};

} // namespace vh
