// The host object: install phases, and the product's features as a whole.
#pragma once

#include "../product/item.h"

namespace vh::engine {

class HostObject final : public engine_object<HostObject, ISetupHost, ISetupFeatureHost, ISetupFeatureCosts,
                                              ISetupFeatureModes, ISetupUninstallPhases, ISetupProgramPhases,
                                              ISetupRebootPhase, ISetupScriptEvents, ISetupWizard, IDispatch> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE GetObjects(ISetupObjects** objects) override;
    HRESULT STDMETHODCALLTYPE InitInstall() override { return Phase("ISetupHost.InitInstall"); }
    HRESULT STDMETHODCALLTYPE ExitInstall() override { return Phase("ISetupHost.ExitInstall"); }
    HRESULT STDMETHODCALLTYPE BeginData(intptr_t, ObjectContext*) override { return Phase("ISetupHost.BeginData"); }
    HRESULT STDMETHODCALLTYPE EndData() override { return Phase("ISetupHost.EndData"); }
    HRESULT STDMETHODCALLTYPE CCPSearch() override { return Phase("ISetupHost.CCPSearch"); }
    HRESULT STDMETHODCALLTYPE AppSearch() override { return Phase("ISetupHost.AppSearch"); }
    HRESULT STDMETHODCALLTYPE OnUninstall() override { return Phase("ISetupUninstallPhases.OnUninstall"); }
    HRESULT STDMETHODCALLTYPE Preprogram() override { return Phase("ISetupProgramPhases.Preprogram"); }
    HRESULT STDMETHODCALLTYPE Postprogram() override { return Phase("ISetupProgramPhases.Postprogram"); }
    HRESULT STDMETHODCALLTYPE Rebooted() override { return Phase("ISetupRebootPhase.Rebooted"); }
    // A note of the name and the three values.
    HRESULT STDMETHODCALLTYPE Raise(BSTR name, VARIANT first, VARIANT second, VARIANT third) override;
    // The engine has no pages: the count comes back.
    HRESULT STDMETHODCALLTYPE ShowPages(long count, long* result) override;

    HRESULT STDMETHODCALLTYPE GetFeatures(ISetupFeatures** features) override;
    // Required features stay selected.
    HRESULT STDMETHODCALLTYPE SelectAll(short selection) override;
    HRESULT STDMETHODCALLTYPE GetErrorObject(IUnknown** error) override;
    HRESULT STDMETHODCALLTYPE GetCosts(ISetupCosts** costs) override;
    // Moves whatever a move has left.
    HRESULT STDMETHODCALLTYPE Transfer(IUnknown* progress) override;
    HRESULT STDMETHODCALLTYPE Move(IUnknown* progress) override;
    // What is installed counts as not installed: the next move compares it with the payload and repairs it.
    HRESULT STDMETHODCALLTYPE Reinstall(VARIANT_BOOL patch) override;
    HRESULT STDMETHODCALLTYPE GetFeatureCosts(BSTR name, ISetupCosts** costs) override;
    // Forgets what the log lists; the machine stays as it is.
    HRESULT STDMETHODCALLTYPE RemoveAllInLogOnly(long value) override;
    HRESULT STDMETHODCALLTYPE Patch(VARIANT_BOOL on) override;
    // Selects or unselects what is not installed yet.
    HRESULT STDMETHODCALLTYPE SelectNew(short selection) override;

    static const dispatch_entry<HostObject> names[4];

private:
    HRESULT Phase(const char* method) const
    {
        return Call(method)([] { return S_OK; });
    }
    DataSet& data() const { return *core().product; }
    Item& root() const { return data().product->data; }
};

// A top feature as one of the host's objects.
class FeatureObject final : public engine_object<FeatureObject, ISetupWizard, IDispatch> {
public:
    FeatureObject(std::shared_ptr<Core> core, Item& item) : engine_object(std::move(core)), m_item(item) {}

    HRESULT STDMETHODCALLTYPE ShowPages(long count, long* result) override;

    static const dispatch_entry<FeatureObject> names[2];

private:
    Item& m_item;
};

// The host's objects: one for each top feature.
class ObjectsObject final : public engine_object<ObjectsObject, ISetupObjects> {
public:
    explicit ObjectsObject(std::shared_ptr<Core> core);

    HRESULT STDMETHODCALLTYPE Count(long* count) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT index, IUnknown** item) override;

    static const dispatch_entry<ObjectsObject> names[2];

private:
    std::vector<engine::Item*> m_items;
};

} // namespace vh::engine
