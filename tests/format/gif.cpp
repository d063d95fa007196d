// GIF files, made by a writer of the tests' own; digests of whole pictures come from another decoder.
#include "../../pictures/formats/gif_header.h"

#include "../support/gif_writer.h"
#include "../support/test.h"

namespace {

using namespace vh;
using namespace vh::test;

std::span<const std::byte> Bytes(const std::string& text) { return std::as_bytes(std::span(text)); }

uint32_t CodeOf(const std::string& file)
{
    CGifHeader reader;
    const gif_record* record = nullptr;
    const uint32_t code = reader.Read(Bytes(file), record);
    EXPECT_EQ(record != nullptr, code == gif_done);
    EXPECT_EQ(reader.version() == CGifHeader::not_read, code != gif_done);
    return code;
}

// The pixels of an image, rows top first without padding.
std::vector<uint8_t> PixelsOf(const gif_image_record& image)
{
    std::vector<uint8_t> pixels;
    for (std::size_t y = 0; y < image.place.height; ++y) {
        const uint8_t* row = image.pixels + (image.place.height - 1 - y) * image.stride;
        pixels.insert(pixels.end(), row, row + image.place.width);
    }
    return pixels;
}

// The images of a file that has to be good.
std::vector<std::vector<uint8_t>> ImagesOf(const std::string& file)
{
    CGifHeader reader;
    const gif_record* record = nullptr;
    EXPECT_EQ(reader.Read(Bytes(file), record), gif_done);
    std::vector<std::vector<uint8_t>> images;
    for (uint32_t which = CGifHeader::from_first; reader.Next(which, record) == gif_done; which = CGifHeader::go_on)
        if (record->kind == gif_image)
            images.push_back(PixelsOf(record->image));
    return images;
}

uint64_t Digest(const std::vector<uint8_t>& pixels)
{
    uint64_t digest = 14695981039346656037u;
    for (const uint8_t pixel : pixels)
        digest = (digest ^ pixel) * 1099511628211u;
    return digest;
}

// Codes of three bits as they stand in the data of a picture with the minimum code size 2: 4 clears, 5 ends.
std::string Codes(std::initializer_list<unsigned> codes, std::initializer_list<unsigned> sizes = {})
{
    uint64_t bits = 0;
    unsigned count = 0;
    auto size = sizes.begin();
    for (const unsigned code : codes) {
        bits |= uint64_t{code} << count;
        count += size != sizes.end() ? *size++ : 3;
    }
    std::string data;
    for (; count > 0; count -= std::min(count, 8u), bits >>= 8)
        data += static_cast<char>(bits & 255);
    return std::string("\2") + static_cast<char>(data.size()) + data + '\0';
}

std::string FileOf(unsigned width, unsigned height, const std::string& data, bool interlaced = false)
{
    return GifScreen(width, height, 2) + GifImageHead(0, 0, width, height, interlaced) + data + ";";
}

TEST(Gif, FollowsTheCodes)
{
    using pixels = std::vector<uint8_t>;
    // of 4 x 1
    vh::test::Table<const char*, std::string, pixels> cases = {
        {"single pixels", Codes({4, 0, 1, 2, 3, 5}, {3, 3, 3, 3, 4, 4}), {0, 1, 2, 3}},
        {"the string being made", Codes({4, 1, 6, 5}), {1, 1, 1, 0}},
        {"a clear straight behind a clear", Codes({4, 4, 4, 2, 2, 5}), {2, 2, 0, 0}},
        {"no clear at the start, and no string of it", Codes({3, 2, 6, 5}), {3, 2, 3, 2}},
        {"a first code above the table stands for 0", Codes({4, 7, 1, 6, 5}), {0, 1, 0, 1}},
        {"an end at once", Codes({4, 5}), {0, 0, 0, 0}},
        {"more pixels than there is room for", Codes({4, 1, 6, 2, 7, 5}, {3, 3, 3, 3, 4, 4}), {1, 1, 1, 2}},
    };
    for (const auto& [name, packed, wanted] : cases)
        EXPECT_EQ(ImagesOf(FileOf(4, 1, packed)), std::vector<pixels>{wanted}) << name;
    vh::test::Table<const char*, std::string> broken = {{"a code above the next", Codes({4, 1, 7, 5})},
                                                        {"no string before", Codes({6, 5})},
                                                        {"no end", Codes({4, 1, 1})},
                                                        {"minimum 1", "\1\1\1" + std::string(1, '\0')},
                                                        {"minimum 10", "\12\1\1" + std::string(1, '\0')}};
    for (const auto& [name, packed] : broken)
        EXPECT_EQ(CodeOf(FileOf(4, 1, packed)), gif_data_error) << name;
}

TEST(Gif, HasTheRowsOfADeviceBitmap)
{
    // Rows 0 to 19 of five pixels, in the order of an interlaced file.
    constexpr unsigned height = 20;
    std::vector<uint8_t> plain, interlaced;
    const unsigned order[] = {0, 8, 16, 4, 12, 2, 6, 10, 14, 18, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19};
    for (unsigned i = 0; i < height; ++i) {
        plain.insert(plain.end(), 5, static_cast<uint8_t>(i));
        interlaced.insert(interlaced.end(), 5, static_cast<uint8_t>(order[i]));
    }
    for (const bool is_interlaced : {false, true}) {
        const std::string file = GifScreen(5, height, 5) + GifImageHead(0, 0, 5, height, is_interlaced) +
                                 PackGifPixels(is_interlaced ? interlaced : plain, {.minimum = 5}) + ";";
        CGifHeader reader;
        const gif_record* record = nullptr;
        ASSERT_EQ(reader.Read(Bytes(file), record), gif_done);
        ASSERT_EQ(reader.Next(CGifHeader::from_first, record), gif_done);
        EXPECT_EQ(record->image.stride, 8u);
        EXPECT_EQ(record->image.pixels_size, 8u * height);
        EXPECT_EQ(record->image.interlaced, is_interlaced);
        EXPECT_EQ(record->image.pixels[0], height - 1);
        EXPECT_EQ(record->image.pixels[8 * (height - 1)], 0);
        EXPECT_EQ(PixelsOf(record->image), plain);
    }
}

// A picture of the tests' own: noise, runs and slopes, by its number.
std::vector<uint8_t> Picture(unsigned number, unsigned width, unsigned height, unsigned bits)
{
    std::vector<uint8_t> pixels;
    uint32_t seed = number + 1;
    uint8_t run = 0;
    unsigned left = 0;
    for (unsigned i = 0; i < width * height; ++i) {
        seed = seed * 1664525 + 1013904223;
        if (left == 0) {
            left = number % 3 == 0 ? 1 : seed >> 26;
            run = static_cast<uint8_t>(seed >> 16);
        }
        left -= left != 0;
        const unsigned value = number % 3 == 2 ? i % width / 3 + i / width : run;
        pixels.push_back(static_cast<uint8_t>(value & ((1u << bits) - 1)));
    }
    return pixels;
}

TEST(Gif, ShowsWhatWasPacked)
{
    unsigned number = 0;
    for (const unsigned width : {1u, 2u, 7u, 16u, 61u, 300u})
        for (const unsigned height : {1u, 3u, 40u, 97u})
            for (const unsigned bits : {2u, 5u, 8u})
                for (const Clears clears : {Clears::when_full, Clears::never, Clears::often}) {
                    const auto pixels = Picture(++number, width, height, bits);
                    const GifPacking packing{bits, clears, number % 5 != 0, number % 4 ? 255u : 7u};
                    const std::string file = GifScreen(width, height, bits) + GifImageHead(0, 0, width, height) +
                                             PackGifPixels(pixels, packing) + ";";
                    EXPECT_EQ(ImagesOf(file), std::vector<std::vector<uint8_t>>(1, pixels)) << number;
                }
}

TEST(Gif, AgreesWithAnotherDecoder)
{
    vh::test::Table<unsigned, unsigned, unsigned, unsigned, bool, uint64_t> cases = {
        {1, 320, 200, 8, false, 0x3BF7BF67E6E99840},
        {2, 321, 203, 4, true, 0x48A62C9C19250F6F},
        {3, 640, 480, 8, true, 0x259B6C0DA6EF9F6C}};
    for (const auto& [number, across, down, bits, interlaced, digest] : cases) {
        const std::string file = GifScreen(across, down, bits) + GifImageHead(0, 0, across, down, interlaced) +
                                 PackGifPixels(Picture(number, across, down, bits), {.minimum = bits}) + ";";
        const auto images = ImagesOf(file);
        ASSERT_EQ(images.size(), 1u);
        EXPECT_EQ(Digest(images[0]), digest) << number;
    }
}

const std::string control = std::string("!\xF9\4\x0B\x34\x12\7", 7) + '\0'; // disposal 2, input, transparent 7
const std::string text_block = std::string("!\1\14\1\0\2\0\3\0\4\0\5\6\7\10\3abc\2de\0", 23);
const std::string loops = std::string("!\xFF\13NETSCAPE2.0\3\1\x2C\1\0", 19);
const std::string application = std::string("!\xFF\13ANIMEXTS1.0\3\1\2\3\0", 19);
const std::string comment = std::string("!\xFE\3abc\1d\0", 9);

TEST(Gif, DeliversItsBlocksInOrder)
{
    const std::string image = GifImageHead(1, 2, 4, 1, false, 3) + Codes({4, 1, 6, 5});
    const std::string file = GifScreen(6, 5, 4) + comment + loops + control + image + image + control + text_block +
                             application + image + ";";
    CGifHeader reader;
    const gif_record* header = nullptr;
    ASSERT_EQ(reader.Read(Bytes(file), header), gif_done);
    EXPECT_EQ(reader.version(), CGifHeader::gif_89a);
    EXPECT_EQ(header->kind, gif_header);
    EXPECT_EQ(header->header.frame_count, 3u);
    EXPECT_EQ(header->header.screen_width, 6);
    EXPECT_EQ(header->header.screen_height, 5);
    EXPECT_EQ(header->header.color_resolution, 3);
    EXPECT_EQ(header->header.color_count, 16u);
    EXPECT_EQ(header->header.colors[5].blue, 17);
    EXPECT_EQ(header->header.colors[5].red, 15);
    EXPECT_TRUE(header->header.loops);
    EXPECT_EQ(header->header.loop_count, 300);

    const gif_record* record = nullptr;
    EXPECT_EQ(reader.Next(0, record), gif_bad_argument);
    EXPECT_EQ(reader.Next(3, record), gif_bad_argument);
    ASSERT_EQ(reader.Next(CGifHeader::go_on, record), gif_done);
    const gif_record* first = record;
    EXPECT_EQ(first->image.control.delay, 0x1234);
    EXPECT_EQ(first->image.control.disposal, 2);
    EXPECT_TRUE(first->image.control.user_input);
    EXPECT_TRUE(first->image.control.transparent);
    EXPECT_EQ(first->image.control.transparent_index, 7);
    EXPECT_EQ(first->image.place.left, 1);
    EXPECT_EQ(first->image.place.top, 2);
    EXPECT_EQ(first->image.color_count, 8u);
    EXPECT_EQ(first->image.colors[1].green, 104);
    // The second image has no control block of its own.
    ASSERT_EQ(reader.Next(CGifHeader::go_on, record), gif_done);
    EXPECT_FALSE(record->image.control.transparent);
    EXPECT_EQ(record->image.control.delay, 0);
    ASSERT_EQ(reader.Next(CGifHeader::go_on, record), gif_done);
    EXPECT_EQ(record->kind, gif_plain_text);
    EXPECT_EQ(record->text.control.transparent_index, 7);
    EXPECT_EQ(record->text.place.height, 4);
    EXPECT_EQ(record->text.cell_width, 5);
    EXPECT_EQ(record->text.background, 8);
    EXPECT_STREQ(record->text.text, "abcde");
    EXPECT_EQ(record->text.length, 5u);
    ASSERT_EQ(reader.Next(CGifHeader::go_on, record), gif_done);
    EXPECT_EQ(record->kind, gif_unknown_extension);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(record->extension.data), record->extension.length),
              application.substr(2, application.size() - 3));
    ASSERT_EQ(reader.Next(CGifHeader::go_on, record), gif_done);
    EXPECT_EQ(record->kind, gif_image);
    EXPECT_EQ(reader.Next(CGifHeader::go_on, record), gif_no_more);
    EXPECT_EQ(record, nullptr);
    ASSERT_EQ(reader.Next(CGifHeader::from_first, record), gif_done);
    EXPECT_NE(record, first);

    EXPECT_EQ(reader.Free(nullptr), gif_bad_argument);
    EXPECT_EQ(reader.Free(first), gif_done);
    EXPECT_EQ(reader.Free(first), gif_unknown_record);
    EXPECT_EQ(reader.Free(header), gif_done);
    reader.Reset();
    EXPECT_EQ(reader.version(), CGifHeader::not_read);
    EXPECT_EQ(reader.Free(record), gif_unknown_record);
    EXPECT_EQ(reader.Next(CGifHeader::from_first, record), gif_no_more);
}

