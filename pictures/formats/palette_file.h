// Palettes in RIFF files.
#pragma once

#include <array>

#include "byte_view.h"

namespace vh {

struct palette_entry {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
    uint8_t flags;
};

struct palette_picture {
    static constexpr std::size_t size = 256;
    // A palette of fewer entries leaves so many places at either end to the system's own colours.
    static constexpr std::size_t system_colors = 10;

    uint16_t version = 0;
    bool has_system_colors = false;
    std::array<palette_entry, size> entries{};
};

// 0 or picture_data_error.
uint32_t ReadPaletteFile(std::span<const std::byte> file, palette_picture& palette);

} // namespace vh
