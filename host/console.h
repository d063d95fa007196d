// Lines for people: to a console as UTF-16, to a file or pipe as UTF-8.
#pragma once

#include <functional>
#include <string_view>

namespace host {

// A program with windows has no console of its own: it writes to that of the program that started it, if there is one.
void ShareConsole();
// A program that another one started with more rights writes to the console of that one, in place of its own.
void ShareConsoleOfParent();
// Where nobody could read what was complained of, it is shown in a window.
void ShowComplaints();

enum class Level { note, info, warning, error };
// What is said, complained of and mentioned goes there too; nothing ends that.
void Overhear(std::function<void(Level, std::wstring_view)> listener);

// From now on standard output has what Output writes alone: what is said goes to standard error.
void ReserveOutput();
void Output(std::wstring_view text);
// One line on standard output.
void Say(std::wstring_view line);
// One line on standard error, behind the program's name and the word "warning" for one.
void Complain(std::wstring_view line, Level level = Level::error);
// For the one who overhears alone.
void Mention(std::wstring_view line, Level level = Level::note);
// Whether somebody does.
bool Overheard();
// A line that replaces itself on a console; an empty one clears it. Elsewhere it is dropped, and the result is false.
bool Status(std::wstring_view line);

} // namespace host
