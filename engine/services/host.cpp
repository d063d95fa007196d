#include "host.h"

#include "../product/costs.h"
#include "../product/selection.h"
#include "../transfer/transfer.h"
#include "error_object.h"

namespace vh::engine {

const dispatch_entry<HostObject> HostObject::names[4] = {
    {L"Features", &GetProperty<&HostObject::GetFeatures, HostObject>},
    {L"Objects", &GetProperty<&HostObject::GetObjects, HostObject>},
    {L"LastError", &GetProperty<&HostObject::GetErrorObject, HostObject>},
    {L"SelectAll",
     [](HostObject& host, const dispatch_call& call) { return host.SelectAll(static_cast<short>(call.number(0))); }},
};

HRESULT HostObject::GetObjects(ISetupObjects** objects)
{
    return Call("ISetupHost.GetObjects")(
        [&] { return GiveObject(objects, make_object<ObjectsObject>(shared_core())); });
}

HRESULT HostObject::Raise(BSTR name, VARIANT first, VARIANT second, VARIANT third)
{
    return Call("ISetupScriptEvents.Raise", name)([&] {
        std::wstring line = TextOf(name) + L"(";
        for (VARIANT* value : {&first, &second, &third}) {
            variant text;
            if (FAILED(VariantChangeType(text.put(), value, 0, VT_BSTR)))
                return E_INVALIDARG;
            line += (value == &first ? L"" : L", ") + std::wstring(text.text());
        }
        core().Note({}, line + L")");
        return S_OK;
    });
}

HRESULT HostObject::ShowPages(long count, long* result)
{
    return Call("ISetupWizard.ShowPages", count)([&] { return Give(result, count); });
}

HRESULT HostObject::GetFeatures(ISetupFeatures** features)
{
    return Call("ISetupFeatureHost.GetFeatures")(
        [&] { return GiveObject(features, ChildrenOf<FeatureKind>(shared_core(), core().product, root())); });
}

HRESULT HostObject::SelectAll(short selection)
{
    return Call("ISetupFeatureHost.SelectAll", selection)([&] {
        engine::SelectAll(root(), selection != 0);
        return S_OK;
    });
}

HRESULT HostObject::GetErrorObject(IUnknown** error)
{
    return Call("ISetupFeatureHost.GetErrorObject")(
        [&] { return GiveObject(error, make_object<ErrorObject>(shared_core(), core().lastError)); });
}

HRESULT HostObject::GetCosts(ISetupCosts** costs)
{
    return Call("ISetupFeatureHost.GetCosts")([&] {
        DriveCosts made;
        AddCosts(core(), data(), root(), CostOf::selected, made);
        return GiveObject(costs, make_object<CostsObject>(shared_core(), std::move(made)));
    });
}

HRESULT HostObject::Transfer(IUnknown* progress)
{
    return Call("ISetupFeatureHost.Transfer")([&] {
        TransferFeatures(core(), data(), progress);
        return S_OK;
    });
}

HRESULT HostObject::Move(IUnknown* progress)
{
    return Call("ISetupFeatureHost.Move")([&] {
        TransferFeatures(core(), data(), progress);
        return S_OK;
    });
}

HRESULT HostObject::Reinstall(VARIANT_BOOL patch)
{
    return Call("ISetupFeatureHost.Reinstall", patch)([&] {
        ForEachItem(root(), [](Item& item) { item.installed = false; });
        return S_OK;
    });
}

HRESULT HostObject::GetFeatureCosts(BSTR name, ISetupCosts** costs)
{
    return Call("ISetupFeatureCosts.GetFeatureCosts", name)([&]() -> HRESULT {
        const Item* item = data().product->Feature(TextOf(name));
        if (!item)
            return no_such_item;
        DriveCosts made;
        AddCosts(core(), data(), *item, CostOf::wanted, made);
        return GiveObject(costs, make_object<CostsObject>(shared_core(), std::move(made)));
    });
}

HRESULT HostObject::RemoveAllInLogOnly(long value)
{
    return Call("ISetupFeatureModes.RemoveAllInLogOnly", value)([&] {
        std::vector<LogRecord> forgotten;
        for (const LogRecord& record : core().log->Records())
            if (IsForRemoval(record) && !core().log->Undone(record)) {
                forgotten.emplace_back().kind = LogKind::forgotten;
                forgotten.back().ref = record.id;
            }
        if (!forgotten.empty())
            core().log->Append(std::move(forgotten));
        return S_OK;
    });
}

HRESULT HostObject::Patch(VARIANT_BOOL on)
{
    return Call("ISetupFeatureModes.Patch", on)([&] {
        data().patchMode = on != 0;
        return S_OK;
    });
}

HRESULT HostObject::SelectNew(short selection)
{
    return Call("ISetupFeatureModes.SelectNew", selection)([&] {
        for (const auto& child : root().children)
            ForEachItem(*child, [&](Item& item) {
                if (!item.pseudo && !item.installed)
                    SelectItem(item, selection != 0);
            });
        return S_OK;
    });
}

HRESULT FeatureObject::ShowPages(long count, long* result)
{
    return Call("ISetupWizard.ShowPages", m_item, count)([&] { return Give(result, count); });
}

const dispatch_entry<FeatureObject> FeatureObject::names[2] = {
    {L"Name",
     [](FeatureObject& object, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(object.m_item.name)));
     },
     true},
    {L"Feature",
     [](FeatureObject& object, const dispatch_call& call) {
         auto item = make_object<ItemObject<FeatureKind>>(object.shared_core(), object.core().product, object.m_item);
         return call.give(item.query<IDispatch>());
     }},
};

ObjectsObject::ObjectsObject(std::shared_ptr<Core> shared) : engine_object(std::move(shared))
{
    for (const auto& child : core().product->product->data.children)
        if (!child->pseudo)
            m_items.push_back(child.get());
}

const dispatch_entry<ObjectsObject> ObjectsObject::names[2] = {
    {L"Item",
     [](ObjectsObject& objects, const dispatch_call& call) {
         com_ptr<IUnknown> item;
         const HRESULT code = objects.Item(call.at(0), item.put());
         return FAILED(code) ? code : call.give(item.query<IDispatch>());
     },
     true},
    {L"Count", &GetProperty<&ObjectsObject::Count, ObjectsObject>},
};

HRESULT ObjectsObject::Count(long* count)
{
    return Call("ISetupObjects.Count")([&] { return Give(count, m_items.size()); });
}

HRESULT ObjectsObject::Item(VARIANT index, IUnknown** item)
{
    return Call("ISetupObjects.Item", index)([&]() -> HRESULT {
        if (!item)
            return E_POINTER;
        *item = nullptr;
        engine::Item* found = FindElement(m_items, index, [](const engine::Item& at) { return at.name; });
        if (!found)
            return no_such_item;
        *item = static_cast<ISetupWizard*>(make_object<FeatureObject>(shared_core(), *found).detach());
        return S_OK;
    });
}

} // namespace vh::engine
