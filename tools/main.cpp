// vhtool.exe: a command line for people who work with VHRT.
#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "exit_codes.h"
#include "exports_command.h"
#include "facts_command.h"
#include "host/command_line.h"
#include "host/console.h"
#include "host/text.h"
#include "trace_command.h"

namespace {

struct CommandLine {
    std::string file;
    std::string output;
    std::string definition;
    std::string library;
    bool json = false;
    unsigned seconds = 0;
    std::function<int()> run;
};

void DeclareTrace(CLI::App& app, CommandLine& line)
{
    CLI::App* trace = app.add_subcommand("trace", "Trace files of the library");
    trace->require_subcommand(1);
    CLI::App* decode = trace->add_subcommand("decode", "Write a trace file as plain text");
    decode->add_option("FILE", line.file, "The trace file")->required();
    decode->add_option("-o,--output", line.output, "Write to this file")->type_name("FILE");
    decode->callback([&line] {
        line.run = [&line] { return tools::DecodeTrace(host::PathOf(line.file), host::PathOf(line.output)); };
    });
    CLI::App* follow = trace->add_subcommand("follow", "Print records as they come, until Ctrl+C");
    follow->add_option("FILE", line.file, "The trace file")->required();
    follow->add_option("--for", line.seconds, "Stop after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 86400));
    follow->callback(
        [&line] { line.run = [&line] { return tools::FollowTrace(host::PathOf(line.file), line.seconds); }; });
}

// The library that a person names, or else the one beside this program.
std::wstring LibraryOf(const std::string& given)
{
    return given.empty() ? host::Join(host::ProgramFolder(), L"VHRT.dll") : host::PathOf(given);
}

void DeclareExports(CLI::App& app, CommandLine& line)
{
    CLI::App* exports = app.add_subcommand("exports", "List the exports of a library with their arguments");
    exports->add_option("DLL", line.file, "The library; without it VHRT.dll beside this program");
    exports->add_option("--def", line.definition, "Compare the numbers with this file")->type_name("FILE");
    exports->callback([&line] {
        line.run = [&line] { return tools::ListExports(LibraryOf(line.file), host::PathOf(line.definition)); };
    });
}

void DeclareFacts(CLI::App& app, CommandLine& line)
{
    CLI::App* facts = app.add_subcommand("facts", "Print what the library tells about this machine");
    facts->add_flag("--json", line.json, "As one JSON object");
    facts->add_option("--library", line.library, "Ask this library; without it VHRT.dll beside this program")
        ->type_name("PATH");
    facts->callback([&line] { line.run = [&line] { return tools::PrintFacts(LibraryOf(line.library), line.json); }; });
}

} // namespace

int wmain(int count, wchar_t** words)
{
    CLI::App app("Looks into trace files and libraries of VHRT.", "vhtool");
    app.require_subcommand(1);
    // A leading slash begins a path here, not an option; subcommands take this over.
    app.allow_windows_style_options(false);
    app.footer("Exit codes: 0 done, 1 damaged or different, 2 wrong command line, 4 a file can't be read or written.");
    CommandLine line;
    DeclareTrace(app, line);
    DeclareExports(app, line);
    DeclareFacts(app, line);
    try {
        if (!host::ParseCommandLine(app, count, words))
            return tools::exit_done;
    } catch (const CLI::ParseError&) {
        return tools::exit_usage;
    }
    try {
        return line.run();
    } catch (const std::exception& error) {
        host::Complain(L"error: " + host::Wide(error.what()));
        return tools::exit_file;
    }
}
