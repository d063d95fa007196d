// vhtool exports --types and --constants: what scripts can name, for editors and for people.
#pragma once

#include <string>

namespace tools {

// Prints declarations of all functions, services and constants in TypeScript, with what the library's headers in this
// folder say about the functions. Throws std::runtime_error when there are no headers.
int PrintTypes(const std::wstring& headers);

// Prints the constants as tables in Markdown.
int PrintConstants();

} // namespace tools
