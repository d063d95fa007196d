#include "bitmap_file.h"

#include <algorithm>
#include <limits>

#include "bitmap_runs.h"

namespace vh {

namespace {

constexpr std::size_t file_header_size = 14;
constexpr std::size_t old_header_size = 12;
constexpr std::size_t header_size = 40;
constexpr std::size_t masks_size = 12;
constexpr uint16_t table_bits = 8; // pixels of more bits are colours themselves

// What the information says of the table behind it.
struct table_place {
    std::size_t start = 0;
    std::size_t entry_size = 4;
    uint64_t count = 0;
    uint64_t end() const { return start + entry_size * count; }
};

bool KindExists(const bitmap_picture& picture)
{
    static constexpr struct {
        uint16_t bits;
        uint32_t compression;
    } kinds[] = {{1, bitmap_plain},  {4, bitmap_plain}, {8, bitmap_plain}, {16, bitmap_plain},  {24, bitmap_plain},
                 {32, bitmap_plain}, {8, bitmap_rle8},  {4, bitmap_rle4},  {16, bitmap_fields}, {32, bitmap_fields}};
    return std::ranges::any_of(
        kinds, [&](const auto& kind) { return kind.bits == picture.bits && kind.compression == picture.compression; });
}

bool IsPacked(const bitmap_picture& picture)
{
    return picture.compression == bitmap_rle8 || picture.compression == bitmap_rle4;
}

bool ReadOldHeader(const byte_view& info, bitmap_picture& picture, table_place& table)
{
    picture.width = info.Word(4);
    picture.height = info.Word(6);
    picture.bits = info.Word(10);
    table = {old_header_size, 3, picture.bits <= table_bits ? uint64_t{1} << picture.bits : 0};
    return info.Has(0, old_header_size);
}

bool ReadHeader(const byte_view& info, bitmap_picture& picture, table_place& table)
{
    const uint32_t size = info.Long(0);
    if (size < header_size || !info.Has(0, size))
        return false;
    picture.width = static_cast<int32_t>(info.Long(4));
    picture.height = static_cast<int32_t>(info.Long(8));
    picture.bits = info.Word(14);
    picture.compression = info.Long(16);
    table.start = size;
    if (picture.compression == bitmap_fields) {
        for (std::size_t i = 0; i < picture.masks.size(); ++i)
            picture.masks[i] = info.Long(header_size + 4 * i);
        // A longer header has the masks inside.
        if (size == header_size)
            table.start += masks_size;
    }
    table.count = info.Long(32);
    if (table.count == 0 && picture.bits <= table_bits)
        table.count = uint64_t{1} << picture.bits;
    return true;
}

// `told` is where the file header says that the pixels start.
uint32_t ReadInformation(std::span<const std::byte> bytes, std::size_t told, bitmap_picture& picture)
{
    const byte_view info(bytes);
    table_place table;
    picture = {};
    if (!(info.Long(0) == old_header_size ? ReadOldHeader(info, picture, table) : ReadHeader(info, picture, table)))
        return picture_data_error;
    const bool top_down = picture.height < 0;
    if (picture.width <= 0 || picture.height == 0 || picture.height == std::numeric_limits<int32_t>::min() ||
        !KindExists(picture) || (top_down && IsPacked(picture)) || table.end() >= bytes.size())
        return picture_data_error;

    const std::size_t used = picture.bits <= table_bits ? std::min<uint64_t>(table.count, 1u << picture.bits) : 0;
    for (std::size_t i = 0; i < used; ++i) {
        const std::size_t at = table.start + i * table.entry_size;
        picture.colors.push_back({info.Byte(at), info.Byte(at + 1), info.Byte(at + 2), 0});
    }
    const auto table_end = static_cast<std::size_t>(table.end());
    picture.pixels = bytes.subspan(told >= table_end && told < bytes.size() ? told : table_end);
    if (IsPacked(picture))
        return UnpackRuns(picture) ? picture_done : picture_data_error;
    const uint64_t row = (uint64_t{static_cast<uint32_t>(picture.width)} * picture.bits + 31) / 32 * 4;
    const uint64_t rows = static_cast<uint64_t>(top_down ? -picture.height : picture.height);
    if (rows > picture.pixels.size() / row)
        return picture_data_error;
    picture.pixels = picture.pixels.first(static_cast<std::size_t>(row * rows));
    return picture_done;
}

} // namespace

uint32_t ReadBitmapFile(std::span<const std::byte> file, bitmap_picture& picture)
{
    const byte_view header(file);
    if (!header.StartsWith("BM") || file.size() <= file_header_size)
        return picture_data_error;
    const uint32_t told = header.Long(10);
    return ReadInformation(file.subspan(file_header_size), told >= file_header_size ? told - file_header_size : 0,
                           picture);
}

uint32_t ReadBitmapResource(std::span<const std::byte> resource, bitmap_picture& picture)
{
    return ReadInformation(resource, 0, picture);
}

} // namespace vh
