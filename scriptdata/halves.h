// 64-bit numbers in the forms that scripts can hold.
#pragma once

#include <cstdint>

namespace vh {

// A size in halves of 31 bits, so that neither is ever negative.
struct halves31 {
    int32_t high;
    int32_t low;
};

// The top bit of a 64-bit size does not fit and is dropped.
constexpr halves31 ToHalves31(uint64_t value)
{
    return {static_cast<int32_t>((value >> 31) & 0x7FFFFFFF), static_cast<int32_t>(value & 0x7FFFFFFF)};
}

// A shift by 64 bits or more, or by a negative number, leaves nothing.
constexpr uint64_t ShiftRight(uint64_t value, int32_t bits) { return bits >= 0 && bits < 64 ? value >> bits : 0; }

} // namespace vh
