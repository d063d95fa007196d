// A GIF decoder as they are usually written: strings are walked from their end, onto a stack of bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace bench {

// The data of one image without interlace, from its minimum code size on, into rows bottom first. False for bad data.
bool DecodeWithStack(std::span<const std::byte> data, uint8_t* pixels, unsigned width, unsigned height);

} // namespace bench
