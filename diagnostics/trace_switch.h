// What the trace reads once, at load: its switch in the registry, and facts about the running program.
#pragma once

#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

struct trace_switch {
    bool trace_std = false;
    stringx path;
};

// False when the current user has no key "VHlogit". The path is the value "FileNamePath" as it stands, or
// setuptrace<process id>.bin on the desktop.
bool ReadTraceSwitch(trace_switch& found);

struct executable_facts {
    wchar_t path[MAX_PATH];
    // Four parts of the file version; 0 without a version block.
    long version[4];
};

executable_facts ReadExecutableFacts();

} // namespace vh
