// Bitmap, metafile and palette files: where things stand in them, and what is refused.
#include "../../pictures/formats/bitmap_file.h"
#include "../../pictures/formats/metafile_file.h"
#include "../../pictures/formats/palette_file.h"
#include "../support/bitmap_writer.h"
#include "../support/test.h"

namespace {

TEST(PictureFiles, FindTheTableAndThePixelsOfABitmap)
{
    const std::string row(4, '\x5A');
    Table<const char*, std::string, std::size_t, std::size_t> good = {
        {"1 bit", BitmapFile(BitmapHeader(9, 1, 1), BitmapTable(2), row), 2, 62},
        {"one color of two", BitmapFile(BitmapHeader(9, 1, 1, 0, 1), BitmapTable(1), row), 1, 58},
        {"4 bits", BitmapFile(BitmapHeader(8, -1, 4), BitmapTable(16), row), 16, 118},
        {"more colors than fit", BitmapFile(BitmapHeader(8, 1, 4, 0, 20), BitmapTable(20), row), 16, 134},
        {"16 bits", BitmapFile(BitmapHeader(2, 1, 16), "", row), 0, 54},
        {"with fields", BitmapFile(BitmapHeader(2, 1, 16, 3), BitmapTable(3), row), 0, 66},
        {"with fields inside", BitmapFile(BitmapHeader(2, 1, 16, 3, 0, 108), "", row), 0, 122},
        {"24 bits with a table", BitmapFile(BitmapHeader(1, 1, 24, 0, 7), BitmapTable(7), row), 0, 82},
        {"old", BitmapFile(Long(12) + Word(8) + Word(1) + Word(1) + Word(4), BitmapTable(16, 3), row), 16, 74},
        {"later", BitmapFile(BitmapHeader(1, 1, 24), "", "...." + row, 58), 0, 58},
        {"told in the table", BitmapFile(BitmapHeader(8, 1, 4), BitmapTable(16), row, 60), 16, 118},
        {"told beyond the end", BitmapFile(BitmapHeader(8, 1, 4), BitmapTable(16), row, 5000), 16, 118}};
    for (const auto& [name, file, colors, pixels_at] : good) {
        bitmap_picture picture;
        EXPECT_EQ(ReadBitmapFile(Bytes(file), picture), 0u) << name;
        EXPECT_EQ(picture.colors.size(), colors) << name;
        EXPECT_EQ(picture.pixels.data(), Bytes(file).data() + pixels_at) << name;
        EXPECT_EQ(picture.pixels.size(), 4u) << name;
        if (colors) {
            EXPECT_EQ(picture.colors[0].red, 0x33) << name;
            EXPECT_EQ(picture.colors[colors - 1].blue, 0x11 + colors - 1) << name;
        }
        // A resource has no file header, and its pixels stand behind the table.
        EXPECT_EQ(ReadBitmapResource(Bytes(file).subspan(14), picture), 0u) << name;
        EXPECT_EQ(picture.pixels.data(), Bytes(file).data() + (pixels_at == 58 && !colors ? 54 : pixels_at)) << name;
    }
    Table<const char*, std::string> bad = {
        {"one byte short", BitmapFile(BitmapHeader(8, 1, 4), BitmapTable(16), "abc")},
        {"a table beyond the end", BitmapFile(BitmapHeader(8, 1, 8, 0, 0xFFFFFFFF), BitmapTable(16), row)},
        {"no width", BitmapFile(BitmapHeader(0, 1, 24), "", row)},
        {"no height", BitmapFile(BitmapHeader(1, 0, 24), "", row)},
        {"least height", BitmapFile(BitmapHeader(1, INT32_MIN, 24), "", row)},
        {"giant", BitmapFile(BitmapHeader(INT32_MAX, INT32_MAX, 32), "", row)},
        {"2 bits", BitmapFile(BitmapHeader(1, 1, 2), BitmapTable(4), row)},
        {"a picture of another kind inside", BitmapFile(BitmapHeader(1, 1, 0, 5), "", row)},
        {"runs top first", BitmapFile(BitmapHeader(1, -1, 8, 1), BitmapTable(256), std::string("\1\7\0\1", 4))},
        {"giant runs", BitmapFile(BitmapHeader(1 << 20, 1 << 20, 8, 1), BitmapTable(256), row)},
        {"a header of 16", BitmapFile(BitmapHeader(1, 1, 24).replace(0, 1, 1, '\x10'), "", row)},
        {"another mark", "MB" + BitmapFile(BitmapHeader(1, 1, 24), "", row).substr(2)}};
    for (const auto& [name, file] : bad) {
        bitmap_picture picture;
        EXPECT_EQ(ReadBitmapFile(Bytes(file), picture), picture_data_error) << name;
    }
}

TEST(PictureFiles, TakeRunsApart)
{
    // 5 x 2, the lower row first
    Table<const char*, unsigned, std::string, std::string> cases = {
        {"runs", 8, std::string("\5\7\0\0\2\1\3\2\0\1", 10), "\7\7\7\7\7\1\1\2\2\2"},
        {"pixels", 8, std::string("\0\5\1\2\3\4\5\0\0\0\5\6\0\1", 14), "\1\2\3\4\5\6\6\6\6\6"},
        {"moves", 8, std::string("\1\7\0\2\2\1\2\3\0\1", 10), std::string("\7\0\0\0\0\0\0\0\3\3", 10)},
        {"beyond the row", 8, std::string("\11\7\0\0\1\1\0\1", 8), std::string("\7\7\7\7\7\1\0\0\0\0", 10)},
        {"beyond the rows", 8, std::string("\0\2\0\11\1\1\0\1", 8), std::string(10, '\0')},
        {"half bytes", 4, std::string("\5\x12\0\0\0\3\x34\x50\2\x67\0\1", 12), "\1\2\1\2\1\3\4\5\6\7"},
        {"cut in a run", 8, std::string("\5\7\0\0\2", 5), std::string("\7\7\7\7\7\0\0\0\0\0", 10)},
        {"cut in pixels", 8, std::string("\0\5\1\2", 4), std::string("\1\2\0\0\0\0\0\0\0\0", 10)}};
    for (const auto& [name, bits, runs, shown] : cases) {
        const std::string file = BitmapFile(BitmapHeader(5, 2, bits, bits == 8 ? 1 : 2), BitmapTable(1u << bits), runs);
        bitmap_picture picture;
        ASSERT_EQ(ReadBitmapFile(Bytes(file), picture), 0u) << name;
        EXPECT_EQ(picture.bits, 8);
        ASSERT_EQ(picture.pixels.size(), 16u);
        const std::string pixels(reinterpret_cast<const char*>(picture.pixels.data()), 16);
        EXPECT_EQ(pixels.substr(0, 5) + pixels.substr(8, 5), shown) << name;
    }
}

std::string Record(unsigned words, unsigned function)
{
    return Long(words) + Word(function) + std::string(2 * words - 6, 'r');
}
// `words` is what the header tells of the size.
std::string MetafileFile(const std::string& records, unsigned words, const std::string& key = Long(0x9AC6CDD7))
{
    const std::string placed =
        key + Word(0) + Word(0xFFF6) + Word(20) + Word(90) + Word(70) + Word(1000) + Long(0) + Word(0);
    return placed + Word(1) + Word(9) + Word(0x300) + Long(words) + Word(0) + Long(5) + Word(0) + records;
}

TEST(PictureFiles, GiveAWholeMetafile)
{
    const std::string two = Record(4, 0x20B) + Record(5, 0x20C), end = Record(3, 0);
    Table<const char*, std::string, uint32_t, std::string> cases = {
        {"as it should be", MetafileFile(two + end, 21), 0, two},
        {"its size with the file's header", MetafileFile(two + end, 32), 0, two},
        {"a giant's size", MetafileFile(two + end, 0xFFFFFFFF), 0, two},
        {"a size that cuts a record", MetafileFile(two + end, 14), 0, Record(4, 0x20B)},
        {"no end", MetafileFile(two, 18), 0, two},
        {"something behind the end", MetafileFile(two + end + Record(3, 1), 24), 0, two},
        {"cut in a record", MetafileFile(two.substr(0, 13), 21), 0, Record(4, 0x20B)},
        {"a record of no size", MetafileFile(Record(4, 0x20B) + Long(2) + Word(7) + end, 19), 0, Record(4, 0x20B)},
        {"a record of any size", MetafileFile(Long(0xFFFFFFFF) + Word(7) + end, 19), 0, ""},
        {"no room for the header", MetafileFile("", 8), 13, ""},
        {"another key", MetafileFile(two + end, 21, Long(0x9AC6CDD6)), 13, ""},
        {"cut in the header", MetafileFile("", 9).substr(0, 39), 13, ""}};
    for (const auto& [name, bytes, code, kept] : cases) {
        metafile_picture picture;
        EXPECT_EQ(ReadMetafile(Bytes(bytes), picture), code) << name;
        if (code)
            continue;
        EXPECT_EQ(picture.left, -10);
        EXPECT_EQ(picture.bottom, 70);
        const std::string bits(reinterpret_cast<const char*>(picture.bits.data()), picture.bits.size());
        EXPECT_EQ(bits.substr(18), kept + end) << name;
        EXPECT_EQ(bits.substr(6, 4), Long(bits.size() / 2)) << name;
    }
}

TEST(PictureFiles, ReadPalettes)
{
    // Where the first color goes and how many there are; none in a file that is refused.
    Table<const char*, std::string, unsigned, unsigned> cases = {
        {"whole", PaletteFile(256, 256, 4 + 1024), 0, 256},
        {"whole, with more behind", PaletteFile(256, 300, 4 + 1200), 0, 256},
        {"a short chunk", PaletteFile(256, 256, 4 + 400), 0, 100},
        {"between the system's colors", PaletteFile(236, 236, 4 + 944), 10, 236},
        {"few", PaletteFile(16, 16, 4 + 64), 10, 16},
        {"too many", PaletteFile(1000, 1000, 4 + 4000), 10, 236},
        {"cut", PaletteFile(256, 256, 4 + 1024).substr(0, 1047), 0, 0},
        {"a chunk without a header", PaletteFile(256, 256, 3), 0, 0},
        {"cut in the header", PaletteFile(256, 0, 4).substr(0, 23), 0, 0},
        {"another mark", "RIFX" + PaletteFile(256, 256, 1028).substr(4), 0, 0}};
    for (const auto& [name, bytes, first, count] : cases) {
        palette_picture palette;
        EXPECT_EQ(ReadPaletteFile(Bytes(bytes), palette), count ? picture_done : picture_data_error) << name;
        if (!count)
            continue;
        EXPECT_EQ(palette.version, 0x300);
        EXPECT_EQ(palette.has_system_colors, first != 0) << name;
        EXPECT_EQ(palette.entries[first].green, 2) << name;
        EXPECT_EQ(std::ranges::count_if(palette.entries, [](const auto& entry) { return entry.flags != 0; }), count)
            << name;
    }
}

TEST(PictureFiles, SurviveEveryCutAndEveryChangedByte)
{
    const auto read = [](std::span<const std::byte> bytes) {
        bitmap_picture bitmap;
        metafile_picture metafile;
        return bytes.empty() || bytes[0] == std::byte{'B'} ? ReadBitmapFile(bytes, bitmap)
                                                           : ReadMetafile(bytes, metafile);
    };
    const std::string runs("\5\7\0\0\0\5\1\2\3\4\5\0\0\2\1\1\3\1\0\1", 20);
    for (const std::string& bytes : {BitmapFile(BitmapHeader(5, 3, 8, 1), BitmapTable(256), runs),
                                     BitmapFile(BitmapHeader(3, 2, 16, 3), BitmapTable(3), std::string(16, 'p')),
                                     MetafileFile(Record(4, 0x20B) + Record(5, 0x20C) + Record(3, 0), 21)}) {
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            // Of exactly the size, so that a read too far is seen.
            const std::vector<char> cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
            read(std::as_bytes(std::span(cut)));
        }
        for (std::size_t at = 0; at < bytes.size(); ++at)
            for (const int change : {1, 0x40, 0xFF}) {
                std::vector<char> changed(bytes.begin(), bytes.end());
                changed[at] = static_cast<char>(changed[at] ^ change);
                const uint32_t code = read(std::as_bytes(std::span(changed)));
                EXPECT_TRUE(code == picture_done || code == picture_data_error);
            }
    }
}

} // namespace
