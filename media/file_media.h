// The media on an engine collection: keeps its items by path.
#pragma once

#include "cache.h"
#include "item_media.h"

template <class Item, class Items>
class CVHFileMediaImpl : public CVHItemMedia {
public:
    ~CVHFileMediaImpl() override;

    int32_t ListItems(text parent, std::vector<stringx>& items, int32_t& count, bool visible_only) override;
    int32_t GetChildCount(text parent, int32_t& count, int32_t mode) override;
    int32_t GetChild(text parent, int32_t index, stringx& name) override;
    int32_t GetTotalSize(text item, bool whole_tree, bool flag, int64_t& size, int32_t shift) override;
    int32_t GetOrderBase() override;

protected:
    using CVHItemMedia::CVHItemMedia;

    // Once, by the constructor of the concrete class; null leaves every operation failing with E_POINTER.
    void UseCollection(vh::com_ptr<Items> collection);

    vh::com_ptr<Items> m_collection;

private:
    HRESULT FindItem(text path, ISetupAnyItem*& found) override;
    // Null, with success, for an item without children.
    HRESULT FindChildren(text parent, Items*& found);
    // The child at an index with its name; it is kept under its path, which is made in `path`.
    HRESULT ReadChild(Items* children, long index, text parent, vh::bstr& name, stringx& path,
                      vh::com_ptr<Item>& child);

    Cache<Item, Items> m_cache{nullptr};
};

extern template class CVHFileMediaImpl<ISetupComponent, ISetupComponents>;
extern template class CVHFileMediaImpl<ISetupFeature, ISetupFeatures>;
