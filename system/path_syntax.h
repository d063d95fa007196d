// The test of a path's or a URL's syntax.
#pragma once

#include <cstdint>

namespace vh {

// 1 when the text could name something, 0 when not, or the system's error code for a URL. Null counts as empty.
int32_t PathSyntax(const wchar_t* text);

} // namespace vh
