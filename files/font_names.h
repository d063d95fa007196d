// The names in a TrueType file. Platform-free; all numbers in the file have their high byte first.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vh {

enum class font_name_status { found, not_found, too_long };

// Where the name that was looked for stands, and its length in bytes.
struct font_name_place {
    std::uint64_t offset = 0;
    std::uint32_t length = 0;
};

namespace detail {

template <std::size_t Bytes>
constexpr std::uint32_t BigEndian(std::span<const std::byte> bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < Bytes; ++i)
        value = value << 8 | std::to_integer<std::uint32_t>(bytes[at + i]);
    return value;
}

// `read(offset, bytes)` fills the bytes from the file, or answers false. It is asked for what the tables lead to and
// for nothing else, at most 65,535 records of each of two tables.
template <class Read>
bool FindNameTable(Read&& read, std::uint64_t& table)
{
    std::array<std::byte, 12> header{};
    if (!read(std::uint64_t{0}, std::span(header)))
        return false;
    const std::uint32_t tables = BigEndian<2>(header, 4);
    if (BigEndian<2>(header, 0) != 1 || BigEndian<2>(header, 2) != 0)
        return false;
    constexpr std::uint32_t name_tag = 0x6E616D65;
    std::array<std::byte, 16> record{};
    for (std::uint32_t i = 0; i < tables; ++i) {
        if (!read(header.size() + std::uint64_t{i} * record.size(), std::span(record)))
            return false;
        if (BigEndian<4>(record, 0) == name_tag) {
            table = BigEndian<4>(record, 8);
            return true;
        }
    }
    return false;
}

} // namespace detail

// The first name of the Windows platform with this number and language.
template <class Read>
bool FindFontName(Read&& read, std::int32_t name, std::int32_t language, font_name_place& place)
{
    constexpr std::uint32_t windows = 3;
    using detail::BigEndian;
    std::uint64_t table = 0;
    std::array<std::byte, 6> header{};
    if (!detail::FindNameTable(read, table) || !read(table, std::span(header)))
        return false;
    const std::uint32_t records = BigEndian<2>(header, 2);
    std::array<std::byte, 12> record{};
    for (std::uint32_t i = 0; i < records; ++i) {
        if (!read(table + header.size() + std::uint64_t{i} * record.size(), std::span(record)))
            return false;
        if (BigEndian<2>(record, 0) != windows || BigEndian<2>(record, 4) != static_cast<std::uint32_t>(language) ||
            BigEndian<2>(record, 6) != static_cast<std::uint32_t>(name))
            continue;
        place = {table + BigEndian<2>(header, 4) + BigEndian<2>(record, 10), BigEndian<2>(record, 8)};
        return true;
    }
    return false;
}

// The same with the name itself, unless it has more than `most` bytes: then `length` says how many.
template <class Unit, class Read>
font_name_status ReadFontName(Read&& read, std::int32_t name, std::int32_t language, std::int32_t most,
                              std::basic_string<Unit>& text, std::int32_t& length)
{
    font_name_place place;
    if (!FindFontName(read, name, language, place))
        return font_name_status::not_found;
    length = static_cast<std::int32_t>(place.length);
    if (length > most)
        return font_name_status::too_long;
    std::string bytes(place.length, '\0');
    if (!read(place.offset, std::as_writable_bytes(std::span(bytes))))
        return font_name_status::not_found;
    text.resize(place.length / 2);
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<Unit>(detail::BigEndian<2>(std::as_bytes(std::span(bytes)), 2 * i));
    return font_name_status::found;
}

} // namespace vh
