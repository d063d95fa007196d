// Files that pictures and palettes are read from.
#pragma once

#include <cstddef>
#include <vector>

namespace vh {

// All of a file, or of what an address leads to. False when it can't be had.
bool ReadPictureFile(const wchar_t* path, std::vector<std::byte>& bytes);

} // namespace vh
