// The command line of our programs: UTF-16 in, help on demand and on mistakes.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "console.h"
#include "text.h"

namespace host {

inline std::wstring PathOf(const std::string& text) { return text.empty() ? std::wstring() : FullPath(Wide(text)); }

// Refuses an empty text, such as a variable of the shell that is not set leaves.
inline const CLI::Validator not_empty([](std::string& text) { return std::string(text.empty() ? "is empty" : ""); },
                                      "");

inline void SayLines(const std::string& text, void (*say)(std::wstring_view))
{
    std::wstring lines = Wide(text);
    while (!lines.empty() && lines.back() == L'\n')
        lines.pop_back();
    say(lines);
}

// False when only help was asked for. A wrong command line is explained and thrown on as CLI::ParseError.
inline bool ParseCommandLine(CLI::App& app, int count, wchar_t** words)
{
    // The parser takes the last word first.
    std::vector<std::string> arguments;
    for (int i = count - 1; i > 0; --i)
        arguments.push_back(Utf8(words[i]));
    try {
        app.parse(arguments);
        return true;
    } catch (const CLI::CallForHelp&) {
        SayLines(app.help(), Say);
        return false;
    } catch (const CLI::ParseError& error) {
        // The parser looks for what is missing first; a misspelt word says more.
        const std::vector<std::string> unknown = app.remaining(true);
        const bool misspelt = dynamic_cast<const CLI::RequiredError*>(&error) && !unknown.empty();
        Complain(Wide(app.get_name()) + L": " +
                 Wide(misspelt ? "The following argument was not expected: " + unknown.front() : error.what()));
        SayLines(app.help(), Complain);
        throw;
    }
}

} // namespace host
