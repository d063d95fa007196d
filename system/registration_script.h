// Registration scripts: keys and values to be made below the classes, as text. Platform-free.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vh {

// A key of a script, with what is to be in it.
struct script_key {
    std::string name;
    bool force_remove = false;
    bool no_remove = false;
    // Name and data, in the script's order; the key's default value has an empty name.
    std::vector<std::pair<std::string, std::string>> values;
    std::vector<script_key> children;

    bool operator==(const script_key&) const = default;
};

// What is wrong with a script: static text, or null; and where, both from 1, columns in bytes.
struct script_fault {
    const char* reason = nullptr;
    std::size_t line = 1;
    std::size_t column = 1;
};

class RegistrationScript {
public:
    // The registry has no deeper trees.
    static constexpr std::size_t deepest = 512;

    // False for a text that is no script; then `fault` tells why, and there are no keys.
    bool Parse(std::string_view text, script_fault& fault);

    // Data with the variable between its first two "%" replaced; an unknown one stays.
    std::string Replaced(const std::string& data) const;

    script_key root;
    std::map<std::string, std::string, std::less<>> replacements;
    // Whether the first value that can't be written ends the writing.
    bool stop_on_error = false;
};

} // namespace vh
