#include "gif_control_data.h"

namespace vh {

bool ReadGifColors(gif_input& input, uint8_t packed, std::vector<table_color>& colors)
{
    constexpr uint8_t has_table = 0x80;
    colors.clear();
    if (!(packed & has_table))
        return true;
    const std::size_t count = std::size_t{2} << (packed & 7);
    std::span<const std::byte> triples;
    if (!input.Bytes(3 * count, triples))
        return false;
    const auto value = [&](std::size_t at) { return std::to_integer<uint8_t>(triples[at]); };
    colors.reserve(count);
    for (std::size_t at = 0; at < triples.size(); at += 3)
        colors.push_back({value(at + 2), value(at + 1), value(at), 0});
    return true;
}

bool ReadGifPlace(gif_input& input, gif_place& place)
{
    return input.Word(place.left) && input.Word(place.top) && input.Word(place.width) && input.Word(place.height);
}

} // namespace vh
