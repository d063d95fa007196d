#include "palette_file.h"

#include <algorithm>

namespace vh {

namespace {

// Of the chunk behind "RIFF", its size, "PAL " and "data".
constexpr std::size_t length_at = 16;
constexpr std::size_t version_at = 20;
constexpr std::size_t count_at = 22;
constexpr std::size_t entries_at = 24;
constexpr std::size_t entry_size = 4;

} // namespace

uint32_t ReadPaletteFile(std::span<const std::byte> file, palette_picture& palette)
{
    const byte_view view(file);
    palette = {};
    if (!view.StartsWith("RIFF") || !view.Has(0, entries_at))
        return picture_data_error;
    constexpr std::size_t header_size = entries_at - version_at;
    const uint32_t length = view.Long(length_at);
    if (length < header_size)
        return picture_data_error;
    palette.version = view.Word(version_at);
    palette.has_system_colors = view.Word(count_at) != palette_picture::size;
    const std::size_t first = palette.has_system_colors ? palette_picture::system_colors : 0;
    const std::size_t room = palette_picture::size - 2 * first;
    const std::size_t count = std::min<std::size_t>((length - header_size) / entry_size, room);
    if (!view.Has(entries_at, count * entry_size))
        return picture_data_error;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = entries_at + i * entry_size;
        palette.entries[first + i] = {view.Byte(at), view.Byte(at + 1), view.Byte(at + 2), view.Byte(at + 3)};
    }
    return picture_done;
}

} // namespace vh
