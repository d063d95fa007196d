// An engine with features and nothing behind them: every call answers at once, so that only the library costs.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "../Src/inc/engine.h"
#include "../scriptdata/bstr.h"
#include "../scriptdata/com_object.h"

namespace bench {

// Automation that nobody calls.
template <class First, class... More>
class null_object : public vh::com_object<First, More...> {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
};

class null_feature;

class null_features final : public null_object<ISetupFeatures> {
public:
    void Add(vh::com_ptr<null_feature> feature);
    HRESULT STDMETHODCALLTYPE Count(long* count) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT index, ISetupFeature** item) override;

    // Calls of Item with a name, on any collection.
    static inline long named_calls = 0;
    // Calls of a walk, on any collection or feature.
    static inline long all_calls = 0;

private:
    std::vector<vh::com_ptr<null_feature>> m_all;
    std::unordered_map<std::wstring, std::size_t> m_by_name;
};

// Visible and selected, with its name as every text.
class null_feature final : public null_object<ISetupFeature> {
public:
    explicit null_feature(const std::wstring& name) : m_name(name), m_children(vh::make_object<null_features>()) {}

    const std::wstring& name() const { return m_name; }
    null_features& children() { return *m_children.get(); }

    HRESULT STDMETHODCALLTYPE GetName(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE GetDisplayName(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE SetDisplayName(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetVisible(VARIANT_BOOL* truth) override { return True(truth); }
    HRESULT STDMETHODCALLTYPE SetVisible(VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetLongText(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE SetLongText(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetSelected(short* selected) override
    {
        ++null_features::all_calls;
        return True(selected);
    }
    HRESULT STDMETHODCALLTYPE SetSelected(short) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetPartlySelected(VARIANT_BOOL* truth) override { return True(truth); }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE SetDescription(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetMiscText(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE SetMiscText(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetText17(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE SetText17(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetText18(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE SetText18(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetDisplayOrder(short* order) override { return *order = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE SetDisplayOrder(short) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetStatus(long* status) override { return *status = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetNeedsValidation(VARIANT_BOOL* needed) override
    {
        return *needed = VARIANT_FALSE, S_OK;
    }
    HRESULT STDMETHODCALLTYPE Validate(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetText16(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE GetText19(BSTR* text) override { return Text(text); }
    HRESULT STDMETHODCALLTYPE GetFlags(long* flags) override { return *flags = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE Advise(ISetupBasicFeatureStateEvents*, LONG64, long*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Unadvise(long) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetSize(VARIANT_BOOL, unsigned long* low, unsigned long* high) override
    {
        ++null_features::all_calls;
        *low = *high = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetChildren(ISetupFeatures** children) override
    {
        ++null_features::all_calls;
        *children = vh::com_ptr<ISetupFeatures>(m_children.get()).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetCosts(ISetupCosts**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Move(IUnknown*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Reinstall() override { return S_OK; }

private:
    HRESULT Text(BSTR* text) const
    {
        ++null_features::all_calls;
        *text = vh::bstr(std::wstring_view(m_name)).detach();
        return S_OK;
    }
    static HRESULT True(short* truth) { return *truth = VARIANT_TRUE, S_OK; }

    std::wstring m_name;
    vh::com_ptr<null_features> m_children;
};

// A host with features `parents` times `children` below, or one level when there are no children.
class null_host final : public vh::com_object<ISetupHost, ISetupFeatureHost> {
public:
    null_host(long parents, long children);

    // Paths of all features, parents before their children.
    const std::vector<std::wstring>& paths() const { return m_paths; }
    null_features& features() { return *m_features.get(); }

    HRESULT STDMETHODCALLTYPE GetObjects(ISetupObjects**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE InitInstall() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ExitInstall() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE BeginData(intptr_t, ObjectContext*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EndData() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CCPSearch() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppSearch() override { return S_OK; }

    HRESULT STDMETHODCALLTYPE GetFeatures(ISetupFeatures** features) override
    {
        *features = vh::com_ptr<ISetupFeatures>(m_features.get()).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SelectAll(short) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetErrorObject(IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCosts(ISetupCosts**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Transfer(IUnknown*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Move(IUnknown*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Reinstall(VARIANT_BOOL) override { return S_OK; }

private:
    vh::com_ptr<null_features> m_features;
    std::vector<std::wstring> m_paths;
};

// Gives the data set, which makes the library keep its media "DATA", and nothing else.
class null_services final : public vh::com_object<IServiceProvider> {
public:
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID id, void** object) override;
};

} // namespace bench
