#include "named_values.h"

namespace host {

HRESULT NamedValues::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

HRESULT NamedValues::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    for (UINT i = 0; i < count; ++i)
        ids[i] = DISPID_UNKNOWN;
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        if (count == 1 && m_values[i].first == names[0]) {
            ids[0] = static_cast<DISPID>(i + 1);
            return S_OK;
        }
    }
    return DISP_E_UNKNOWNNAME;
}

HRESULT NamedValues::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*)
{
    if (id < 1 || static_cast<std::size_t>(id) > m_values.size() || !(flags & DISPATCH_PROPERTYGET))
        return DISP_E_MEMBERNOTFOUND;
    return result ? VariantCopy(result, &m_values[static_cast<std::size_t>(id) - 1].second.get()) : S_OK;
}

vh::variant ObjectValue(vh::com_ptr<NamedValues> object)
{
    vh::variant value;
    value.get().vt = VT_DISPATCH;
    value.get().pdispVal = object.detach();
    return value;
}

} // namespace host
