// vhtool register and unregister: servers, type libraries and registration scripts.
#pragma once

#include <string>

namespace tools {

struct RegisterOptions {
    // What %MODULEPATH% stands for in a script; empty is the script's folder.
    std::wstring module;
    bool per_user = false;
};

int RegisterFile(const std::wstring& file, bool registers, const RegisterOptions& options);

} // namespace tools
