// vhtool product: setup folders, seen before anybody runs them.
#pragma once

#include <string>
#include <vector>

namespace tools {

// Names every fault of each folder with file, line and column, or says in one line that it has none.
int CheckSetups(const std::vector<std::wstring>& folders);

} // namespace tools
