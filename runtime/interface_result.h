// An interface as the result of an export: a VARIANT of type VT_DISPATCH with one reference.
#pragma once

#include "../scriptdata/variant.h"

namespace vh {

// Into a variant that is clear. The type is set even when the object has no IDispatch.
inline HRESULT PutDispatch(IUnknown* object, VARIANT* result)
{
    result->vt = VT_DISPATCH;
    result->pdispVal = nullptr;
    return object->QueryInterface(iid_of<IDispatch>, reinterpret_cast<void**>(&result->pdispVal));
}

// Clears the variant first; `missing` without an object.
inline HRESULT InterfaceResult(IUnknown* object, VARIANT* result, HRESULT missing = E_FAIL)
{
    const HRESULT code = ClearResult(result);
    if (FAILED(code))
        return code;
    return object ? PutDispatch(object, result) : missing;
}

} // namespace vh
