// Named texts and their substitution: "<NAME>" stands for a value, patterns may nest.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vh::engine {

// Variables by name; case does not count.
class TextTable {
public:
    struct Variable {
        std::wstring name;
        std::wstring value;
        bool fixed = false;
    };
    using Map = std::map<std::wstring, Variable>;

    const std::wstring* Find(std::wstring_view name) const;
    // False when the variable is protected.
    bool Set(std::wstring_view name, std::wstring_view value);
    // A variable that is not there yet is made, empty.
    void Protect(std::wstring_view name, bool on);
    const Map& All() const { return m_variables; }

private:
    Map m_variables;
};

using TextLookup = std::function<std::optional<std::wstring>(std::wstring_view name)>;

// Replaces the innermost patterns first, so that the text of one may be part of another's name; values are
// substituted in turn, to a depth of 32. Names that the look-up does not know stay as they are, and so does
// what would grow the text beyond a million characters.
std::wstring SubstituteText(std::wstring_view text, const TextLookup& lookup);

} // namespace vh::engine
