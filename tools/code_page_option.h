// The check of options that take a code page.
#pragma once

#include <cstdlib>
#include <string>

#include <CLI/CLI.hpp>
#include <windows.h>

namespace tools {

// 0 is the system's.
inline const CLI::Validator known_code_page(
    [](std::string& text) {
        const unsigned long page = std::strtoul(text.c_str(), nullptr, 10);
        return std::string(page == 0 || IsValidCodePage(page) ? "" : "this system has no such code page");
    },
    "");

} // namespace tools
