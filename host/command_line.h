// The command line of our programs: UTF-16 in, help on demand.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "console.h"
#include "text.h"
#include "version.h"

namespace host {

inline std::wstring PathOf(const std::string& text) { return text.empty() ? std::wstring() : FullPath(Wide(text)); }

// Refuses an empty text, such as a variable of the shell that is not set leaves.
inline const CLI::Validator not_empty([](std::string& text) { return std::string(text.empty() ? "is empty" : ""); },
                                      "");

inline std::wstring WithoutLineEnds(const std::string& text)
{
    std::wstring lines = Wide(text);
    lines.resize(lines.find_last_not_of(L'\n') + 1);
    return lines;
}

// How the command that was meant is written, and where to read more.
inline std::wstring UsageOf(const CLI::App& app)
{
    const CLI::App* meant = &app;
    std::string name = app.get_name();
    while (!meant->get_subcommands().empty()) {
        meant = meant->get_subcommands().front();
        name += " " + meant->get_name();
    }
    std::string choice;
    for (const CLI::App* each : meant->get_subcommands([](const CLI::App*) { return true; }))
        choice += (choice.empty() ? "SUBCOMMAND is one of: " : ", ") + each->get_name();
    return WithoutLineEnds(CLI::Formatter().make_usage(meant, name)) + L"\n" + Wide(choice) +
           (choice.empty() ? L"" : L"\n") + Wide(name) + L" --help says more.";
}

// False when only help or the version was asked for. A wrong command line is explained and thrown on as
// CLI::ParseError.
inline bool ParseCommandLine(CLI::App& app, int count, wchar_t** words)
{
    app.set_version_flag("--version", product_version, "Print the version and exit");
    // The parser takes the last word first.
    std::vector<std::string> arguments;
    for (int i = count - 1; i > 0; --i)
        arguments.push_back(Utf8(words[i]));
    try {
        app.parse(arguments);
        return true;
    } catch (const CLI::CallForHelp&) {
        Say(WithoutLineEnds(app.help()));
        return false;
    } catch (const CLI::CallForVersion&) {
        Say(Wide(app.get_name()) + L", " + Wide(product_version));
        return false;
    } catch (const CLI::ParseError& error) {
        // The parser looks for what is missing first; a misspelt word says more.
        const std::vector<std::string> unknown = app.remaining(true);
        const bool misspelt = dynamic_cast<const CLI::RequiredError*>(&error) && !unknown.empty();
        Complain(Wide(misspelt ? "The following argument was not expected: " + unknown.front() : error.what()) + L"\n" +
                 UsageOf(app));
        throw;
    }
}

} // namespace host
