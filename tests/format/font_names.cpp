// Names in TrueType files that are put together by hand.
#include "../../files/font_names.h"
#include "../support/test.h"

namespace {

struct Name {
    unsigned platform, language, number;
    std::u16string text;
};

struct Font {
    unsigned major = 1, minor = 0, tables = 2;
    const char* tag = "name";
    std::vector<Name> names = {
        {1, 0x409, 4, u"Other"}, {3, 0x407, 4, u"Deutsch"}, {3, 0x409, 4, u"First"}, {3, 0x409, 4, u"Second"}};
    std::size_t cut = 0;

    std::string Bytes() const
    {
        std::string records, strings, file;
        const auto put = [](std::string& to, unsigned value, int bytes) {
            for (int i = bytes - 1; i >= 0; --i)
                to += static_cast<char>(value >> 8 * i);
        };
        for (const Name& name : names) {
            for (const unsigned value :
                 {name.platform, 1u, name.language, name.number, static_cast<unsigned>(name.text.size() * 2),
                  static_cast<unsigned>(strings.size())})
                put(records, value, 2);
            for (const char16_t unit : name.text)
                put(strings, unit, 2);
        }
        for (const unsigned value : {major, minor, tables, 0u, 0u, 0u})
            put(file, value, 2);
        file += "glyf" + std::string(12, '\0') + tag + std::string(4, '\0');
        put(file, 44, 4);
        put(file, 0, 4);
        for (const auto value : {std::size_t{0}, names.size(), 6 + records.size()})
            put(file, static_cast<unsigned>(value), 2);
        file += records + strings;
        return file.substr(0, file.size() - cut);
    }
};

std::string Look(const Font& font, int number, int language, int most)
{
    const std::string file = font.Bytes();
    std::u16string text;
    int length = -7;
    const auto status = vh::ReadFontName(
        [&](std::uint64_t offset, std::span<std::byte> bytes) {
            if (offset > file.size() || bytes.size() > file.size() - offset)
                return false;
            std::memcpy(bytes.data(), file.data() + offset, bytes.size());
            return true;
        },
        number, language, most, text, length);
    if (status == vh::font_name_status::not_found)
        return "none";
    if (status == vh::font_name_status::too_long)
        return "too long " + std::to_string(length);
    return std::string(text.begin(), text.end()) + " " + std::to_string(length);
}

TEST(FontNames, AreFoundByNumberAndLanguage)
{
    EXPECT_EQ(Look({}, 4, 0x409, 100), "First 10");
    EXPECT_EQ(Look({}, 4, 0x409, 10), "First 10") << "the size equals the bytes";
    EXPECT_EQ(Look({}, 4, 0x409, 9), "too long 10");
    EXPECT_EQ(Look({}, 4, 0x407, 100), "Deutsch 14");
    EXPECT_EQ(Look({}, 4, 0x40C, 100), "none");
    EXPECT_EQ(Look({}, 3, 0x409, 100), "none");
    EXPECT_EQ(Look({}, 4 + 0x10000, 0x409, 100), "none") << "all 32 bits count";
}

TEST(FontNames, AreNotLookedForInOtherFiles)
{
    const Font fonts[] = {{.major = 2},    {.minor = 1},  {.tables = 0},        {.tables = 1},
                          {.tag = "nome"}, {.names = {}}, {.cut = 12 + 14 + 10}};
    for (const Font& font : fonts)
        EXPECT_EQ(Look(font, 4, 0x409, 100), "none") << font.major << font.minor << font.tables << font.tag;
    EXPECT_EQ(Look({.cut = 30}, 4, 0x409, 9), "too long 10") << "the name itself is not read yet";
}

} // namespace
