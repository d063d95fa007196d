// What every fuzzer begins with: the language's headers, and a check that ends the run.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

// Each fuzzer's own.
void Fuzz(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Fuzz(data, size);
    return 0;
}
