// The media whose items are the engine's: what it does with one item, of either kind.
#pragma once

#include "../scriptdata/bstr.h"
#include "data_media.h"

class CVHItemMedia : public CVHDataMedia {
public:
    int32_t GetData(text item, int32_t code, int32_t* number, wchar_t* buffer, int32_t length) override;
    int32_t SetData(text item, int32_t code, int32_t number, text value, ObjectContext* context) override;
    int32_t GetDescription(text item, stringx& value) override;
    int32_t GetDisplayName(text item, stringx& value) override;
    int32_t GetMiscText(text item, stringx& value) override;
    int32_t IsSelected(text item, bool& truth) override;
    int32_t SelectItem(text item, bool truth, ObjectContext* context) override;
    int32_t IsPartlySelected(text item, bool& truth) override;
    int32_t IsVisible(text item, bool& truth) override;
    int32_t GetItemSize(text item, int32_t& size) override;
    int32_t SetItemSize(text, int32_t) override { return vh::media_not_supported; }
    int32_t Advise(text item, ISetupBasicFeatureStateEvents* view, int64_t view_item, int32_t& cookie) override;
    int32_t Unadvise(text item, int32_t cookie) override;
    int32_t GetDisplayOrder(text item, int32_t& order) override;
    int32_t CheckValidateKey(text item, text key) override;
    int32_t NeedsValidate(text item, bool& truth) override;

    // Beyond the media interface; a media of this kind alone selects nothing.
    virtual int32_t SelectAll(bool) { return 0; }

protected:
    template <class... Arguments>
    using Method = HRESULT (STDMETHODCALLTYPE ISetupAnyItem::*)(Arguments...);

    using CVHDataMedia::CVHDataMedia;
    // The order of the collection's second item; a failure's code is kept in its place.
    void ReadOrderBase() { m_orderBase = GetOrderBase(); }

    // Runs `use` on the item and passes its code on, or fails with the error set.
    template <class Use>
    int32_t WithItem(text item, Use&& use)
    {
        ISetupAnyItem* found = nullptr;
        const HRESULT code = FindItem(item, found);
        return FAILED(code) ? Fail(code, item) : use(*found);
    }

private:
    // The media keeps the item.
    virtual HRESULT FindItem(text path, ISetupAnyItem*& found) = 0;

    // 0 or the failure.
    int32_t ReadText(text item, Method<BSTR*> getter, vh::bstr& value);
    int32_t ReadText(text item, Method<BSTR*> getter, stringx& value);
    int32_t ReadExtraText(text item, HRESULT (STDMETHODCALLTYPE ISetupItemTexts::*getter)(BSTR*), vh::bstr& value);
    int32_t ReadTruth(text item, Method<VARIANT_BOOL*> getter, bool& truth);
    int32_t ReadNumber(text item, Method<long*> getter, long otherwise, int32_t& number);
    int32_t WriteText(text item, Method<BSTR> setter, text value);
    int32_t WriteDisplayOrder(text item, int32_t order);

    int32_t m_orderBase = 0;
};
