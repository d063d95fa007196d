// What the public headers say about each function.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

struct HeaderFamily {
    // Name of the header without its ending.
    std::string name;
    // What stands at its top.
    std::string about;
    // Functions in their order.
    std::vector<std::string> functions;
};

struct HeaderComments {
    std::vector<HeaderFamily> families;
    // By the name of the function; functions that follow each other share the comment above them.
    std::map<std::string, std::string, std::less<>> of;
};

// Reads all headers of a folder, in the order of their names. Throws std::runtime_error when there are none.
HeaderComments ReadHeaderComments(const std::wstring& folder);

// The same for one header's text.
void AddHeader(std::string_view name, std::string_view text, HeaderComments& comments);

} // namespace tools
