// The common language runtime, hosted for one managed object.
#pragma once

#include "../scriptdata/bstr.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"
#include "clr_interfaces.h"

namespace vh {

// What does not depend on the object's interface. The order of the virtual functions is fixed.
class clr_host {
public:
    clr_host() = default;
    clr_host(const clr_host&) = delete;
    clr_host& operator=(const clr_host&) = delete;
    virtual ~clr_host() = default;

    // For the old way of binding; empty for the newest.
    virtual stringx GetRequiredVersion() const { return {}; }
    virtual void OnRuntimeBound() {}

    // All domains of the name, without regard to case. Result: whether there was one. Raises com_exception and
    // win32_exception.
    bool UnloadDomains(std::wstring_view name);

protected:
    // Starts the runtime that the assembly wants or, where it says nothing, the newest one. Raises win32_exception
    // (2 without the runtime's library, 1 without its function) and com_exception.
    void Bind();
    // An instance of the class, in a domain of the name or in the default one; both raised as above.
    void Create(const GUID& wanted, void** object);

    bstr m_assembly_path;
    bstr m_class_name;
    bstr m_domain_name;

private:
    void BindNewest(HMODULE library);
    void BindOld();

    unique_module m_runtime_module;
    com_ptr<ICorRuntimeHost> m_host;
};

template <class Interface>
class CCLRHost final : public clr_host {
public:
    // Idle: for domains alone.
    CCLRHost() = default;
    // All of the work; raises what Bind and Create raise.
    CCLRHost(std::wstring_view assembly, std::wstring_view class_name, std::wstring_view domain)
    {
        m_assembly_path = bstr(assembly);
        m_class_name = bstr(class_name);
        m_domain_name = bstr(domain);
        Create(iid_of<Interface>, m_object.put_void());
    }

    const com_ptr<Interface>& object() const { return m_object; }

private:
    com_ptr<Interface> m_object;
};

} // namespace vh