TEST(Gif, TellsWhatIsWrong)
{
    const std::string image = GifImageHead(0, 0, 4, 1) + Codes({4, 1, 6, 5});
    const std::string screen = GifScreen(4, 1, 2);
    const std::string bad_text = std::string("!\1\3\1\2\3\2ab\0", 10);
    vh::test::Table<const char*, std::string, uint32_t> cases = {
        {"no image", screen + ";", 0},
        {"no tables at all", GifScreen(4, 1, 0) + image + ";", 0},
        {"GIF87a", GifScreen(4, 1, 2, "GIF87a") + image + ";", 0},
        {"GIF88a", GifScreen(4, 1, 2, "GIF88a") + image + ";", 13},
        {"nothing", "", 13},
        {"another introducer", screen + image + "x;", 13},
        {"another label", screen + std::string("!\5\0", 3) + image + ";", 13},
        {"a control block of another size", screen + std::string("!\xF9\3\0\0\0\0", 7) + image + ";", 13},
        {"a text that is left out", screen + bad_text + image + ";", 0},
        {"no end", screen + image, 5},
        {"nothing behind the screen", screen, 5},
        {"something behind the end", screen + image + ";x", 0},
        {"sub-blocks behind the end code", screen + image.substr(0, image.size() - 1) + std::string("\2ab\0;", 5), 0},
        {"another terminator", screen + image.substr(0, image.size() - 1) + "\7;", 0},
        {"larger than a file may be",
         screen + GifImageHead(0, 0, 65535, 65535) + Codes({4, 5}) + GifImageHead(0, 0, 65535, 65535) + Codes({4, 5}) +
             ";",
         14},
    };
    for (const auto& [name, bytes, code] : cases)
        EXPECT_EQ(CodeOf(bytes), code) << name;
}

