#include "metafile_file.h"

#include <algorithm>

namespace vh {

namespace {

constexpr uint32_t placeable_key = 0x9AC6CDD7;
constexpr std::size_t bounds_at = 6;
constexpr std::size_t metafile_at = 22;
// In the metafile's own header.
constexpr std::size_t header_words_at = 2;
constexpr std::size_t size_at = 6;
constexpr std::size_t header_size = 18;
constexpr uint32_t least_record_words = 3;
constexpr std::size_t function_at = 4; // in a record

// The end of the last whole record before the one that ends the metafile.
std::size_t EndOfRecords(const byte_view& metafile, std::size_t size)
{
    std::size_t at = header_size;
    for (;;) {
        const uint64_t words = metafile.Long(at);
        if (!metafile.Has(at, 2 * least_record_words) || words < least_record_words || words * 2 > size - at ||
            metafile.Word(at + function_at) == 0)
            return at;
        at += static_cast<std::size_t>(words * 2);
    }
}

} // namespace

uint32_t ReadMetafile(std::span<const std::byte> file, metafile_picture& picture)
{
    const byte_view header(file);
    picture = {};
    if (header.Long(0) != placeable_key || !header.Has(metafile_at, header_size))
        return picture_data_error;
    int32_t* const sides[] = {&picture.left, &picture.top, &picture.right, &picture.bottom};
    for (std::size_t i = 0; i < std::size(sides); ++i)
        *sides[i] = static_cast<int16_t>(header.Word(bounds_at + 2 * i));

    const std::span<const std::byte> rest = file.subspan(metafile_at);
    const auto size =
        static_cast<std::size_t>(std::min<uint64_t>(uint64_t{header.Long(metafile_at + size_at)} * 2, rest.size()));
    const byte_view metafile(rest.first(size));
    if (size < header_size || metafile.Word(header_words_at) != header_size / 2)
        return picture_data_error;
    const std::size_t end = EndOfRecords(metafile, size);
    picture.bits.assign(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(end));
    constexpr std::byte end_record[2 * least_record_words] = {std::byte{least_record_words}};
    picture.bits.insert(picture.bits.end(), std::begin(end_record), std::end(end_record));
    for (std::size_t i = 0; i < 4; ++i)
        picture.bits[size_at + i] = static_cast<std::byte>(picture.bits.size() / 2 >> 8 * i);
    return picture_done;
}

} // namespace vh
