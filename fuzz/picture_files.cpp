// Reads arbitrary bytes as a bitmap, a metafile and a palette.
#include "../pictures/formats/bitmap_file.h"
#include "../pictures/formats/metafile_file.h"
#include "../pictures/formats/palette_file.h"
#include "fuzz.h"

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::byte> bytes = std::as_bytes(std::span(data, size));
    vh::bitmap_picture bitmap;
    for (const auto read : {&vh::ReadBitmapFile, &vh::ReadBitmapResource})
        if (read(bytes, bitmap) == vh::picture_done) {
            const uint64_t row = (uint64_t{static_cast<uint32_t>(bitmap.width)} * bitmap.bits + 31) / 32 * 4;
            Require(bitmap.pixels.size() == row * static_cast<uint64_t>(std::abs(int64_t{bitmap.height})));
        }
    vh::metafile_picture metafile;
    Require(vh::ReadMetafile(bytes, metafile) != vh::picture_done || metafile.bits.size() <= size);
    vh::palette_picture palette;
    Require(vh::ReadPaletteFile(bytes, palette) != ~0u);
}
