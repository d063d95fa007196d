// The one reader of product files, for a run and for a check.
#pragma once

#include "json_reader.h"
#include "product.h"

namespace vh::engine {

// What a text with patterns is for: a path, whose patterns all have to be known; a text that may hold "<" for another
// reason; one for people, which may name strings as well.
enum class PatternKind { path, text, display };

struct PatternUse {
    std::string place;
    PatternKind kind;
    std::wstring text;
};

// What the file describes. Where its faults are collected, the product lacks what is wrong. Texts with patterns are
// added to `uses`, which may be null, as may `pack`.
std::unique_ptr<Product> ReadProduct(const JsonFile& json, std::vector<PatternUse>* uses = nullptr,
                                     const Pack* pack = nullptr);

} // namespace vh::engine
