// The named numbers of scripts: one table, made of what C and C++ know under the same names.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace host {

struct Constant {
    const char* name;
    int64_t value;
    const char* meaning;
};

// Constants that belong to the same argument, attribute or result.
struct ConstantGroup {
    const char* title;
    std::span<const Constant> constants;
    // Bits, and codes that are written that way.
    bool hexadecimal = false;
};

std::span<const ConstantGroup> ConstantTable();

// The place of a constant among all, in the order of the table.
std::optional<std::size_t> FindConstant(std::wstring_view name);
int64_t ConstantValue(std::size_t place);
std::size_t ConstantCount();

} // namespace host
