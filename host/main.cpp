// vhhost.exe: runs a setup folder's script against VHRT.dll and the embedded engine.
#include <stdexcept>
#include <string>
#include <vector>

#include <objbase.h>
#include <windows.h>

#include "command_line.h"
#include "setup_run.h"
#include "text.h"

namespace {

constexpr const char* description = "Runs the setup in a folder that holds product.json, the payload and setup.js.";
constexpr const char* footer =
    "Exit codes: 0 done; 1 the script or a transfer failed (rolled back), or --verify found\n"
    "a file unlike its source; 2 wrong command line; 4 wrong setup folder, product file or\n"
    "payload, another setup of the product runs, or there is nothing to remove; 6 stopped by\n"
    "the user (rolled back; a removal goes on the next time); 7 VHRT.dll or a script can't be\n"
    "loaded, or the trace can't be written (rolled back); 8 the removal left something behind;\n"
    "9 rolled back in part, or ended by a second Ctrl+C: the next run undoes the rest.";

struct CommandLine {
    std::string folder;
    std::string target;
    std::string trace;
    std::string data;
    std::string registry_root;
    std::vector<std::string> scripts;
    std::vector<std::string> variables;
    int language = 0;
    bool silent = false;
    bool notes = false;
    bool main_window = false;
    bool uninstall = false;
    bool show_log = false;
    bool verify = false;
};

void Declare(CLI::App& app, CommandLine& line)
{
    // A leading slash begins a path here, not an option.
    app.allow_windows_style_options(false);
    app.footer(footer);
    app.add_option("FOLDER", line.folder, "The setup folder")->required()->check(host::not_empty);
    app.add_flag("--silent", line.silent, "Ask nothing, show no progress");
    app.add_flag("--notes", line.notes, "Show what the engine notes, such as the steps of access rights");
    app.add_flag("--main-window", line.main_window, "Show the setup before a window of its own");
    app.add_option("--target", line.target, "Install to this folder")->type_name("DIR")->check(host::not_empty);
    app.add_option("--trace", line.trace, "Write the library's trace to this file")
        ->type_name("FILE")
        ->check(host::not_empty);
    app.add_option("--var", line.variables, "Set a variable; may be given again")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->take_all();
    app.add_flag("--uninstall", line.uninstall, "Remove what the setup installed");
    app.add_option("--language", line.language, "Language identifier, such as 1031")->type_name("ID");
    app.add_option("--script", line.scripts, "Run this file in place of the setup's script; may be given again")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    app.add_option("--data", line.data, "Keep install logs in this folder")->type_name("DIR")->check(host::not_empty);
    app.add_option("--registry-root", line.registry_root, "Keep the whole registry below this key")
        ->type_name("KEY")
        ->check(host::not_empty);
    app.add_flag("--show-log", line.show_log, "Show at the end what is recorded for removal");
    app.add_flag("--verify", line.verify, "Show at the end what is installed, each file compared with its source");
}

host::RunOptions OptionsOf(const CommandLine& line)
{
    host::RunOptions options;
    options.setup_folder = host::PathOf(line.folder);
    options.target = host::PathOf(line.target);
    options.trace_file = host::PathOf(line.trace);
    options.registry_root = host::Wide(line.registry_root);
    options.data_folder = host::PathOf(line.data);
    for (const std::string& script : line.scripts)
        options.scripts.push_back(host::PathOf(script));
    for (const std::string& variable : line.variables) {
        const std::size_t equals = variable.find('=');
        if (equals == 0 || equals == std::string::npos)
            throw std::invalid_argument("--var wants NAME=VALUE, not " + variable);
        options.variables[host::Wide(variable.substr(0, equals))] = host::Wide(variable.substr(equals + 1));
    }
    options.language = line.language;
    options.silent = line.silent;
    options.notes = line.notes;
    options.main_window = line.main_window;
    options.show_log = line.show_log;
    options.verify = line.verify;
    return options;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    CLI::App app(description, "vhhost");
    CommandLine line;
    Declare(app, line);
    host::RunOptions options;
    try {
        if (!host::ParseCommandLine(app, count, words))
            return host::exit_done;
        options = OptionsOf(line);
    } catch (const std::invalid_argument& error) {
        host::Complain(host::Wide(error.what()));
        return host::exit_usage;
    } catch (const CLI::ParseError&) {
        return host::exit_usage;
    }
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return host::exit_library;
    const host::ExitCode code = line.uninstall ? host::RemoveSetup(options) : host::RunSetup(options);
    CoUninitialize();
    return code;
}
