#include "text_table.h"

#include <vector>

#include "text.h"

namespace vh::engine {

namespace {

constexpr int deepest = 32;
constexpr std::size_t longest = 1'000'000;

// What a '<' opens. No name holds '<' or '>': without that rule each of many nested patterns is looked up whole.
struct Pattern {
    std::size_t start;
    bool isName = true;
};

// `budget` bounds the replacements of one whole substitution.
std::wstring Substitute(std::wstring_view text, const TextLookup& lookup, int depth, std::size_t& budget)
{
    std::wstring result;
    std::vector<Pattern> open;
    for (wchar_t c : text) {
        result += c;
        if (c == L'<') {
            open.push_back({result.size()});
            continue;
        }
        if (c != L'>' || open.empty())
            continue;
        const Pattern pattern = open.back();
        open.pop_back();
        const auto name = std::wstring_view(result).substr(pattern.start, result.size() - pattern.start - 1);
        const std::optional<std::wstring> found =
            pattern.isName && depth < deepest && budget ? lookup(name) : std::nullopt;
        bool holdsBracket = !found;
        if (found) {
            --budget;
            const std::wstring value = Substitute(*found, lookup, depth + 1, budget);
            if (result.size() + value.size() <= longest)
                result.replace(pattern.start - 1, std::wstring::npos, value);
            holdsBracket = result.find_first_of(L"<>", pattern.start - 1) != std::wstring::npos;
        }
        if (holdsBracket && !open.empty())
            open.back().isName = false;
    }
    return result;
}

} // namespace

const std::wstring* TextTable::Find(std::wstring_view name) const
{
    const auto found = m_variables.find(Upper(name));
    return found == m_variables.end() ? nullptr : &found->second.value;
}

bool TextTable::Set(std::wstring_view name, std::wstring_view value)
{
    Variable& variable = m_variables[Upper(name)];
    if (variable.fixed)
        return false;
    if (variable.name.empty())
        variable.name = name;
    variable.value = value;
    return true;
}

void TextTable::Protect(std::wstring_view name, bool on)
{
    Variable& variable = m_variables[Upper(name)];
    if (variable.name.empty())
        variable.name = name;
    variable.fixed = on;
}

std::wstring SubstituteText(std::wstring_view text, const TextLookup& lookup)
{
    std::size_t budget = 10'000;
    return Substitute(text, lookup, 0, budget);
}

} // namespace vh::engine
