// The registry service.
#pragma once

#include "../object.h"

namespace vh::engine {

// Bit of the option word: keys are those of the 32-bit view.
inline constexpr long registry_view32 = 0x1;

class RegistryObject final
    : public engine_object<RegistryObject, ISetupRegistry, ISetupSiteAware, ISetupRegistryOptions> {
public:
    using engine_object::engine_object;

    // `shared` changes nothing: the log tells whose a key is, and one that holds more stays at removal.
    HRESULT STDMETHODCALLTYPE CreateKey(LONG64 root, BSTR key, BSTR keyClass, VARIANT_BOOL shared,
                                        ISetupLog* log) override;
    HRESULT STDMETHODCALLTYPE SetValue(LONG64 root, BSTR key, BSTR name, long type, VARIANT* value,
                                       ISetupLog* log) override;
    HRESULT STDMETHODCALLTYPE QueryValue(LONG64 root, BSTR key, BSTR name, long* type, VARIANT* value) override;
    // With all keys below it.
    HRESULT STDMETHODCALLTYPE DeleteKey(LONG64 root, BSTR key, long reserved) override;
    HRESULT STDMETHODCALLTYPE DeleteValue(LONG64 root, BSTR key, BSTR name) override;
    HRESULT STDMETHODCALLTYPE Connect(LONG64 root, BSTR machine, LONG64* remoteKey) override;
    HRESULT STDMETHODCALLTYPE Disconnect(LONG64 remoteKey) override;
    HRESULT STDMETHODCALLTYPE EnumKeys(LONG64 root, BSTR key, SAFEARRAY** keys) override;
    HRESULT STDMETHODCALLTYPE EnumValues(LONG64 root, BSTR key, SAFEARRAY** values) override;
    HRESULT STDMETHODCALLTYPE KeyExists(LONG64 root, BSTR key, VARIANT_BOOL* exists) override;
    HRESULT STDMETHODCALLTYPE SetSite(IServiceProvider* services) override;
    HRESULT STDMETHODCALLTYPE EnableTextSubs(VARIANT_BOOL on) override;
    HRESULT STDMETHODCALLTYPE SetOptions(long options) override;
    HRESULT STDMETHODCALLTYPE GetOptions(long* options) override;

private:
    struct RegistryPlace Place(LONG64 root, BSTR key) const;
    Recording RecordingFor(ISetupLog* log) const { return {core().log.get(), !log}; }
};

} // namespace vh::engine
