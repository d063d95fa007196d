// Windows bitmaps: the file with its header, and the information with which a bitmap resource begins.
#pragma once

#include <array>
#include <vector>

#include "byte_view.h"
#include "table_color.h"

namespace vh {

enum bitmap_compression : uint32_t { bitmap_plain = 0, bitmap_rle8 = 1, bitmap_rle4 = 2, bitmap_fields = 3 };

// Run lengths are taken apart: what is read is plain, or has bit fields.

struct bitmap_picture {
    int32_t width = 0;
    // Negative when the rows stand top first.
    int32_t height = 0;
    uint16_t bits = 0; // of a pixel
    uint32_t compression = bitmap_plain;
    std::array<uint32_t, 3> masks{}; // red, green, blue, with bitmap_fields
    std::vector<table_color> colors; // for 1, 4 and 8 bits
    // Complete rows of a multiple of 4 bytes, in the file or in what was unpacked from it.
    std::span<const std::byte> pixels;
    std::vector<std::byte> unpacked;

    bitmap_picture() = default;
    bitmap_picture(bitmap_picture&&) = default;
    bitmap_picture& operator=(bitmap_picture&&) = default;
};

// 0 or picture_data_error. Every kind that the system draws: 1 to 32 bits, run lengths, bit fields, old headers.
uint32_t ReadBitmapFile(std::span<const std::byte> file, bitmap_picture& picture);
uint32_t ReadBitmapResource(std::span<const std::byte> resource, bitmap_picture& picture);

} // namespace vh