TEST(Gif, SurvivesEveryCutAndEveryChangedByte)
{
    const auto pixels = Picture(2, 40, 30, 4);
    const std::string file = GifScreen(40, 30, 4) + loops + control + GifImageHead(0, 0, 40, 30, true, 2) +
                             PackGifPixels(pixels, {.minimum = 4, .block = 50}) + comment + text_block + application +
                             ";";
    ASSERT_EQ(CodeOf(file), gif_done);
    for (std::size_t length = 0; length < file.size(); ++length) {
        // Of exactly the size, so that a read too far is seen.
        const std::vector<char> cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
        CGifHeader reader;
        const gif_record* record = nullptr;
        const uint32_t code = reader.Read(std::as_bytes(std::span(cut)), record);
        EXPECT_TRUE(code == gif_malformed || code == gif_data_error) << length;
    }
    constexpr std::size_t size_at = 13 + 48 + 19 + 8; // changes there make giants, which take their time
    for (std::size_t at = 0; at < file.size(); ++at)
        for (const int change : {1, 0x40, 0x80, 0xFF}) {
            if (at > size_at + 4 && at <= size_at + 8)
                continue;
            std::string changed = file;
            changed[at] = static_cast<char>(changed[at] ^ change);
            CGifHeader reader;
            const gif_record* record = nullptr;
            if (reader.Read(Bytes(changed), record) == gif_done)
                ImagesOf(changed);
        }
}

} // namespace
