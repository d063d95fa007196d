// Undoes what the install log lists.
#pragma once

#include "../core.h"
#include "put_off.h"

namespace vh::engine {

enum class Undo {
    rollback, // a failed step: everything goes, backups come back
    removal,  // what the user changed and what is permanent stays
};

using RecordFilter = std::function<bool(const LogRecord&)>;
using RemovalNews = std::function<void(const Removal&)>;

// Undoes the records that `wanted` picks and that still stand, newest first, and marks them undone. A record
// that failed stands on, and so does that of a folder or key that holds something.
std::vector<Removal> UndoRecords(InstallLog& log, Undo how, const RecordFilter& wanted,
                                 const RemovalNews& onRemoval = {});

// Rolls back the runs of the log that never came to their end; one whose steps could not all be undone stays
// unfinished. Tidies up behind those that did.
std::vector<Removal> RecoverRuns(InstallLog& log);

// What waits for the end of a committed run: its backups go, and folders and keys that only unselected features had.
// Those of `unwanted` records go as well, when they are empty. Result: what files in use have put off.
std::vector<PutOffList::News> TidyUp(InstallLog& log, const RecordFilter& unwanted = {});

} // namespace vh::engine
