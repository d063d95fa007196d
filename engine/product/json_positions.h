// From places in a JSON document to lines and columns, in one pass over its text.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vh::engine {

// Counted from 1, columns in characters; 0 when unknown.
struct JsonPosition {
    unsigned line = 0;
    unsigned column = 0;
};

// A key as one part of a JSON pointer.
std::string PointerPart(std::string_view key);
// Where a byte of the text stands.
JsonPosition PositionOf(std::string_view text, std::size_t byte);

struct JsonScan {
    // Pointers of the keys that come a second time in their object, with the place of that second key.
    std::vector<std::pair<std::string, JsonPosition>> twice;
    // Where the text is nested deeper than the bound; the pass ends there.
    JsonPosition tooDeep;
};

// Fills in where the values of these pointers begin. The text has to be valid up to the first place that is too deep.
JsonScan ScanJson(std::string_view text, int deepest, std::map<std::string, JsonPosition>& wanted);

} // namespace vh::engine
