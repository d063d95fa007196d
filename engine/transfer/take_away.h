// Steps that take something away before the run is sure to last: the thing waits aside, so that it can come back.
#pragma once

#include "removal.h"

namespace vh::engine {

// A file, or a whole folder, goes aside. `back` is the record that this takes back; 0 for none. Throws engine_error.
void TakeAway(Core& core, const std::wstring& path, long back = 0, Why why = Why::asked);

// What nobody needs any more goes until the run ends, in the manner of a removal: files, shortcuts and values. Folders
// and keys go when the run is committed. What can't go is reported.
void TakeBack(Core& core, Why why, const RecordFilter& wanted);

} // namespace vh::engine
