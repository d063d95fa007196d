// The base of all engine objects: counting, recording and failing of calls, exceptions turned into codes.
#pragma once

#include <memory>
#include <new>
#include <string>

#include "../scriptdata/com_object.h"
#include "../scriptdata/variant.h"
#include "core.h"
#include "dispatch_table.h"

namespace vh::engine {

// Arguments as they stand in a recorded line.
inline std::wstring ArgumentText(BSTR text)
{
    return text ? L"\"" + std::wstring(text, SysStringLen(text)) + L"\"" : L"null";
}
inline std::wstring ArgumentText(LONG64 number) { return Number(number); }
inline std::wstring ArgumentText(long number) { return Number(number); }
inline std::wstring ArgumentText(unsigned long number) { return Number(static_cast<int64_t>(number)); }
inline std::wstring ArgumentText(short number) { return Number(number); }
inline std::wstring ArgumentText(const Item& item) { return L"\"" + item.Path() + L"\""; }
std::wstring ArgumentText(const VARIANT& value);
// The name of an engine interface, or the identifier.
std::wstring ArgumentText(const GUID& id);

template <class... Arguments>
std::wstring CallText(const char* method, const Arguments&... arguments)
{
    std::wstring line = ToWide(method) + L"(";
    [[maybe_unused]] const char* separator = "";
    ((line += ToWide(separator) + ArgumentText(arguments), separator = ", "), ...);
    return line + L")";
}

// One engine call: noted when made, done when given its body, unless it is to fail.
class EngineCall {
public:
    template <class... Arguments>
    EngineCall(Core& core, const char* method, const Arguments&... arguments)
        : m_core(core),
          m_code(core.calls.Enter(core.calls.NeedsText() ? CallText(method, arguments...) : std::wstring()))
    {
    }
    EngineCall(const EngineCall&) = delete;
    EngineCall& operator=(const EngineCall&) = delete;
    ~EngineCall() { m_core.calls.Leave(); }

    template <class Body>
    HRESULT operator()(Body&& body) const
    {
        if (m_code != S_OK)
            return m_code;
        try {
            return body();
        } catch (const engine_error& error) {
            m_core.lastError = error.message();
            m_core.Report(error.message());
            return error.code();
        } catch (const com_exception& error) {
            return error.code();
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (const std::exception& error) {
            m_core.Report({Severity::error, {}, ToWide(error.what()), E_UNEXPECTED});
            return E_UNEXPECTED;
        }
    }

private:
    Core& m_core;
    HRESULT m_code;
};

// Interfaces that the engine's own objects use among each other have identifiers that begin like this one;
// queries for them are no calls from outside and are not recorded.
inline bool IsInternal(const GUID& id) { return id.Data1 == 0x76683031; }

// Self may give the names that scripts use in `static constexpr dispatch_entry<Self> names[]`.
template <class Self, class First, class... More>
class engine_object : public com_object<First, More...> {
    using base = com_object<First, More...>;

public:
    explicit engine_object(std::shared_ptr<Core> core) : m_core(std::move(core)) { ++m_core->live; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        if (id == iid_of<IUnknown> || IsInternal(id))
            return base::QueryInterface(id, object);
        if (object)
            *object = nullptr;
        return Call("IUnknown.QueryInterface", id)([&] { return base::QueryInterface(id, object); });
    }

    // The four of IDispatch, for whichever interface has them.
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count)
    {
        if (!count)
            return E_POINTER;
        *count = 0;
        return S_OK;
    }
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* wanted, UINT count, LCID, DISPID* ids)
    {
        if constexpr (requires { Self::names; })
            return FindDispatchName(Self::names, wanted, count, ids);
        else
            return FindDispatchName(std::span<const dispatch_entry<Self>>(), wanted, count, ids);
    }
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                             VARIANT* result, EXCEPINFO*, UINT*)
    {
        if constexpr (requires { Self::names; })
            return InvokeDispatchName(Self::names, static_cast<Self&>(*this), id, flags, parameters, result);
        else
            return DISP_E_MEMBERNOTFOUND;
    }

protected:
    ~engine_object() override { --m_core->live; }

    template <class... Arguments>
    EngineCall Call(const char* method, const Arguments&... arguments) const
    {
        return EngineCall(*m_core, method, arguments...);
    }
    Core& core() const { return *m_core; }
    const std::shared_ptr<Core>& shared_core() const { return m_core; }

private:
    std::shared_ptr<Core> m_core;
};

// Results of getters; a null out pointer is an error.
inline HRESULT GiveText(BSTR* out, std::wstring_view text)
{
    if (!out)
        return E_POINTER;
    *out = bstr(text).detach();
    return S_OK;
}
template <class Value, class Given>
HRESULT Give(Value* out, Given given)
{
    if (!out)
        return E_POINTER;
    *out = static_cast<Value>(given);
    return S_OK;
}
inline HRESULT GiveTruth(VARIANT_BOOL* out, bool truth) { return Give(out, truth ? VARIANT_TRUE : VARIANT_FALSE); }
template <class Interface, class Object>
HRESULT GiveObject(Interface** out, com_ptr<Object> object)
{
    if (!out)
        return E_POINTER;
    *out = object.detach();
    return S_OK;
}
// A one-dimensional array of texts, from 0.
HRESULT GiveTexts(VARIANT* out, const std::vector<std::wstring>& texts);
HRESULT GiveTexts(SAFEARRAY** out, const std::vector<std::wstring>& texts);
HRESULT GiveNumbers(VARIANT* out, const std::vector<long>& numbers);

inline std::wstring TextOf(BSTR text) { return text ? std::wstring(text, SysStringLen(text)) : std::wstring(); }

} // namespace vh::engine
