// How vhhost.exe ends. 3, 5 and 29 stay free: the system ends broken processes with them.
#pragma once

namespace host {

enum ExitCode : int {
    // The script ran to its end; what it did is committed.
    exit_done = 0,
    // The script failed, or a transfer did; the run is rolled back.
    exit_failed = 1,
    // The command line is wrong, or a file that it names: a log that can't be written, answers that can't be read.
    exit_usage = 2,
    // The setup folder, its product file or its payload is wrong; nothing was touched.
    exit_setup = 4,
    // Stopped by the user; the run is rolled back, a removal goes on the next time.
    exit_cancelled = 6,
    // VHRT.dll can't be loaded.
    exit_library = 7,
    // The run failed, and not all of it could be undone yet, or a second Ctrl+C ended it; the next run tries again.
    exit_rollback = 9,
    // The removal left something behind that could not be removed.
    exit_removal = 8,
    // The product is one of the machine, and the rights for that are missing, or others than administrators could have
    // changed what lies in its data folder; nothing was touched.
    exit_rights = 10,
    // Done, and a file in use waits for the system to start again; the system's own code for that.
    exit_restart = 3010,
};

} // namespace host
