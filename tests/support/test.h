// What every test begins with: GoogleTest, the language's headers, and tables of cases.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

namespace vh::test {

// Rows that a loop takes apart under names: `for (const auto& [number, word] : rows)`.
template <class... Cells>
using Table = const std::tuple<Cells...>[];

} // namespace vh::test
