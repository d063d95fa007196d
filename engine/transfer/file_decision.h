// What becomes of a file that is to be written, by what stands in its place.
#pragma once

#include "../core.h"
#include "file_writer.h"

namespace vh::engine {

// Throws when the file can't be written there.
Decision Decide(const Core& core, const FileToWrite& file, const FileFacts& there);
// What stands there came neither from the product nor from an earlier version of it.
bool IsForeign(const Core& core, const FileToWrite& file);
// What stands there is what the product's newest record of the file says.
bool IsOurs(const Core& core, const FileToWrite& file, const FileFacts& there);

} // namespace vh::engine
