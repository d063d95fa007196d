// Identifiers as text, turned into GUIDs by the compiler.
#pragma once

#include <cstddef>

#include <windows.h>

#include <oaidl.h>

namespace vh {

namespace detail {

consteval unsigned HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return static_cast<unsigned>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<unsigned>(c - 'A') + 10;
    if (c >= 'a' && c <= 'f')
        return static_cast<unsigned>(c - 'a') + 10;
    throw "not a hexadecimal digit";
}

consteval unsigned long long HexNumber(const char* text, std::size_t digits)
{
    unsigned long long value = 0;
    for (std::size_t i = 0; i < digits; ++i)
        value = value << 4 | HexDigit(text[i]);
    return value;
}

} // namespace detail

// From "{35A81AC2-7EF6-4B20-85A4-4BADCC12BEBC}".
consteval GUID Guid(const char (&text)[39])
{
    if (text[0] != '{' || text[9] != '-' || text[14] != '-' || text[19] != '-' || text[24] != '-' || text[37] != '}')
        throw "not an identifier in braces";
    GUID id{};
    id.Data1 = static_cast<unsigned long>(detail::HexNumber(text + 1, 8));
    id.Data2 = static_cast<unsigned short>(detail::HexNumber(text + 10, 4));
    id.Data3 = static_cast<unsigned short>(detail::HexNumber(text + 15, 4));
    for (std::size_t i = 0; i < 2; ++i)
        id.Data4[i] = static_cast<unsigned char>(detail::HexNumber(text + 20 + 2 * i, 2));
    for (std::size_t i = 0; i < 6; ++i)
        id.Data4[2 + i] = static_cast<unsigned char>(detail::HexNumber(text + 25 + 2 * i, 2));
    return id;
}

// The identifier of an interface: its own `iid`, or the platform's for platform interfaces.
template <class Interface>
constexpr GUID iid_of = Interface::iid;

template <>
inline constexpr GUID iid_of<IUnknown> = Guid("{00000000-0000-0000-C000-000000000046}");
template <>
inline constexpr GUID iid_of<IDispatch> = Guid("{00020400-0000-0000-C000-000000000046}");

inline constexpr GUID null_service = Guid("{00000000-0000-0000-0000-000000000000}");

} // namespace vh
