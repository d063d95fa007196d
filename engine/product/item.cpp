#include "item.h"

#include "../transfer/transfer.h"
#include "costs.h"
#include "item_files.h"
#include "selection.h"

namespace vh::engine {

namespace {

constexpr short selected_value = 2;

uint64_t FromHalves(long low, long high)
{
    return (static_cast<uint64_t>(static_cast<unsigned long>(high)) << 31) +
           (static_cast<unsigned long>(low) & 0x7FFFFFFF);
}

} // namespace

// Items.

template <class Kind>
HRESULT ItemsObject<Kind>::Count(long* count)
{
    return this->Call("ISetupItems.Count")([&] { return Give(count, m_items.size()); });
}

template <class Kind>
HRESULT ItemsObject<Kind>::Item(VARIANT index, typename Kind::item** item)
{
    return this->Call("ISetupItems.Item", index)([&]() -> HRESULT {
        if (!item)
            return E_POINTER;
        *item = nullptr;
        engine::Item* found = FindElement(m_items, index, [](const engine::Item& at) { return at.name; });
        if (!found)
            return no_such_item;
        *item = new ItemObject<Kind>(this->shared_core(), m_data, *found);
        return S_OK;
    });
}

template <class Kind>
const dispatch_entry<ItemsObject<Kind>> ItemsObject<Kind>::names[2] = {
    {L"Item",
     [](ItemsObject<Kind>& items, const dispatch_call& call) {
         com_ptr<typename Kind::item> item;
         const HRESULT code = items.Item(call.at(0), item.put());
         return FAILED(code) ? code : call.give(item.template query<IDispatch>());
     },
     true},
    {L"Count", &GetProperty<&ItemsObject<Kind>::Count, ItemsObject<Kind>>},
};

// One item.

template <class Kind>
template <class... Arguments>
EngineCall ItemObject<Kind>::Enter(const char* method, const Arguments&... arguments) const
{
    return this->Call(method, m_item, arguments...);
}

template <class Kind>
HRESULT ItemObject<Kind>::Text(const char* method, const std::wstring& field, BSTR* text) const
{
    return Enter((std::string("ISetupItem.") + method).c_str())(
        [&] { return GiveText(text, this->core().DisplayText(field)); });
}

template <class Kind>
HRESULT ItemObject<Kind>::SetText(const char* method, std::wstring& field, BSTR text)
{
    return Enter((std::string("ISetupItem.") + method).c_str(), text)([&] {
        field = TextOf(text);
        return S_OK;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetName(BSTR* name)
{
    return Enter("ISetupItem.GetName")([&] { return GiveText(name, m_item.name); });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetVisible(VARIANT_BOOL* visible)
{
    return Enter("ISetupItem.GetVisible")([&] { return GiveTruth(visible, m_item.visible && m_data->Admits(m_item)); });
}

template <class Kind>
HRESULT ItemObject<Kind>::SetVisible(VARIANT_BOOL visible)
{
    return Enter("ISetupItem.SetVisible", visible)([&] {
        m_item.visible = visible != 0;
        return S_OK;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetSelected(short* selected)
{
    return Enter("ISetupItem.GetSelected")([&] { return Give(selected, m_item.selected ? selected_value : 0); });
}

template <class Kind>
HRESULT ItemObject<Kind>::SetSelected(short selected)
{
    return Enter("ISetupItem.SetSelected",
                 selected)([&] { return SelectItem(m_item, selected != 0) ? S_OK : S_FALSE; });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetPartlySelected(VARIANT_BOOL* partly)
{
    return Enter("ISetupItem.GetPartlySelected")([&] { return GiveTruth(partly, IsPartlySelected(m_item)); });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetDisplayOrder(short* order)
{
    return Enter("ISetupItem.GetDisplayOrder")([&] { return Give(order, m_item.order); });
}

template <class Kind>
HRESULT ItemObject<Kind>::SetDisplayOrder(short order)
{
    return Enter("ISetupItem.SetDisplayOrder", order)([&] {
        m_item.order = order;
        return S_OK;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetStatus(long* status)
{
    return Enter("ISetupItem.GetStatus")([&] { return Give(status, m_item.status); });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetNeedsValidation(VARIANT_BOOL* needed)
{
    return Enter("ISetupItem.GetNeedsValidation")([&] { return GiveTruth(needed, !m_item.key.empty()); });
}

template <class Kind>
HRESULT ItemObject<Kind>::Validate(BSTR key)
{
    return Enter("ISetupItem.Validate", key)([&] { return TextOf(key) == m_item.key ? S_OK : E_INVALIDARG; });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetFlags(long* flags)
{
    return Enter("ISetupItem.GetFlags")([&] { return Give(flags, m_item.flags); });
}

template <class Kind>
HRESULT ItemObject<Kind>::Advise(ISetupBasicFeatureStateEvents* view, LONG64 viewItem, long* cookie)
{
    return Enter("ISetupItem.Advise", viewItem)([&] {
        if (!view || !cookie)
            return E_POINTER;
        *cookie = this->core().nextCookie++;
        m_item.listeners[*cookie] = {com_ptr<ISetupBasicFeatureStateEvents>(view), viewItem};
        return S_OK;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::Unadvise(long cookie)
{
    return Enter("ISetupItem.Unadvise", cookie)([&] { return m_item.listeners.erase(cookie) ? S_OK : E_INVALIDARG; });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetSize(VARIANT_BOOL wholeTree, unsigned long* low, unsigned long* high)
{
    return Enter("ISetupItem.GetSize", wholeTree)([&] {
        const uint64_t size = m_data->Size(m_item, wholeTree != 0);
        const HRESULT code = Give(low, size & 0xFFFFFFFF);
        return FAILED(code) ? code : Give(high, size >> 32);
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetChildren(typename Kind::items** children)
{
    return Enter("ISetupItem.GetChildren")(
        [&] { return GiveObject(children, ChildrenOf<Kind>(this->shared_core(), m_data, m_item)); });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetCosts(ISetupCosts** costs)
{
    return Enter("ISetupItem.GetCosts")([&] {
        DriveCosts made;
        AddCosts(this->core(), *m_data, m_item, CostOf::selected, made);
        return GiveObject(costs, make_object<CostsObject>(this->shared_core(), std::move(made)));
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::Move(IUnknown* progress)
{
    return Enter("ISetupItem.Move")([&] {
        Transfer(this->core(), *m_data, {&m_item}, progress);
        return S_OK;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::Reinstall()
{
    return Enter("ISetupItem.Reinstall")([&] {
        ForEachItem(m_item, [](Item& item) { item.installed = false; });
        return S_OK;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::EnumFiles(BSTR directory, VARIANT_BOOL flag, VARIANT* files)
{
    return Enter("ISetupItemFileQueries.EnumFiles", directory, flag)([&]() -> HRESULT {
        const FileGroup* group = FindGroup(m_item, TextOf(directory));
        return group ? GiveTexts(files, FilesIn(*group, flag != 0)) : no_such_item;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::FileInfo(BSTR group, BSTR file, long code, VARIANT* value)
{
    return Enter("ISetupItemFileQueries.FileInfo", group, file, code)([&] {
        return GiveFileInfo(this->core(), m_item, FindGroup(m_item, TextOf(group)), TextOf(file), code, value);
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::GetFiles(VARIANT* files)
{
    return Enter("ISetupItemFiles.GetFiles")([&] { return GiveTexts(files, FilesOf(m_item)); });
}

template <class Kind>
HRESULT ItemObject<Kind>::AddCost(long low, long high, BSTR path)
{
    return Enter("ISetupItemFiles.AddCost", low, high, path)([&] {
        m_item.costs.push_back({TextOf(path), FromHalves(low, high)});
        return S_OK;
    });
}

template <class Kind>
HRESULT ItemObject<Kind>::AddUninstallCost(long low, long high)
{
    // A removal announces no total, so there is nothing to add to.
    return Enter("ISetupItemUninstallCost.AddUninstallCost", low, high)([] { return S_OK; });
}

template <class Kind>
const dispatch_entry<ItemObject<Kind>> ItemObject<Kind>::names[12] = {
    {L"Name", &GetProperty<&ItemObject<Kind>::GetName, ItemObject<Kind>>, true},
    {L"DisplayName", &Property<&ItemObject<Kind>::GetDisplayName, &ItemObject<Kind>::SetDisplayName, ItemObject<Kind>>},
    {L"Description", &Property<&ItemObject<Kind>::GetDescription, &ItemObject<Kind>::SetDescription, ItemObject<Kind>>},
    {L"LongText", &Property<&ItemObject<Kind>::GetLongText, &ItemObject<Kind>::SetLongText, ItemObject<Kind>>},
    {L"MiscText", &Property<&ItemObject<Kind>::GetMiscText, &ItemObject<Kind>::SetMiscText, ItemObject<Kind>>},
    {L"Selected", &Property<&ItemObject<Kind>::GetSelected, &ItemObject<Kind>::SetSelected, ItemObject<Kind>>},
    {L"PartlySelected", &GetProperty<&ItemObject<Kind>::GetPartlySelected, ItemObject<Kind>>},
    {L"Visible", &Property<&ItemObject<Kind>::GetVisible, &ItemObject<Kind>::SetVisible, ItemObject<Kind>>},
    {L"DisplayOrder",
     &Property<&ItemObject<Kind>::GetDisplayOrder, &ItemObject<Kind>::SetDisplayOrder, ItemObject<Kind>>},
    {L"Status", &GetProperty<&ItemObject<Kind>::GetStatus, ItemObject<Kind>>},
    {L"Flags", &GetProperty<&ItemObject<Kind>::GetFlags, ItemObject<Kind>>},
    {L"Children", &GetProperty<&ItemObject<Kind>::GetChildren, ItemObject<Kind>>},
};

template class ItemsObject<FeatureKind>;
template class ItemsObject<ComponentKind>;
template class ItemObject<FeatureKind>;
template class ItemObject<ComponentKind>;

} // namespace vh::engine
