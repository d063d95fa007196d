// What the GIF reader delivers of a file, block by block.
#pragma once

#include <cstdint>

#include "table_color.h"

namespace vh {

// What a graphic control block says about the block behind it.
struct gif_control {
    uint16_t delay; // in hundredths of a second
    uint8_t disposal;
    uint8_t user_input;
    uint8_t transparent; // a truth
    uint8_t transparent_index;
};

enum gif_kind : uint32_t { gif_image = 1, gif_plain_text = 2, gif_unknown_extension = 3, gif_header = 4 };

struct gif_place {
    uint16_t left;
    uint16_t top;
    uint16_t width;
    uint16_t height;
};

struct gif_image_record {
    gif_place place;
    gif_control control;
    uint8_t interlaced;
    uint8_t sorted;
    uint32_t color_count;      // of the image's own table
    const table_color* colors; // belongs to the record
    const uint8_t* pixels;     // rows bottom first, `stride` bytes each; belongs to the file's block
    uint64_t pixels_size;
    uint32_t stride;
};

struct gif_text_record {
    gif_place place;
    gif_control control;
    uint8_t cell_width;
    uint8_t cell_height;
    uint8_t foreground;
    uint8_t background;
    uint32_t length;
    const char* text; // ends with a zero; belongs to the file's block
};

struct gif_extension_record {
    uint64_t length;
    const uint8_t* data; // sub-blocks with their length bytes; belongs to the file's block
};

struct gif_header_record {
    uint32_t frame_count; // images
    uint16_t screen_width;
    uint16_t screen_height;
    uint8_t color_resolution;
    uint8_t sorted;
    uint8_t background;
    uint8_t aspect_ratio;
    uint32_t color_count;
    const table_color* colors; // belongs to the record
    uint8_t loops;             // a truth
    uint16_t loop_count;
};

struct gif_record {
    uint32_t kind;
    union {
        gif_image_record image;
        gif_text_record text;
        gif_extension_record extension;
        gif_header_record header;
        uint64_t room[9];
    };
};
static_assert(sizeof(gif_record) == 80);

} // namespace vh
