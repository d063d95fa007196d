// An upgrade whose files stand where the earlier version has folders, or the other way round.
#pragma once

#include <span>

#include "file_writer.h"

namespace vh::engine {

// What the earlier version has in the way goes aside, as far as all of it is its own and as it was placed; the rest
// stays, and refuses the file later. Throws engine_error.
void GiveWay(Core& core, std::span<const FileToWrite> files);

} // namespace vh::engine
