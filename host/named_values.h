// The object that a call gives back to a script when it has more than one result.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "scriptdata/com_object.h"
#include "scriptdata/variant.h"

namespace host {

// Read-only properties by name; names compare exactly.
class NamedValues : public vh::com_object<IDispatch> {
public:
    void Add(std::wstring name, vh::variant value) { m_values.emplace_back(std::move(name), std::move(value)); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override;

private:
    std::vector<std::pair<std::wstring, vh::variant>> m_values;
};

// The object as a script's value.
vh::variant ObjectValue(vh::com_ptr<NamedValues> object);

} // namespace host
