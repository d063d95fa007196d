// The scripts of a setup, run against the library and the engine.
#pragma once

#include <string>

#include "engine/engine.h"
#include "library.h"
#include "setup_run.h"
#include "stop_signal.h"

namespace host {

// Whether dialogs are answered by a file: then the script is told that somebody is there.
inline bool AnswersDialogs(const RunOptions& options) { return options.answers && options.answers->dialogs; }

// Why the script or what it asked for failed; empty when all went well. `given` gets the user's choices where they are
// to be kept.
std::wstring RunScripts(const Library& library, vh::engine::Engine& engine, const RunOptions& options,
                        StopSignal& signal, Plan& plan, Answers& given);

} // namespace host
