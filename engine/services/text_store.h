// The two text stores as objects.
#pragma once

#include "../object.h"

namespace vh::engine {

// Where texts are saved to and loaded from: the store of the log database, and the log itself.
struct IEngineTextArchive : IUnknown {
    static constexpr GUID iid = Guid("{76683031-53A4-4E55-A7C8-0A2B63C97B12}");
    virtual void SaveTexts(const std::wstring& name, const TextTable& texts) = 0;
    // False when nothing was saved under the name.
    virtual bool LoadTexts(const std::wstring& name, TextTable& texts) = 0;
};

class TextStore final : public engine_object<TextStore, ISetupTextSub, ISetupTextSubEx> {
public:
    TextStore(std::shared_ptr<Core> core, bool local) : engine_object(std::move(core)), m_local(local) {}

    // An unknown variable is empty, with S_FALSE.
    HRESULT STDMETHODCALLTYPE GetValue(BSTR name, BSTR* value) override;
    // E_ACCESSDENIED for a protected variable.
    HRESULT STDMETHODCALLTYPE SetValue(BSTR name, BSTR value) override;
    HRESULT STDMETHODCALLTYPE Substitute(BSTR* text) override;
    HRESULT STDMETHODCALLTYPE Load(BSTR name, IUnknown* store) override;
    HRESULT STDMETHODCALLTYPE Save(BSTR name, IUnknown* store) override;
    HRESULT STDMETHODCALLTYPE Protect(BSTR name, long protection) override;

    static const dispatch_entry<TextStore> names[3];

private:
    TextTable& table() const { return m_local ? core().localTexts : core().globalTexts; }

    bool m_local;
};

} // namespace vh::engine
