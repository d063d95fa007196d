// Features and components as objects. Both kinds stand on the same items; only their interfaces differ.
#pragma once

#include "../object.h"

namespace vh::engine {

inline constexpr HRESULT no_such_item = static_cast<HRESULT>(0x8004F069);
inline constexpr HRESULT no_such_setup_type = static_cast<HRESULT>(0x8004F003);

struct FeatureKind {
    using item = ISetupFeature;
    using items = ISetupFeatures;
};
struct ComponentKind {
    using item = ISetupComponent;
    using items = ISetupComponents;
};

// Looks up by 1-based index or by name; null when there is none.
template <class Element, class NameOf>
Element* FindElement(const std::vector<Element*>& elements, const VARIANT& index, NameOf&& nameOf)
{
    variant key;
    if (FAILED(VariantCopyInd(key.put(), const_cast<VARIANT*>(&index))))
        return nullptr;
    if (key.type() == VT_BSTR) {
        for (Element* element : elements)
            if (SameText(nameOf(*element), key.text()))
                return element;
        return nullptr;
    }
    if (key.type() == VT_EMPTY || FAILED(key.change(VT_I4)))
        return nullptr;
    const long number = key.get().lVal;
    return number >= 1 && number <= static_cast<long>(elements.size()) ? elements[static_cast<std::size_t>(number - 1)]
                                                                       : nullptr;
}

template <class Kind>
class ItemsObject final : public engine_object<ItemsObject<Kind>, typename Kind::items> {
public:
    ItemsObject(std::shared_ptr<Core> core, std::shared_ptr<DataSet> data, std::vector<Item*> items)
        : engine_object<ItemsObject<Kind>, typename Kind::items>(std::move(core)), m_data(std::move(data)),
          m_items(std::move(items))
    {
    }

    HRESULT STDMETHODCALLTYPE Count(long* count) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT index, typename Kind::item** item) override;

    static const dispatch_entry<ItemsObject<Kind>> names[2];

private:
    std::shared_ptr<DataSet> m_data;
    std::vector<engine::Item*> m_items;
};

template <class Kind>
com_ptr<typename Kind::items> ChildrenOf(const std::shared_ptr<Core>& core, const std::shared_ptr<DataSet>& data,
                                         const Item& item)
{
    std::vector<Item*> children;
    for (const auto& child : item.children)
        children.push_back(child.get());
    com_ptr<typename Kind::items> made;
    made.attach(new ItemsObject<Kind>(core, data, std::move(children)));
    return made;
}

