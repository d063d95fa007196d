#include "script_value.h"

#include <cmath>
#include <cstdlib>
#include <cwchar>

#include "text.h"

namespace host {

namespace {

constexpr double two_53 = 9007199254740992.0;

int64_t FromDouble(double number)
{
    if (!(std::fabs(number) <= 9.2e18))
        throw script_error(L"a number is out of range");
    return static_cast<int64_t>(number);
}

int64_t FromText(const std::wstring& text)
{
    wchar_t* end = nullptr;
    const bool hex = text.size() > 2 && text[0] == L'0' && (text[1] == L'x' || text[1] == L'X');
    const int64_t number =
        hex ? static_cast<int64_t>(std::wcstoull(text.c_str(), &end, 16)) : std::wcstoll(text.c_str(), &end, 10);
    if (text.empty() || *end != L'\0')
        throw script_error(L"a number is wanted, not \"" + text + L"\"");
    return number;
}

vh::variant Changed(const VARIANT& value, VARTYPE type, const wchar_t* complaint)
{
    vh::variant changed;
    if (FAILED(VariantChangeTypeEx(&changed.get(), const_cast<VARIANT*>(&value), LOCALE_INVARIANT, 0, type)))
        throw script_error(complaint);
    return changed;
}

} // namespace

script_error::script_error(const std::wstring& text) : std::runtime_error(Utf8(text)) {}

const VARIANT& Plain(const VARIANT& value)
{
    const VARIANT* plain = &value;
    while (plain->vt == (VT_BYREF | VT_VARIANT))
        plain = plain->pvarVal;
    return *plain;
}

vh::variant CopyOf(const VARIANT& value)
{
    vh::variant copy;
    vh::ThrowIfFailed(VariantCopyInd(&copy.get(), const_cast<VARIANT*>(&Plain(value))));
    return copy;
}

bool IsAbsent(const VARIANT& value)
{
    const VARTYPE type = Plain(value).vt;
    return type == VT_EMPTY || type == VT_NULL || type == VT_ERROR;
}

int64_t ToInt64(const VARIANT& given)
{
    const VARIANT& value = Plain(given);
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
        return 0;
    case VT_BOOL:
        return value.boolVal ? 1 : 0;
    case VT_I4:
        return value.lVal;
    case VT_I8:
        return value.llVal;
    case VT_R8:
        return FromDouble(value.dblVal);
    case VT_BSTR:
        return FromText(std::wstring(value.bstrVal ? value.bstrVal : L"", SysStringLen(value.bstrVal)));
    default:
        break;
    }
    return FromDouble(Changed(value, VT_R8, L"a number is wanted").get().dblVal);
}

int32_t ToInt(const VARIANT& value) { return static_cast<int32_t>(static_cast<uint32_t>(ToInt64(value))); }

std::wstring ToText(const VARIANT& given)
{
    const VARIANT& value = Plain(given);
    if (IsAbsent(value))
        return {};
    if (value.vt == VT_BOOL)
        return value.boolVal ? L"true" : L"false";
    return std::wstring(Changed(value, VT_BSTR, L"a text is wanted").text());
}

vh::variant FromInt64(int64_t number)
{
    if (number >= INT32_MIN && number <= INT32_MAX)
        return vh::variant(static_cast<long>(number));
    if (std::fabs(static_cast<double>(number)) >= two_53)
        return vh::variant(std::to_wstring(number).c_str());
    vh::variant wide;
    wide.get().vt = VT_R8;
    wide.get().dblVal = static_cast<double>(number);
    return wide;
}

} // namespace host
