// Services of a few methods each.
#pragma once

#include "../marshaler.h"
#include "../object.h"

namespace vh::engine {

class StringsObject final : public engine_object<StringsObject, ISetupStrings> {
public:
    using engine_object::engine_object;
    HRESULT STDMETHODCALLTYPE GetString(BSTR id, BSTR* text) override;
    static const dispatch_entry<StringsObject> names[1];
};

class DirsObject final : public engine_object<DirsObject, ISetupDirs> {
public:
    using engine_object::engine_object;
    HRESULT STDMETHODCALLTYPE GetSupportDir(BSTR* directory) override;
    HRESULT STDMETHODCALLTYPE GetContextGuid(BSTR* identifier) override;
};

class ResourcesObject final : public engine_object<ResourcesObject, ISetupResources> {
public:
    using engine_object::engine_object;
    // A name without a folder is looked for in the support folder, then in the setup folder.
    HRESULT STDMETHODCALLTYPE Load(BSTR file, HMODULE* module) override;
    HRESULT STDMETHODCALLTYPE Free(HMODULE module, long* result) override;
};

// Lines go to the engine's messages, as notes.
class ScriptLog final : public engine_object<ScriptLog, ISetupScriptLog> {
public:
    using engine_object::engine_object;
    HRESULT STDMETHODCALLTYPE WriteLine(BSTR line) override;
};

// This process sees the 64-bit registry itself.
class PermissionHelper final : public engine_object<PermissionHelper, ISetupPermissionHelper> {
public:
    using engine_object::engine_object;
    HRESULT STDMETHODCALLTYPE SetObjectPermissions(BSTR object, BSTR domain, BSTR account, long objectType, long access,
                                                   long flags, long* result) override;
};

class UserObject final : public engine_object<UserObject, ISetupUser> {
public:
    using engine_object::engine_object;
    HRESULT STDMETHODCALLTYPE GetWindow(ISetupWindow** window) override;
    static const dispatch_entry<UserObject> names[2];
};

class RebootObject final : public engine_object<RebootObject, ISetupReboot> {
public:
    using engine_object::engine_object;
    HRESULT STDMETHODCALLTYPE PutString(BSTR first, BSTR second, BSTR third) override;
    static const dispatch_entry<RebootObject> names[5];
};

// Named values that may be used from another thread.
class PropertyBag final : public engine_object<PropertyBag, ISetupPropertyBag> {
public:
    using engine_object::engine_object;
    // E_INVALIDARG for a name that was not written.
    HRESULT STDMETHODCALLTYPE Read(BSTR name, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE Write(BSTR name, VARIANT* value) override;

private:
    HRESULT QueryMore(REFIID id, void** object) override { return m_marshaler.Query(this, id, object); }

    Marshaler m_marshaler;
    std::map<std::wstring, variant> m_values;
};

} // namespace vh::engine
