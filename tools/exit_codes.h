// How vhtool.exe ends.
#pragma once

namespace tools {

enum ExitCode : int {
    exit_done = 0,
    // What was looked at is damaged, or differs from what it should be.
    exit_found = 1,
    // The command line is wrong.
    exit_usage = 2,
    // A file can't be read or written.
    exit_file = 4,
};

} // namespace tools
