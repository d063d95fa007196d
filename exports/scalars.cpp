// Bytes, numbers, arrays and formatted text for scripts.
#include "vhrt/scalars.h"

#include <array>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <string>

#include "../scriptdata/format.h"
#include "../scriptdata/stringx.h"
#include "../scriptdata/variant.h"

namespace {

constexpr int32_t source_too_small = -3;
constexpr int32_t index_beyond = -4;
constexpr int32_t format_failed = -5;
constexpr std::size_t format_slots = 16;

// The longest text of a double with two decimals, and room.
constexpr std::size_t longest_double = 340;

// Types that go into a format as a 32-bit integer; all others go as text.
constexpr bool IsNumber(VARTYPE type)
{
    switch (type) {
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_BOOL:
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
        return true;
    default:
        return false;
    }
}

// The argument slots of one format call, and the texts that some of them point to.
struct format_arguments {
    std::array<int64_t, format_slots> slots{};
    std::array<stringx, format_slots> texts;

    void Set(std::size_t slot, vh::variant& value)
    {
        const auto type = static_cast<VARTYPE>(value.type() & ~VT_BYREF);
        vh::variant changed;
        const VARTYPE wanted = IsNumber(type) ? static_cast<VARTYPE>(VT_I4) : static_cast<VARTYPE>(VT_BSTR);
        vh::ThrowIfFailed(VariantChangeType(&changed.get(), &value.get(), 0, wanted));
        if (wanted == VT_I4) {
            slots[slot] = changed.get().lVal;
        } else {
            texts[slot] = changed.text();
            slots[slot] = reinterpret_cast<int64_t>(texts[slot].c_str());
        }
    }
};

SAFEARRAY* ArrayOf(const VARIANT& holder)
{
    if (!(holder.vt & VT_ARRAY))
        vh::ThrowIfFailed(E_INVALIDARG);
    SAFEARRAY* array = (holder.vt & VT_BYREF) ? *holder.pparray : holder.parray;
    if (array && SafeArrayGetDim(array) != 1)
        vh::ThrowIfFailed(E_INVALIDARG);
    return array;
}

void Collect(const VARIANT& holder, format_arguments& arguments)
{
    vh::safe_array array(ArrayOf(holder));
    // Used, not taken over.
    struct lend {
        vh::safe_array& array;
        ~lend() { static_cast<void>(array.detach()); }
    } lent{array};

    const long last = array.last();
    for (long index = array.first(); index <= last; ++index) {
        if (index < 0 || static_cast<std::size_t>(index) >= format_slots)
            vh::ThrowIfFailed(E_INVALIDARG);
        vh::variant value = array.at(index);
        arguments.Set(static_cast<std::size_t>(index), value);
    }
}

} // namespace

int32_t _CopyBytes(void* destination, uint32_t destinationOffset, uint32_t destinationSize, const void* source,
                   uint32_t sourceOffset, uint32_t sourceSize, uint32_t count)
{
    // The subtractions wrap, so an offset beyond its size passes.
    if (count > destinationSize - destinationOffset)
        return static_cast<int32_t>(destinationOffset + count);
    if (count > sourceSize - sourceOffset)
        return source_too_small;
    // From the lowest index up: an overlapping copy repeats bytes.
    auto* to = static_cast<volatile uint8_t*>(destination) + destinationOffset;
    const auto* from = static_cast<const volatile uint8_t*>(source) + sourceOffset;
    for (uint32_t i = 0; i < count; ++i)
        to[i] = from[i];
    return 0;
}

int32_t _GetByte(const void* buffer, uint32_t size, uint32_t index, int32_t* value)
{
    // An index equal to the size is accepted.
    if (index > size)
        return index_beyond;
    // Widened with its sign.
    const int32_t unsigned_byte = static_cast<const uint8_t*>(buffer)[index];
    *value = unsigned_byte < 0x80 ? unsigned_byte : unsigned_byte - 0x100;
    return 0;
}

int32_t _SetByte(void* buffer, uint32_t size, uint32_t index, int32_t value)
{
    if (index > size)
        return index_beyond;
    static_cast<uint8_t*>(buffer)[index] = static_cast<uint8_t>(value);
    return 0;
}

int32_t _Divide(int32_t numerator, int32_t denominator, int32_t precision, wchar_t* result, wchar_t* decimalPoint)
{
    const double quotient = static_cast<double>(numerator) / static_cast<double>(denominator);
    std::wstring text(longest_double + static_cast<std::size_t>(precision > 0 ? precision : 0), L'\0');
    vh::FormatText(text.data(), text.size(), L"%.*f", static_cast<int>(precision), quotient);
    std::wcscpy(result, text.c_str());
    std::wcscpy(decimalPoint, stringx(localeconv()->decimal_point).c_str());
    return 0;
}

int32_t _FloatingPointOperation(const wchar_t* first, const wchar_t* second, wchar_t operation, wchar_t* result)
{
    const double a = std::wcstod(first ? first : L"", nullptr);
    const double b = std::wcstod(second ? second : L"", nullptr);
    double value = 0;
    switch (operation) {
    case L'*':
        value = a * b;
        break;
    case L'+':
        value = a + b;
        break;
    case L'-':
        value = a - b;
        break;
    case L'/':
        value = a / b;
        break;
    default:
        return E_INVALIDARG;
    }
    std::array<wchar_t, longest_double> text;
    vh::FormatText(text.data(), text.size(), L"%.2f", value);
    std::wcscpy(result, text.data());
    return 0;
}

int32_t _CompareDWORD(uint32_t first, uint32_t second) { return first > second ? 1 : first < second ? -1 : 0; }

int32_t _CHARArrayToWCHARArray(wchar_t** destination, const char* const* source, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        // The terminator gets no room: destinations come zero-filled, and the failure report is ignored.
        const auto room = static_cast<int>(std::strlen(source[i]));
        MultiByteToWideChar(CP_ACP, 0, source[i], -1, destination[i], room);
    }
    return 0;
}

char** _WCHARArrayToCHARArray(const wchar_t* const* source, int32_t count)
{
    char** array = new char*[static_cast<std::size_t>(count > 0 ? count : 0)];
    for (int32_t i = 0; i < count; ++i) {
        const int bytes = WideCharToMultiByte(CP_ACP, 0, source[i], -1, nullptr, 0, nullptr, nullptr);
        array[i] = new char[static_cast<std::size_t>(bytes > 0 ? bytes : 1)]{};
        WideCharToMultiByte(CP_ACP, 0, source[i], -1, array[i], bytes, nullptr, nullptr);
    }
    return array;
}

int32_t _DeleteCHARArray(char** array)
{
    // The texts stay: scripts may still hold them.
    delete[] array;
    return 0;
}

int32_t _DoSprintf(wchar_t* buffer, int32_t size, const wchar_t* format, VARIANT* arguments)
{
    format_arguments prepared;
    try {
        Collect(*arguments, prepared);
    } catch (const vh::com_exception&) {
        return -1;
    }
    if (!buffer || size <= 0)
        return format_failed;
    // On this platform an argument list is its slots in a row.
    const int written = vh::FormatTextV(buffer, static_cast<std::size_t>(size), format ? format : L"",
                                        reinterpret_cast<va_list>(prepared.slots.data()));
    return written < 0 ? format_failed : written;
}

int32_t IsEmpty(const VARIANT* value) { return value->vt == VT_EMPTY; }

int32_t IsObject(const VARIANT* value) { return value->vt == VT_DISPATCH && value->pdispVal != nullptr; }
