#include "script_object.h"

#include "script_value.h"

namespace host {

namespace {

std::optional<DISPID> IdOf(IDispatch* object, const std::wstring& name)
{
    std::wstring text = name;
    wchar_t* names = text.data();
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(object->GetIDsOfNames(GUID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id)))
        return std::nullopt;
    return id;
}

} // namespace

std::optional<vh::variant> Property(IDispatch* object, const std::wstring& name)
{
    const std::optional<DISPID> id = object ? IdOf(object, name) : std::nullopt;
    if (!id)
        return std::nullopt;
    DISPPARAMS none{};
    vh::variant value;
    if (FAILED(object->Invoke(*id, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, value.put(), nullptr,
                              nullptr)))
        return std::nullopt;
    return value;
}

std::optional<std::vector<vh::variant>> ArrayOf(const VARIANT& given)
{
    const VARIANT& value = Plain(given);
    std::vector<vh::variant> elements;
    if (value.vt & VT_ARRAY) {
        vh::variant copy = CopyOf(value);
        const vh::safe_array array(copy);
        for (long i = array.first(); i <= array.last(); ++i)
            elements.push_back(array.at(i));
        return elements;
    }
    if (value.vt != VT_DISPATCH || !value.pdispVal || !IdOf(value.pdispVal, L"push"))
        return std::nullopt;
    const std::optional<vh::variant> length = Property(value.pdispVal, L"length");
    const int32_t count = length ? ToInt(length->get()) : 0;
    for (int32_t i = 0; i < count; ++i)
        elements.push_back(Property(value.pdispVal, std::to_wstring(i)).value_or(vh::variant()));
    return elements;
}

vh::variant SafeArrayOf(const std::vector<vh::variant>& elements)
{
    vh::safe_array array(SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size())));
    if (!array)
        vh::ThrowOutOfMemory();
    for (std::size_t i = 0; i < elements.size(); ++i) {
        auto index = static_cast<LONG>(i);
        vh::ThrowIfFailed(SafeArrayPutElement(array.get(), &index, const_cast<VARIANT*>(&elements[i].get())));
    }
    vh::variant holder;
    holder.get().vt = VT_ARRAY | VT_VARIANT;
    holder.get().parray = array.detach();
    return holder;
}

} // namespace host
