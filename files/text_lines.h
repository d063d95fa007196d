// Cuts lines out of a text file's content in memory. Platform-free; `Unit` is a byte or a 16-bit unit.
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

namespace vh {

// The content ends with a line end of our own and a NUL, so that the last line needs none and no search
// runs past the buffer.
template <class Unit>
struct text_line_end {
    static constexpr Unit units[] = {Unit('\r'), Unit('\n'), Unit(0)};
    static constexpr std::size_t room = sizeof(units);
};

template <class Unit>
constexpr bool IsLineEnd(Unit unit)
{
    return unit == Unit('\r') || unit == Unit('\n');
}

// What ends the search for a line's end: the line end itself, or a NUL. All of them are small, so that most
// units take one comparison.
template <class Unit>
constexpr bool EndsSearch(Unit unit)
{
    return static_cast<std::make_unsigned_t<Unit>>(unit) <= Unit('\r') && (IsLineEnd(unit) || !unit);
}

// Takes the line at `cursor` and moves behind its line end; any pair of CR and LF counts as one. `size` is the
// content in bytes, without what was appended. False at the end, at a NUL, which ends all reading, and for a
// blank line whose line end is the very end of the content.
template <class Unit>
bool TakeLine(const char* buffer, std::size_t size, const char*& cursor, std::basic_string_view<Unit>& line)
{
    if (cursor >= buffer + size)
        return false;
    const Unit* start = reinterpret_cast<const Unit*>(cursor);
    const Unit* end = start;
    while (!EndsSearch(*end))
        ++end;
    if (!*end)
        return false;

    const Unit* after = end;
    for (int i = 0; i < 2; ++i)
        if (IsLineEnd(*after))
            ++after;
    if (end == start && reinterpret_cast<const char*>(after) >= buffer + size)
        return false;
    line = {start, static_cast<std::size_t>(end - start)};
    cursor = reinterpret_cast<const char*>(after);
    return true;
}

} // namespace vh
