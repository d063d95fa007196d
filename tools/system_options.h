// The command lines of vhtool that change this machine.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace tools {

// The command that was asked for is put into `run`, which outlives the application.
void DeclareSystemCommands(CLI::App& app, std::function<int()>& run);

} // namespace tools
