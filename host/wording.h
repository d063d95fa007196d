// What the host says of runs, decisions and removals, in words.
#pragma once

#include <string>
#include <vector>

#include "engine/engine.h"
#include "exit_codes.h"

namespace host {

// "removed", "kept, not empty" ...
std::wstring NameOf(const vh::engine::Removal& removal);
std::wstring LineOf(const vh::engine::Removal& removal);
std::wstring LineOf(const vh::engine::Decision& decision);

// "1 file", "2 files".
std::wstring Counted(std::size_t count, const std::wstring& thing);
std::wstring Joined(const std::vector<std::wstring>& texts);

// How a run of what is installed already is called, behind the product's name; nothing for the first one.
std::wstring KindWords(const vh::engine::Engine& engine);
// "install", "upgrade from 1.0" ...
std::wstring RunKindText(const vh::engine::Engine& engine);

// What a run says at its end when something in use waits.
inline constexpr const wchar_t* restart_words = L"files are in use: the system has to start again";

// Says in the log how the program ends.
void MentionExit(ExitCode code);

} // namespace host
