// Names that scripts call on engine objects, one table for each class, without a type library.
#pragma once

#include <span>
#include <string>

#include "../scriptdata/variant.h"
#include "text.h"

namespace vh::engine {

// One call of a script: its arguments in their order, and where the result goes.
class dispatch_call {
public:
    dispatch_call(WORD flags, const DISPPARAMS& parameters, VARIANT* result)
        : m_put(flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)), m_parameters(parameters), m_result(result)
    {
    }

    // A property is written; the value is the last argument.
    bool put() const { return m_put; }
    std::size_t count() const { return m_parameters.cArgs; }
    // Missing arguments are empty.
    const VARIANT& at(std::size_t i) const
    {
        static const VARIANT none{};
        return i < count() ? m_parameters.rgvarg[count() - 1 - i] : none;
    }
    bstr text(std::size_t i) const
    {
        variant copy;
        VariantCopyInd(copy.put(), const_cast<VARIANT*>(&at(i)));
        if (copy.type() == VT_EMPTY || FAILED(copy.change(VT_BSTR)))
            return bstr(L"");
        return bstr(copy.text());
    }
    long number(std::size_t i) const
    {
        variant copy;
        VariantCopyInd(copy.put(), const_cast<VARIANT*>(&at(i)));
        return FAILED(copy.change(VT_I4)) ? 0 : copy.get().lVal;
    }
    HRESULT give(variant value) const
    {
        if (m_result)
            value.detach(m_result);
        return S_OK;
    }
    HRESULT give(com_ptr<IDispatch> object) const
    {
        if (!m_result)
            return S_OK;
        VariantInit(m_result);
        m_result->vt = VT_DISPATCH;
        m_result->pdispVal = object.detach();
        return S_OK;
    }

private:
    bool m_put;
    const DISPPARAMS& m_parameters;
    VARIANT* m_result;
};

template <class Object>
struct dispatch_entry {
    const wchar_t* name;
    HRESULT (*invoke)(Object& object, const dispatch_call& call);
    bool isDefault = false;
};

template <class Table>
HRESULT FindDispatchName(const Table& table, LPOLESTR* wanted, UINT count, DISPID* ids)
{
    if (!wanted || !ids || !count)
        return E_INVALIDARG;
    for (UINT i = 0; i < count; ++i)
        ids[i] = DISPID_UNKNOWN;
    DISPID id = 0;
    for (const auto& entry : table) {
        ++id;
        if (SameText(entry.name, wanted[0])) {
            ids[0] = id;
            return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
        }
    }
    return DISP_E_UNKNOWNNAME;
}

template <class Table, class Object>
HRESULT InvokeDispatchName(const Table& table, Object& object, DISPID id, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result)
{
    if (!parameters)
        return E_POINTER;
    const dispatch_call call(flags, *parameters, result);
    DISPID at = 0;
    for (const auto& entry : table) {
        ++at;
        if (id == at || (id == DISPID_VALUE && entry.isDefault))
            return entry.invoke(object, call);
    }
    return DISP_E_MEMBERNOTFOUND;
}

// Table entries for the usual getters and setters, by their methods.
template <auto Getter, class Object>
HRESULT GetProperty(Object& object, const dispatch_call& call)
{
    return [&]<class Class, class Out>(HRESULT (STDMETHODCALLTYPE Class::*)(Out*)) {
        Out out{};
        const HRESULT code = (object.*Getter)(&out);
        if (FAILED(code))
            return code;
        if constexpr (std::is_same_v<Out, BSTR>) {
            bstr text;
            text.attach(out);
            return call.give(variant(std::move(text)));
        } else if constexpr (std::is_pointer_v<Out>) {
            com_ptr<std::remove_pointer_t<Out>> held;
            held.attach(out);
            return call.give(held.template query<IDispatch>());
        } else if constexpr (std::is_same_v<Out, VARIANT>) {
            variant value;
            value.get() = out;
            return call.give(std::move(value));
        } else {
            return call.give(variant(static_cast<long>(out)));
        }
    }(Getter);
}

template <auto Getter, auto Setter, class Object>
HRESULT Property(Object& object, const dispatch_call& call)
{
    if (!call.put())
        return GetProperty<Getter>(object, call);
    return [&]<class Class, class In>(HRESULT (STDMETHODCALLTYPE Class::*setter)(In)) {
        if constexpr (std::is_same_v<In, BSTR>)
            return (object.*setter)(call.text(0).get());
        else
            return (object.*setter)(static_cast<In>(call.number(0)));
    }(Setter);
}

} // namespace vh::engine
