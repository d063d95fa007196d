// The media on an engine collection: finds the item and passes the operation on.
#pragma once

#include "../Src/inc/engine_data.h"
#include "cache.h"
#include "drive_costs.h"
#include "media.h"

template <class Item, class Items>
class CVHFileMediaImpl : public CVHRTMedia {
public:
    int32_t IsScriptMedia() override { return 0; }
    int32_t GetData(text item, int32_t code, int32_t* number, wchar_t* buffer, int32_t length) override;
    int32_t SetData(text item, int32_t code, int32_t number, text value, ObjectContext* context) override;
    int32_t GetDescription(text item, stringx& value) override { return ReadText(item, &Item::GetDescription, value); }
    int32_t GetDisplayName(text item, stringx& value) override;
    int32_t GetMiscText(text item, stringx& value) override { return ReadText(item, &Item::GetMiscText, value); }
    int32_t IsSelected(text item, bool& truth) override { return ReadTruth(item, &Item::GetSelected, truth); }
    int32_t SelectItem(text item, bool truth, ObjectContext* context) override;
    int32_t IsPartlySelected(text item, bool& truth) override
    {
        return ReadTruth(item, &Item::GetPartlySelected, truth);
    }
    int32_t IsVisible(text item, bool& truth) override
    {
        truth = true;
        return ReadTruth(item, &Item::GetVisible, truth);
    }
    int32_t GetChildCount(text parent, int32_t& count, int32_t mode) override;
    int32_t GetChild(text parent, int32_t index, stringx& name) override;
    int32_t GetItemSize(text item, int32_t& size) override;
    int32_t GetTotalSize(text item, bool whole_tree, bool flag, int64_t& size, int32_t shift) override;
    int32_t SetItemSize(text, int32_t) override { return vh::media_not_supported; }
    int32_t GetCost(text item, text target, uint64_t& bytes) override;
    int32_t Advise(text item, ISetupBasicFeatureStateEvents* view, int64_t view_item, int32_t& cookie) override;
    int32_t Unadvise(text item, int32_t cookie) override;
    int32_t GetDisplayOrder(text item, int32_t& order) override;
    int32_t GetOrderBase() override;
    int32_t MoveData(int32_t, ObjectContext*) override { return 0; }
    int32_t CreateRegistrySet(text name, ISetupLog* log) override;
    int32_t CreateShellObjects(ISetupLog* log) override;
    int32_t CheckValidateKey(text item, text key) override;
    int32_t FilterOS(int32_t first, int32_t second, bool flag) override;
    int32_t FilterLanguage(int32_t language, bool flag) override;
    int32_t CompareSizeRequired(wchar_t* drive, int32_t* size) override;
    int32_t SetupTypeGetData(text type, int32_t code, int32_t* number, wchar_t* buffer, int32_t length) override;
    int32_t SetupTypeEnum(std::vector<stringx>& names) override;
    int32_t SetupTypeSet(text type) override;
    int32_t Update() override;
    int32_t NeedsValidate(text item, bool& truth) override;
    int32_t FileEnumIn(text item, text directory, bool flag, VARIANT* names) override;
    int32_t FileEnum(text item, VARIANT* names) override;
    int32_t FileInfo(text item, text group, text file, int32_t code, VARIANT* value) override;
    int32_t AddCost(text item, text path, int32_t low, int32_t high) override;
    int32_t AddUninstallCost(text item, int32_t low, int32_t high) override;

    // Beyond the media interface; a media of this kind alone selects nothing and costs nothing.
    virtual int32_t SelectAll(bool) { return 0; }
    virtual int32_t GetDriveCosts(text, vh::drive_costs&) { return 0; }

protected:
    using Node = CacheNode<Item, Items>;
    template <class... Arguments>
    using Method = HRESULT (STDMETHODCALLTYPE Item::*)(Arguments...);

    explicit CVHFileMediaImpl(vh::com_ptr<ISetupData> data) : m_data(std::move(data)) {}
    // Once, by the constructor of the concrete class; null leaves every operation failing with E_POINTER.
    void UseCollection(vh::com_ptr<Items> collection);
    // The order of the collection's second item; a failure's code is kept in its place.
    void ReadOrderBase() { m_orderBase = GetOrderBase(); }

    HRESULT FindChildren(text parent, Items*& found);
    // Walks the data set's root to "head\tail", beside the cache.
    HRESULT WalkRoot(ISetupComponents* root, text path, vh::com_ptr<ISetupComponent>& found);
    HRESULT GetRoot(vh::com_ptr<ISetupComponents>& root);
    // The item of this media in the data set, beside the cache.
    HRESULT WalkToOwnItem(text item, vh::com_ptr<ISetupComponent>& found);
    // "<Data>\" in front of a path that does not start with a root item. False when it gets too long.
    static bool RootPath(text item, stringx& path);

    // In this order: the data set is released before the collection.
    vh::com_ptr<Items> m_collection;
    vh::com_ptr<ISetupData> m_data;

private:
    using ExtraText = HRESULT (STDMETHODCALLTYPE ISetupItemTexts::*)(BSTR*);

    // Runs `use` on the item, or fails with the error set.
    template <class Use>
    int32_t WithItem(text item, Use&& use);
    // Runs one of the two: at the root for an empty item, or on the item's own extension.
    template <class Extension, class AtRoot, class OnItem>
    int32_t OnFiles(text item, AtRoot&& at_root, OnItem&& on_item);
    int32_t ReadText(text item, Method<BSTR*> getter, stringx& value);
    int32_t WriteText(text item, Method<BSTR> setter, text value);
    int32_t ReadTruth(text item, Method<VARIANT_BOOL*> getter, bool& truth);
    int32_t ReadNumber(text item, Method<long*> getter, long otherwise, int32_t& number);
    int32_t ReadExtraText(text item, ExtraText getter, stringx& value);
    int32_t WriteDisplayOrder(text item, int32_t order);
    HRESULT WalkToCostItem(text item, vh::com_ptr<ISetupComponent>& found);
    HRESULT FindSetupType(text type, vh::com_ptr<ISetupType>& found);

    Cache<Item, Items> m_cache{nullptr};
    int32_t m_orderBase = 0;
};

extern template class CVHFileMediaImpl<ISetupComponent, ISetupComponents>;
extern template class CVHFileMediaImpl<ISetupFeature, ISetupFeatures>;
