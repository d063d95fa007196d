// Single values of a product file, each with the rules that it has to keep. Wrong ones are faults of their place.
#pragma once

#include "json_reader.h"

namespace vh::engine {

// In braces; the result is in upper case.
std::wstring Identifier(const JsonPlace& at);
std::wstring Version(const JsonPlace& at);
WORD Language(const JsonPlace& at);
// A name that stands in item paths and file paths.
std::wstring PlainName(const JsonPlace& at);
// A path with patterns.
std::wstring PathPattern(const JsonPlace& at);
// A path below a folder that is known already, with backslashes; it may be empty, and so is a wrong one.
std::wstring Below(const JsonPlace& at);
// The flags of a file or group, added to those that it starts with.
unsigned Flags(const JsonPlace& at, unsigned start);
// Bytes from hexadecimal digits.
std::string Bytes(const JsonPlace& at);

} // namespace vh::engine
