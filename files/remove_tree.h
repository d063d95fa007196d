// The removal of a file, or of a folder with all that is in it.
#pragma once

#include "../scriptdata/stringx.h"

namespace vh {

// Junctions and links go; what they lead to stays. `ignore_file_failure`: a file that can't be deleted is passed over;
// a folder that can't always raises file_exception, which names it.
void RemoveTree(const stringx& path, bool ignore_file_failure);

} // namespace vh
