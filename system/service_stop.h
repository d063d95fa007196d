// Stops services.
#pragma once

namespace vh {

// A service of this machine, and first those that run and depend on it, in the system's order. Each wait for one ends
// after 30 s. True when it is stopped, also when it was before; what happened is in the trace alone.
bool StopServiceWithDependents(const wchar_t* name);

} // namespace vh
