// Options of a picture as text: tokens between commas.
#pragma once

#include <array>
#include <string_view>

#include "picture_options.h"

namespace vh {

struct option_token {
    std::string_view name;
    uint32_t value;
};

inline constexpr std::array<option_token, 8> option_tokens = {{
    {"UPPER_RIGHT", anchor_top_right},
    {"UPPER_LEFT", anchor_top_left},
    {"LOWER_RIGHT", anchor_bottom_right},
    {"LOWER_LEFT", anchor_bottom_left},
    {"TRANSPARENT", option_transparent},
    {"VCENTER", option_center_down},
    {"HCENTER", option_center_across},
    {"SCALE", option_scale},
}};

// All that the text names; unknown tokens count for nothing.
constexpr uint32_t ReadOptionText(std::string_view text)
{
    uint32_t options = 0;
    for (;;) {
        const std::size_t comma = text.find(',');
        for (const option_token& token : option_tokens)
            if (token.name == text.substr(0, comma))
                options |= token.value;
        if (comma == std::string_view::npos)
            return options;
        text.remove_prefix(comma + 1);
    }
}

} // namespace vh