template <class Kind>
class ItemObject final : public engine_object<ItemObject<Kind>, typename Kind::item, ISetupItemFileQueries,
                                              ISetupItemFiles, ISetupItemUninstallCost, ISetupItemTexts> {
    using base = engine_object<ItemObject<Kind>, typename Kind::item, ISetupItemFileQueries, ISetupItemFiles,
                               ISetupItemUninstallCost, ISetupItemTexts>;

public:
    ItemObject(std::shared_ptr<Core> core, std::shared_ptr<DataSet> data, Item& item)
        : base(std::move(core)), m_data(std::move(data)), m_item(item)
    {
    }

    HRESULT STDMETHODCALLTYPE GetName(BSTR* name) override;
    HRESULT STDMETHODCALLTYPE GetDisplayName(BSTR* text) override
    {
        return Text("GetDisplayName", m_item.displayName, text);
    }
    HRESULT STDMETHODCALLTYPE SetDisplayName(BSTR text) override
    {
        return SetText("SetDisplayName", m_item.displayName, text);
    }
    HRESULT STDMETHODCALLTYPE GetVisible(VARIANT_BOOL* visible) override;
    HRESULT STDMETHODCALLTYPE SetVisible(VARIANT_BOOL visible) override;
    HRESULT STDMETHODCALLTYPE GetLongText(BSTR* text) override { return Text("GetLongText", m_item.longText, text); }
    HRESULT STDMETHODCALLTYPE SetLongText(BSTR text) override { return SetText("SetLongText", m_item.longText, text); }
    // 2 or 0.
    HRESULT STDMETHODCALLTYPE GetSelected(short* selected) override;
    HRESULT STDMETHODCALLTYPE SetSelected(short selected) override;
    HRESULT STDMETHODCALLTYPE GetPartlySelected(VARIANT_BOOL* partly) override;
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override
    {
        return Text("GetDescription", m_item.description, text);
    }
    HRESULT STDMETHODCALLTYPE SetDescription(BSTR text) override
    {
        return SetText("SetDescription", m_item.description, text);
    }
    HRESULT STDMETHODCALLTYPE GetMiscText(BSTR* text) override { return Text("GetMiscText", m_item.miscText, text); }
    HRESULT STDMETHODCALLTYPE SetMiscText(BSTR text) override { return SetText("SetMiscText", m_item.miscText, text); }
    HRESULT STDMETHODCALLTYPE GetText17(BSTR* text) override { return Text("GetText17", Numbered(17), text); }
    HRESULT STDMETHODCALLTYPE SetText17(BSTR text) override { return SetText("SetText17", Numbered(17), text); }
    HRESULT STDMETHODCALLTYPE GetText18(BSTR* text) override { return Text("GetText18", Numbered(18), text); }
    HRESULT STDMETHODCALLTYPE SetText18(BSTR text) override { return SetText("SetText18", Numbered(18), text); }
    HRESULT STDMETHODCALLTYPE GetDisplayOrder(short* order) override;
    HRESULT STDMETHODCALLTYPE SetDisplayOrder(short order) override;
    HRESULT STDMETHODCALLTYPE GetStatus(long* status) override;
    // Whether the item has a validation key.
    HRESULT STDMETHODCALLTYPE GetNeedsValidation(VARIANT_BOOL* needed) override;
    // E_INVALIDARG for a wrong key.
    HRESULT STDMETHODCALLTYPE Validate(BSTR key) override;
    HRESULT STDMETHODCALLTYPE GetText16(BSTR* text) override { return Text("GetText16", Numbered(16), text); }
    HRESULT STDMETHODCALLTYPE GetText19(BSTR* text) override { return Text("GetText19", Numbered(19), text); }
    HRESULT STDMETHODCALLTYPE GetFlags(long* flags) override;
    HRESULT STDMETHODCALLTYPE Advise(ISetupBasicFeatureStateEvents* view, LONG64 viewItem, long* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(long cookie) override;
    HRESULT STDMETHODCALLTYPE GetSize(VARIANT_BOOL wholeTree, unsigned long* low, unsigned long* high) override;
    HRESULT STDMETHODCALLTYPE GetChildren(typename Kind::items** children) override;
    // What a move of this item would write.
    HRESULT STDMETHODCALLTYPE GetCosts(ISetupCosts** costs) override;
    HRESULT STDMETHODCALLTYPE Move(IUnknown* progress) override;
    HRESULT STDMETHODCALLTYPE Reinstall() override;

    HRESULT STDMETHODCALLTYPE EnumFiles(BSTR directory, VARIANT_BOOL flag, VARIANT* files) override;
    HRESULT STDMETHODCALLTYPE FileInfo(BSTR group, BSTR file, long code, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE GetFiles(VARIANT* files) override;
    // Halves of 31 bits, as scripts hold large numbers.
    HRESULT STDMETHODCALLTYPE AddCost(long low, long high, BSTR path) override;
    HRESULT STDMETHODCALLTYPE AddUninstallCost(long low, long high) override;
    HRESULT STDMETHODCALLTYPE GetText22(BSTR* text) override { return Text("GetText22", Numbered(22), text); }
    HRESULT STDMETHODCALLTYPE GetText23(BSTR* text) override { return Text("GetText23", Numbered(23), text); }
    HRESULT STDMETHODCALLTYPE GetText20(BSTR* text) override { return Text("GetText20", Numbered(20), text); }
    HRESULT STDMETHODCALLTYPE GetText21(BSTR* text) override { return Text("GetText21", Numbered(21), text); }

    static const dispatch_entry<ItemObject<Kind>> names[12];

private:
    template <class... Arguments>
    EngineCall Enter(const char* method, const Arguments&... arguments) const;
    HRESULT Text(const char* method, const std::wstring& field, BSTR* text) const;
    HRESULT SetText(const char* method, std::wstring& field, BSTR text);
    std::wstring& Numbered(int number) { return m_item.texts[static_cast<std::size_t>(number - first_item_text)]; }

    std::shared_ptr<DataSet> m_data;
    Item& m_item;
};

} // namespace vh::engine
