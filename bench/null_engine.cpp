#include "null_engine.h"

namespace bench {

namespace {

class null_data final : public null_object<ISetupData> {
public:
    HRESULT STDMETHODCALLTYPE GetRoot(ISetupComponents**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSetupTypes(ISetupTypes**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FilterLanguage(long, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetMaintenance(VARIANT_BOOL* truth) override { return *truth = VARIANT_FALSE, S_OK; }
    HRESULT STDMETHODCALLTYPE GetProductGuid(long, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSourcePath(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetErrorObject(IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Validate(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetLog(ISetupLog*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CreateRegistrySet(BSTR, ISetupLog*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CreateShellObjects(ISetupLog*) override { return S_OK; }
};

} // namespace

void null_features::Add(vh::com_ptr<null_feature> feature)
{
    m_by_name.emplace(feature->name(), m_all.size());
    m_all.push_back(std::move(feature));
}

HRESULT null_features::Count(long* count)
{
    ++all_calls;
    *count = static_cast<long>(m_all.size());
    return S_OK;
}

HRESULT null_features::Item(VARIANT index, ISetupFeature** item)
{
    ++all_calls;
    std::size_t place = m_all.size();
    if (index.vt == VT_BSTR) {
        ++named_calls;
        if (const auto found = m_by_name.find(index.bstrVal); found != m_by_name.end())
            place = found->second;
    } else {
        place = static_cast<std::size_t>(index.lVal - 1);
    }
    if (place >= m_all.size())
        return E_INVALIDARG;
    *item = vh::com_ptr<ISetupFeature>(m_all[place].get()).detach();
    return S_OK;
}

null_host::null_host(long parents, long children) : m_features(vh::make_object<null_features>())
{
    for (long p = 0; p < parents; ++p) {
        const std::wstring name = L"Feature " + std::to_wstring(p);
        const auto parent = vh::make_object<null_feature>(name);
        m_features->Add(parent);
        m_paths.push_back(name);
        for (long c = 0; c < children; ++c) {
            const std::wstring child = L"Part " + std::to_wstring(c);
            parent->children().Add(vh::make_object<null_feature>(child));
            m_paths.push_back(name + L"\\" + child);
        }
    }
}

HRESULT null_services::QueryService(REFGUID, REFIID id, void** object)
{
    *object = nullptr;
    if (id != ISetupData::iid)
        return E_NOINTERFACE;
    *object = vh::make_object<null_data>().detach();
    return S_OK;
}

} // namespace bench
