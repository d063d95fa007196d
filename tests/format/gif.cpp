// GIF files, made by a writer of the tests' own; digests of whole pictures come from another decoder.
#include "../../pictures/formats/gif_header.h"

#include "../support/gif_writer.h"
#include "../support/test.h"

namespace {

using Pixels = std::vector<uint8_t>;

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
Pixels PixelsOf(const gif_image_record& image)
{
    Pixels pixels;
    for (std::size_t y = 0; y < image.place.height; ++y) {
        const uint8_t* row = image.pixels + (image.place.height - 1 - y) * image.stride;
        pixels.insert(pixels.end(), row, row + image.place.width);
    }
    return pixels;
}

// The images of a file that has to be good.
std::vector<Pixels> ImagesOf(const std::string& file)
{
    CGifHeader reader;
    const gif_record* record = nullptr;
    EXPECT_EQ(reader.Read(Bytes(file), record), gif_done);
    std::vector<Pixels> images;
    for (uint32_t which = CGifHeader::from_first; reader.Next(which, record) == gif_done; which = CGifHeader::go_on)
        if (record->kind == gif_image)
            images.push_back(PixelsOf(record->image));
    return images;
}

uint64_t Digest(const Pixels& pixels)
{
    uint64_t digest = 14695981039346656037u;
    for (const uint8_t pixel : pixels)
        digest = (digest ^ pixel) * 1099511628211u;
    return digest;
}

// Codes of three bits, later four, as they stand in the data of a picture with the minimum code size 2: 4 clears,
// 5 ends.
std::string Codes(std::initializer_list<unsigned> codes, unsigned of_three = 99)
{
    uint64_t bits = 0;
    unsigned count = 0, number = 0;
    for (const unsigned code : codes) {
        bits |= uint64_t{code} << count;
        count += number++ < of_three ? 3 : 4;
    }
    const std::string data(reinterpret_cast<const char*>(&bits), (count + 7) / 8);
    return std::string("\2") + static_cast<char>(data.size()) + data + '\0';
}

std::string FileOf(unsigned width, unsigned height, const std::string& data, unsigned bits = 2, bool interlaced = false)
{
    return GifScreen(width, height, bits) + GifImageHead(0, 0, width, height, interlaced) + data + ";";
}

TEST(Gif, FollowsTheCodes)
{
    // of 4 x 1
    Table<const char*, std::string, Pixels> cases = {
        {"single pixels", Codes({4, 0, 1, 2, 3, 5}, 4), {0, 1, 2, 3}},
        {"the string being made", Codes({4, 1, 6, 5}), {1, 1, 1, 0}},
        {"a clear straight behind a clear", Codes({4, 4, 4, 2, 2, 5}), {2, 2, 0, 0}},
        {"no clear at the start, and no string of it", Codes({3, 2, 6, 5}), {3, 2, 3, 2}},
        {"a first code above the table stands for 0", Codes({4, 7, 1, 6, 5}), {0, 1, 0, 1}},
        {"an end at once", Codes({4, 5}), {0, 0, 0, 0}},
        {"more pixels than there is room for", Codes({4, 1, 6, 2, 7, 5}, 4), {1, 1, 1, 2}}};
    for (const auto& [name, packed, wanted] : cases)
        EXPECT_EQ(ImagesOf(FileOf(4, 1, packed)), std::vector<Pixels>{wanted}) << name;
    Table<const char*, std::string> broken = {{"a code above the next", Codes({4, 1, 7, 5})},
                                              {"no string before", Codes({6, 5})},
                                              {"no end", Codes({4, 1, 1})},
                                              {"minimum 1", std::string("\1\1\x32\0", 4)},
                                              {"minimum 10", std::string("\12\3\0\x0C\x20\0", 6)}};
    for (const auto& [name, packed] : broken)
        EXPECT_EQ(CodeOf(FileOf(4, 1, packed)), gif_data_error) << name;
}

TEST(Gif, HasTheRowsOfADeviceBitmap)
{
    // Rows 0 to 19 of five pixels, in the order of an interlaced file.
    constexpr unsigned height = 20;
    Pixels plain, interlaced;
    for (const unsigned row : {0, 8, 16, 4, 12, 2, 6, 10, 14, 18, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19}) {
        plain.insert(plain.end(), 5, static_cast<uint8_t>(plain.size() / 5));
        interlaced.insert(interlaced.end(), 5, static_cast<uint8_t>(row));
    }
    for (const bool is_interlaced : {false, true}) {
        const std::string data = PackGifPixels(is_interlaced ? interlaced : plain, {.minimum = 5});
        const std::string file = FileOf(5, height, data, 5, is_interlaced);
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
Pixels Picture(unsigned number, unsigned width, unsigned height, unsigned bits)
{
    Pixels pixels;
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
                    EXPECT_EQ(ImagesOf(FileOf(width, height, PackGifPixels(pixels, packing), bits)),
                              std::vector<Pixels>{pixels})
                        << number;
                }
}

TEST(Gif, AgreesWithAnotherDecoder)
{
    Table<unsigned, unsigned, unsigned, unsigned, bool, uint64_t> cases = {{1, 320, 200, 8, false, 0x3BF7BF67E6E99840},
                                                                           {2, 321, 203, 4, true, 0x48A62C9C19250F6F},
                                                                           {3, 640, 480, 8, true, 0x259B6C0DA6EF9F6C}};
    for (const auto& [number, across, down, bits, interlaced, digest] : cases) {
        const std::string data = PackGifPixels(Picture(number, across, down, bits), {.minimum = bits});
        const auto images = ImagesOf(FileOf(across, down, data, bits, interlaced));
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
    using values = std::vector<unsigned>;
    const auto& screen = header->header;
    EXPECT_EQ(
        (values{screen.frame_count, screen.screen_width, screen.screen_height, screen.color_resolution,
                screen.color_count, screen.colors[5].blue, screen.colors[5].red, screen.loops, screen.loop_count}),
        (values{3, 6, 5, 3, 16, 17, 15, true, 300}));

    const gif_record* record = nullptr;
    EXPECT_EACH(gif_bad_argument, reader.Next(0, record), reader.Next(3, record));
    std::vector<const gif_record*> all;
    for (const auto kind : {gif_image, gif_image, gif_plain_text, gif_unknown_extension, gif_image}) {
        ASSERT_EQ(reader.Next(CGifHeader::go_on, record), gif_done);
        EXPECT_EQ(record->kind, kind);
        all.push_back(record);
    }
    const auto control_of = [](const gif_control& read) {
        return values{read.delay, read.disposal, read.user_input, read.transparent, read.transparent_index};
    };
    EXPECT_EQ(control_of(all[0]->image.control), (values{0x1234, 2, true, true, 7}));
    EXPECT_EQ(control_of(all[1]->image.control), (values{0, 0, false, false, 0})) << "it has none of its own";
    EXPECT_EQ(control_of(all[2]->text.control), (values{0x1234, 2, true, true, 7}));
    const gif_image_record& first = all[0]->image;
    EXPECT_EQ((values{first.place.left, first.place.top, first.color_count, first.colors[1].green}),
              (values{1, 2, 8, 104}));
    const auto& text = all[2]->text;
    EXPECT_EQ((values{text.place.height, text.cell_width, text.background, text.length}), (values{4, 5, 8, 5}));
    EXPECT_STREQ(text.text, "abcde");
    const auto& unknown = all[3]->extension;
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(unknown.data), unknown.length),
              application.substr(2, application.size() - 3));
    EXPECT_EQ(reader.Next(CGifHeader::go_on, record), gif_no_more);
    EXPECT_EQ(record, nullptr);
    ASSERT_EQ(reader.Next(CGifHeader::from_first, record), gif_done);
    EXPECT_NE(record, all[0]);

    EXPECT_EQ(reader.Free(nullptr), gif_bad_argument);
    EXPECT_EQ(reader.Free(all[0]), gif_done);
    EXPECT_EQ(reader.Free(all[0]), gif_unknown_record);
    EXPECT_EQ(reader.Free(header), gif_done);
    reader.Reset();
    EXPECT_EQ(reader.version(), CGifHeader::not_read);
    EXPECT_EQ(reader.Free(record), gif_unknown_record);
    EXPECT_EQ(reader.Next(CGifHeader::from_first, record), gif_no_more);
}

TEST(Gif, TellsWhatIsWrong)
{
    const std::string image = GifImageHead(0, 0, 4, 1) + Codes({4, 1, 6, 5}), screen = GifScreen(4, 1, 2);
    const std::string bad_text = std::string("!\1\3\1\2\3\2ab\0", 10);
    const std::string giant = GifImageHead(0, 0, 65535, 65535) + Codes({4, 5});
    Table<const char*, std::string, uint32_t> cases = {
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
        {"larger than a file may be", screen + giant + giant + ";", 14}};
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
