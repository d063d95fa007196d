// Undoes what the install log lists.
#pragma once

#include "../core.h"

namespace vh::engine {

enum class Undo {
    rollback, // a failed step: everything goes, backups come back
    removal,  // what the user changed and what is permanent stays
};

// Undoes the records that `wanted` picks and that still stand, newest first, and marks them undone. A record
// that failed stands on.
std::vector<Removal> UndoRecords(InstallLog& log, Undo how, const std::function<bool(const LogRecord&)>& wanted,
                                 const std::function<void(const Removal&)>& onRemoval = {});

} // namespace vh::engine
