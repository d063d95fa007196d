// Property bags: the only exports whose first argument is not the context but the bag.
#include "vhrt/bags.h"

#include "../Src/inc/engine.h"
#include "../scriptdata/late_windows.h"
#include "../scriptdata/results.h"
#include "../scriptdata/variant.h"

namespace {

// Reads on top of a start value and turns what comes into the wanted type. A value that can't be turned stays
// as it is, and the caller takes what lies in it.
HRESULT ReadAs(ISetupPropertyBag* bag, const wchar_t* name, VARTYPE wanted, vh::variant& value)
{
    if (!bag)
        return E_POINTER;
    const HRESULT code = bag->Read(vh::TextOrEmpty(name).get(), &value.get());
    if (FAILED(code))
        return code;
    value.change(wanted);
    return S_OK;
}

int32_t WriteValue(ISetupPropertyBag* bag, const wchar_t* name, VARIANT* value)
{
    if (!bag)
        return E_POINTER;
    return vh::FailureOnly(bag->Write(vh::TextOrEmpty(name).get(), value));
}

} // namespace

int32_t __VHRTGetPropertyBag(IStream** stream, ISetupPropertyBag** bag)
{
    if (!stream || !bag)
        return E_POINTER;
    *bag = nullptr;
    const HRESULT code = vh::late::get_interface_and_release_stream(*stream, vh::iid_of<ISetupPropertyBag>,
                                                                    reinterpret_cast<void**>(bag));
    if (FAILED(code))
        return code;
    *stream = nullptr;
    return S_OK;
}

int32_t __VHRTReleasePropertyBag(ISetupPropertyBag* bag)
{
    vh::com_ptr<ISetupPropertyBag> given_back;
    given_back.attach(bag);
    return static_cast<int32_t>(given_back.drop());
}

int32_t ReadNumberProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t* value)
{
    vh::variant number(0L);
    if (const HRESULT code = ReadAs(bag, name, VT_I4, number); FAILED(code))
        return code;
    *value = number.get().lVal;
    return 0;
}

int32_t ReadBoolProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t* value)
{
    vh::variant truth(false);
    if (const HRESULT code = ReadAs(bag, name, VT_BOOL, truth); FAILED(code))
        return code;
    *value = truth.get().boolVal == VARIANT_TRUE;
    return 0;
}

int32_t _ReadStringProperty(ISetupPropertyBag* bag, const wchar_t* name, wchar_t* buffer, int32_t* size)
{
    // A value that is no text even now counts as empty: its bits are no address to read from.
    vh::variant text(L"");
    if (const HRESULT code = ReadAs(bag, name, VT_BSTR, text); FAILED(code))
        return code;
    const auto needed = static_cast<int32_t>(text.text().size()) + 1;
    if (needed > *size) {
        *size = needed;
        return E_INVALIDARG;
    }
    vh::CopyOut(text.text(), buffer, *size);
    return 0;
}

int32_t ReadArrayProperty(ISetupPropertyBag* bag, const wchar_t* name, VARIANT* value)
{
    if (!bag || !value)
        return E_POINTER;
    vh::variant read;
    if (const HRESULT code = bag->Read(vh::TextOrEmpty(name).get(), read.put()); FAILED(code))
        return code;
    vh::ClearResult(value);
    read.detach(value);
    return 0;
}

int32_t WriteNumberProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t value)
{
    vh::variant number(static_cast<long>(value));
    return WriteValue(bag, name, &number.get());
}

int32_t WriteBoolProperty(ISetupPropertyBag* bag, const wchar_t* name, int32_t value)
{
    vh::variant truth(value != 0);
    return WriteValue(bag, name, &truth.get());
}

int32_t WriteStringProperty(ISetupPropertyBag* bag, const wchar_t* name, const wchar_t* text)
{
    vh::variant value(vh::View(text));
    return WriteValue(bag, name, &value.get());
}

int32_t WriteArrayProperty(ISetupPropertyBag* bag, const wchar_t* name, VARIANT* value)
{
    return WriteValue(bag, name, value);
}
