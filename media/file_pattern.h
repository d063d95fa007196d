// File patterns with "*" and "?", as scripts write them. Platform-free.
#pragma once

#include <cstddef>
#include <string_view>

namespace vh {

// "*" stands for any run of units, "?" for one. `same` compares two units. Linear in practice: only the last
// "*" is ever tried again.
template <class Unit, class Same>
constexpr bool MatchesWildcards(std::basic_string_view<Unit> text, std::basic_string_view<Unit> pattern, Same&& same)
{
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t star = pattern.npos;
    std::size_t retry = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == Unit('*')) {
            star = p++;
            retry = t;
        } else if (p < pattern.size() && (pattern[p] == Unit('?') || same(pattern[p], text[t]))) {
            ++p;
            ++t;
        } else if (star != pattern.npos) {
            p = star + 1;
            t = ++retry;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == Unit('*'))
        ++p;
    return p == pattern.size();
}

// The rules for file names on top: "*.*" is every name, and a name without a dot fits a pattern whose extension
// asks for nothing certain.
template <class Unit, class Same>
constexpr bool MatchesFilePattern(std::basic_string_view<Unit> name, std::basic_string_view<Unit> pattern, Same&& same)
{
    if (pattern.size() == 3 && pattern[0] == Unit('*') && pattern[1] == Unit('.') && pattern[2] == Unit('*'))
        return true;
    const std::size_t dot = pattern.rfind(Unit('.'));
    if (dot != pattern.npos && name.find(Unit('.')) == name.npos) {
        bool open = true;
        for (const Unit unit : pattern.substr(dot + 1))
            open = open && (unit == Unit('*') || unit == Unit('?'));
        if (open)
            pattern = pattern.substr(0, dot);
    }
    return MatchesWildcards(name, pattern, same);
}

} // namespace vh
