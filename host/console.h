// Lines for people: to a console as UTF-16, to a file or pipe as UTF-8.
#pragma once

#include <string_view>

namespace host {

// A program with windows has no console of its own: it writes to that of the program that started it, if there is one.
void ShareConsole();
// Where nobody could read what was complained of, it is shown in a window.
void ShowComplaints();

// One line on standard output.
void Say(std::wstring_view line);
// One line on standard error, behind the program's name.
void Complain(std::wstring_view line);
// A line that replaces itself on a console; an empty one clears it. Elsewhere it is dropped, and the result is false.
bool Status(std::wstring_view line);

} // namespace host
