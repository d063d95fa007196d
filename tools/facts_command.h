// vhtool facts: what the library tells about the machine that it runs on.
#pragma once

#include <string>

namespace tools {

// Loads `library` and prints each fact that the machine answers, as an aligned table or as one JSON object.
// Throws std::runtime_error for a library that can't be loaded or that lacks an export.
int PrintFacts(const std::wstring& library, bool json);

} // namespace tools
