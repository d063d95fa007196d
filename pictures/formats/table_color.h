// One entry of a picture's colour table, in the order that device bitmaps have.
#pragma once

#include <cstdint>

namespace vh {

struct table_color {
    uint8_t blue;
    uint8_t green;
    uint8_t red;
    uint8_t reserved;
};

} // namespace vh
