// How a picture is drawn: option flags, effects, and the kinds of drawing that follow from them.
#pragma once

#include <cstdint>

namespace vh {

enum picture_option : uint32_t {
    anchor_top_right = 1,
    anchor_top_left = 2,
    anchor_bottom_right = 4,
    anchor_bottom_left = 8,
    option_stretch = 16,
    option_transparent = 32,
    option_tile = 64,
    option_full = 128,
    // Known to the option text alone: who places the picture centres it on one axis.
    option_center_down = 256,
    option_center_across = 512,
    option_center = 0x4000,
    // The size fields are factors in hundred thousandths.
    option_scale = 0x100000,
    // The size fields are the size.
    option_fixed_size = 0x200000,
};

// What an option text may say to the drawing.
constexpr uint32_t drawing_options = option_scale | option_transparent | 15;

constexpr int32_t centered_position = 16384;
constexpr int32_t scale_of_one = 100000;

enum class drawing_kind {
    transparent = 1,
    tile,
    full,
    dissolve,
    zoom,
    zoom_across,
    blinds_across,
    blinds_down,
    frames,
    plain,
    stretch,
};

} // namespace vh
