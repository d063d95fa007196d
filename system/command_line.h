// A command line taken apart into what runs and what it is given.
#pragma once

#include <string_view>

namespace vh {

template <class Unit>
struct command_parts {
    std::basic_string_view<Unit> target;
    std::basic_string_view<Unit> arguments;
};

// The target ends at the first blank outside quotes and loses one quote at each end.
template <class Unit>
constexpr command_parts<Unit> SplitCommandLine(std::basic_string_view<Unit> line)
{
    constexpr Unit quote = '"';
    const auto trimmed = [](std::basic_string_view<Unit> text) {
        const auto is_space = [](Unit c) { return c == ' ' || c == '\t' || c == '\n'; };
        while (!text.empty() && is_space(text.front()))
            text.remove_prefix(1);
        while (!text.empty() && is_space(text.back()))
            text.remove_suffix(1);
        return text;
    };
    std::size_t end = 0;
    for (bool quoted = false; end < line.size() && (quoted || line[end] != ' '); ++end)
        quoted ^= line[end] == quote;
    command_parts<Unit> parts{trimmed(line.substr(0, end)), trimmed(line.substr(end))};
    if (parts.target.starts_with(quote))
        parts.target.remove_prefix(1);
    if (parts.target.ends_with(quote))
        parts.target.remove_suffix(1);
    return parts;
}

} // namespace vh
