#include "palette.h"

#include <algorithm>
#include <cstring>

#include "formats/palette_file.h"
#include "picture_file.h"

namespace vh {

namespace {

// LOGPALETTE with all of its entries.
struct whole_palette {
    WORD version;
    WORD count;
    PALETTEENTRY entries[palette_picture::size];
};

// The system's own colours stand at either end.
void AddSystemColors(whole_palette& palette)
{
    constexpr UINT count = palette_picture::system_colors;
    constexpr UINT upper = palette_picture::size - count;
    const unique_screen_context screen(late::get_dc(HWND{nullptr}));
    late::get_system_palette(screen.get(), 0u, count, palette.entries);
    late::get_system_palette(screen.get(), upper, count, palette.entries + upper);
}

} // namespace

unique_palette LoadPalette(const wchar_t* path)
{
    std::vector<std::byte> bytes;
    palette_picture picture;
    if (!ReadPictureFile(path, bytes) || ReadPaletteFile(bytes, picture) != picture_done)
        return {};
    whole_palette palette{picture.version, palette_picture::size, {}};
    std::ranges::transform(picture.entries, palette.entries, [](const palette_entry& entry) {
        return PALETTEENTRY{entry.red, entry.green, entry.blue, entry.flags};
    });
    if (picture.has_system_colors)
        AddSystemColors(palette);
    return unique_palette(late::create_palette(reinterpret_cast<const LOGPALETTE*>(&palette)));
}

} // namespace vh
