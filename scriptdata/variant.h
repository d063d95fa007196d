// One owned VARIANT, and arrays in it.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "bstr.h"
#include "com_ptr.h"
#include "exception.h"

namespace vh {

class variant {
public:
    variant() { VariantInit(&m_value); }
    explicit variant(long number) : variant()
    {
        m_value.vt = VT_I4;
        m_value.lVal = number;
    }
    explicit variant(bstr text) : variant()
    {
        m_value.vt = VT_BSTR;
        m_value.bstrVal = text.detach();
    }
    explicit variant(bool truth) : variant()
    {
        m_value.vt = VT_BOOL;
        m_value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit variant(std::wstring_view text) : variant(bstr(text)) {}
    explicit variant(const wchar_t* text) : variant(bstr(text)) {}
    variant(variant&& other) noexcept : m_value(other.m_value) { VariantInit(&other.m_value); }
    variant(const variant& other) : variant()
    {
        ThrowIfFailed(VariantCopy(&m_value, const_cast<VARIANT*>(&other.m_value)));
    }
    variant& operator=(variant other) noexcept
    {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~variant() { VariantClear(&m_value); }

    VARTYPE type() const { return m_value.vt; }
    VARIANT& get() { return m_value; }
    const VARIANT& get() const { return m_value; }

    // The address for an out argument; what was held is cleared first.
    VARIANT* put()
    {
        VariantClear(&m_value);
        return &m_value;
    }
    // Hands the value to a caller's variant, whose old content is not looked at.
    void detach(VARIANT* target)
    {
        *target = m_value;
        VariantInit(&m_value);
    }

    HRESULT change(VARTYPE wanted) { return VariantChangeType(&m_value, &m_value, 0, wanted); }

    // The text of a VT_BSTR; empty for every other type.
    std::wstring_view text() const
    {
        if (m_value.vt != VT_BSTR || !m_value.bstrVal)
            return {};
        return {m_value.bstrVal, SysStringLen(m_value.bstrVal)};
    }

private:
    VARIANT m_value;
};

// Clears a caller's variant before it takes a result; there may be none.
inline HRESULT ClearResult(VARIANT* result) { return result ? VariantClear(result) : E_POINTER; }

// One owned SAFEARRAY.
class safe_array {
public:
    safe_array() = default;
    explicit safe_array(SAFEARRAY* owned) : m_array(owned) {}
    // Takes the array out of a variant; empty when it holds none.
    explicit safe_array(variant& holder)
    {
        VARIANT& value = holder.get();
        if ((value.vt & VT_ARRAY) && !(value.vt & VT_BYREF)) {
            m_array = value.parray;
            VariantInit(&value);
        }
    }
    safe_array(safe_array&& other) noexcept : m_array(std::exchange(other.m_array, nullptr)) {}
    safe_array& operator=(safe_array&& other) noexcept
    {
        std::swap(m_array, other.m_array);
        return *this;
    }
    ~safe_array()
    {
        if (m_array)
            SafeArrayDestroy(m_array);
    }

    SAFEARRAY* get() const { return m_array; }
    SAFEARRAY** put()
    {
        destroy();
        return &m_array;
    }
    [[nodiscard]] SAFEARRAY* detach() { return std::exchange(m_array, nullptr); }
    explicit operator bool() const { return m_array != nullptr; }

    // Bounds of the one dimension; an absent array has none.
    long first() const
    {
        long bound = 0;
        if (m_array && FAILED(SafeArrayGetLBound(m_array, 1, &bound)))
            throw safe_array_exception(E_INVALIDARG);
        return bound;
    }
    long last() const
    {
        long bound = -1;
        if (m_array && FAILED(SafeArrayGetUBound(m_array, 1, &bound)))
            throw safe_array_exception(E_INVALIDARG);
        return bound;
    }

    // The element as a variant, for arrays of VARIANT, BSTR and plain numbers alike.
    variant at(long index) const
    {
        variant element;
        check(read(index, element));
        return element;
    }

    // Visits the elements in their order; an answer other than 0 ends the walk and is the result. An absent array has
    // no elements; one of several dimensions, or of elements that can't be told, is a failure.
    template <class Visit>
    int32_t for_each(Visit&& visit) const
    {
        if (m_array && SafeArrayGetDim(m_array) != 1)
            return DISP_E_TYPEMISMATCH;
        const long end = last();
        for (long index = first(); index <= end; ++index) {
            variant element;
            const HRESULT code = read(index, element);
            if (code == E_OUTOFMEMORY)
                ThrowOutOfMemory();
            if (FAILED(code))
                return code;
            if (const int32_t result = visit(element))
                return result;
        }
        return 0;
    }

    // Ends the array now; a failure is raised.
    void destroy()
    {
        if (SAFEARRAY* array = std::exchange(m_array, nullptr))
            check(SafeArrayDestroy(array));
    }

private:
    static void check(HRESULT code)
    {
        if (FAILED(code))
            throw safe_array_exception(code);
    }

    HRESULT read(long index, variant& element) const
    {
        VARTYPE type = VT_EMPTY;
        HRESULT code = SafeArrayGetVartype(m_array, &type);
        if (FAILED(code))
            return code;
        VARIANT& value = element.get();
        if (type == VT_VARIANT)
            return SafeArrayGetElement(m_array, &index, &value);
        code = SafeArrayGetElement(m_array, &index, &value.llVal);
        if (SUCCEEDED(code))
            value.vt = type;
        return code;
    }

    SAFEARRAY* m_array = nullptr;
};

} // namespace vh
