// What an author of a skin should know: keys that nobody reads, values without their form, pictures that are missing.
#pragma once

#include <string>
#include <vector>

#include "skin_source.h"

namespace tools {

// Each with its place in front: "skin.ini:12: [ALL] RECT1: ...", or the entry it is about. Empty for a clean skin.
std::vector<std::string> CheckSkin(const SkinSource& skin);

} // namespace tools
