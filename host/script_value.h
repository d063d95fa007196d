// Script values to numbers and texts, and back.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "scriptdata/variant.h"

namespace host {

// What a script did wrong; the text goes back to the script as an error.
class script_error : public std::runtime_error {
public:
    explicit script_error(const std::wstring& text);
};

// The value behind references, as scripts of some engines pass variables.
const VARIANT& Plain(const VARIANT& value);

// A copy that holds no reference to the caller's variables.
vh::variant CopyOf(const VARIANT& value);

// Truths are 1 and 0, an absent value is 0; a text is read as a decimal or 0x number. Numbers above 32 bits
// wrap, so that 0x8004F084 is the code that it shows.
int32_t ToInt(const VARIANT& value);
int64_t ToInt64(const VARIANT& value);
// Null and undefined give no text.
bool IsAbsent(const VARIANT& value);
std::wstring ToText(const VARIANT& value);

// A number that scripts hold exactly: an integer, a double up to 2^53, and beyond that a decimal text, which
// ToInt64 reads back.
vh::variant FromInt64(int64_t number);

} // namespace host
