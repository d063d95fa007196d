// The lines of an INI document: sections, entries, and what is skipped. Platform-free; `Unit` is a byte or a
// 16-bit unit.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace vh {

enum class ini_line {
    end,
    section,
    entry,
    // A section's line without its bracket, or an entry before any section.
    broken
};

// Walks a text without copying it. Lines end in CR, LF or both; empty ones and those that begin with ";" are
// passed over. Nothing is trimmed.
template <class Unit>
class ini_reader {
public:
    using view = std::basic_string_view<Unit>;

    ini_reader(view text, view separator) : m_rest(text), m_separator(separator) {}

    ini_line next()
    {
        for (view line; take_line(line);) {
            if (line.empty() || line[0] == Unit(';'))
                continue;
            return line[0] == Unit('[') ? take_section(line) : take_entry(line);
        }
        return ini_line::end;
    }

    // Of the section or entry that `next` found; the name of a broken line is the line itself.
    view name() const { return m_name; }
    view value() const { return m_value; }

private:
    bool take_line(view& line)
    {
        if (m_rest.empty())
            return false;
        std::size_t end = 0;
        while (end < m_rest.size() && m_rest[end] != Unit('\r') && m_rest[end] != Unit('\n'))
            ++end;
        line = m_rest.substr(0, end);
        // The second half of a pair shows as one more empty line, which is passed over.
        m_rest.remove_prefix(end < m_rest.size() ? end + 1 : end);
        return true;
    }

    ini_line take_section(view line)
    {
        const std::size_t close = line.find(Unit(']'));
        m_value = {};
        m_name = line;
        if (close == view::npos)
            return ini_line::broken;
        m_name = line.substr(1, close - 1);
        m_in_section = true;
        return ini_line::section;
    }

    ini_line take_entry(view line)
    {
        m_name = line;
        if (!m_in_section)
            return ini_line::broken;
        const std::size_t at = line.find(m_separator);
        m_name = line.substr(0, at);
        // The value begins one unit behind the start of the separator, however long that is.
        m_value = at < line.size() ? line.substr(at + 1) : view();
        return ini_line::entry;
    }

    view m_rest;
    view m_separator;
    view m_name;
    view m_value;
    bool m_in_section = false;
};

// The units of UTF-16 text; half a unit at the end is dropped.
template <class Unit>
std::basic_string<Unit> UnitsOfUtf16(std::span<const std::byte> bytes, bool big_endian)
{
    static_assert(sizeof(Unit) == 2);
    std::basic_string<Unit> units(bytes.size() / 2, Unit(0));
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto first = std::to_integer<unsigned>(bytes[2 * i]);
        const auto second = std::to_integer<unsigned>(bytes[2 * i + 1]);
        units[i] = static_cast<Unit>(big_endian ? first << 8 | second : second << 8 | first);
    }
    return units;
}

} // namespace vh
