// How a run of a setup ends: taken back, or shown.
#pragma once

#include "engine/engine.h"
#include "exit_codes.h"
#include "setup_run.h"

namespace host {

// Undoes the run. Result: `reason`, unless something could not be undone.
ExitCode TakeBack(vh::engine::Engine& engine, ExitCode reason);

// The installed tree, the log and a closing line of counts, as far as they are wanted.
ExitCode ShowOutcome(const vh::engine::Engine& engine, const RunOptions& options);

} // namespace host
