// The container of a skin and the grammar of its text.
#include "../../skin/skin_container.h"
#include "../../skin/skin_text.h"
#include "../support/test.h"

namespace {

std::string Listed(std::span<const std::byte> bytes)
{
    std::string all;
    const bool complete = ForEachSkinEntry(bytes, [&](std::string_view name, std::span<const std::byte> content) {
        all +=
            std::string(name) + "=" + std::string(reinterpret_cast<const char*>(content.data()), content.size()) + " ";
    });
    return all + (complete ? "." : "!");
}

TEST(SkinContainer, ComesBackBitForBit)
{
    std::mt19937 random(3);
    for (const std::size_t size : {0u, 1u, 7u, 8u, 9u, 1000u}) {
        std::vector<std::byte> bytes(size);
        for (std::byte& one : bytes)
            one = static_cast<std::byte>(random());
        std::vector<std::byte> both = bytes;
        ScrambleSkin(both);
        DescrambleSkin(both);
        EXPECT_EQ(both, bytes);
        // Byte by byte as the format tells it: not (turned by four bits, with the key's byte over it).
        std::vector<std::byte> decoded = bytes;
        DescrambleSkin(decoded);
        for (std::size_t i = 0; i < size; ++i) {
            const auto stored = static_cast<unsigned>(bytes[i]);
            const unsigned turned = (stored % 16 * 16 + stored / 16) ^ skin_key[i % 8];
            ASSERT_EQ(static_cast<unsigned>(decoded[i]), 255 - turned);
        }
    }
    // The first four letters of the phrase, and the same number over the others.
    constexpr std::string_view phrase = "OLD TIDE";
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(skin_key[i] ^ phrase[i], skin_key[i + 4] ^ phrase[i + 4]);
}

TEST(SkinContainer, ListsEntriesAndNoticesWhatIsCut)
{
    std::vector<std::byte> file;
    AddSkinEntry(file, "Skin.INI", Bytes("[ALL]"));
    AddSkinEntry(file, "empty.bmp", {});
    AddSkinEntry(file, "a.gif", Bytes(std::string_view("x\0y", 3)));
    const std::string whole = Listed(file);
    EXPECT_EQ(whole, std::string("Skin.INI=[ALL] empty.bmp= a.gif=x\0y .", 37));
    for (std::size_t length = 1; length < file.size(); ++length) {
        const std::string cut = Listed(std::span(file).first(length));
        const bool at_an_end = cut.back() == '.';
        EXPECT_TRUE(whole.starts_with(cut.substr(0, cut.size() - 1)));
        EXPECT_EQ(at_an_end, length == 16 || length == 28) << length;
    }
    Table<std::string_view, const char*> wrong = {
        {{"a\0009\0xy", 6}, "!"}, {{"a\00018446744073709551615\0", 23}, "!"}, {{"a\0\0x", 4}, "!"},
        {{"a\000-1\0x", 6}, "!"}, {{"a\00099999999999999999999\0", 23}, "!"}, {{"abc", 3}, "!"},
        {{"a\0001x\0x", 6}, "!"}, {{"a\0000\0b\0001\0c", 9}, "a= b=c ."},     {{"\0000\0", 3}, "= ."}};
    for (const auto& [bytes, listed] : wrong)
        EXPECT_EQ(Listed(Bytes(bytes)), listed);
    Table<const char*, bool> names = {{"skin.ini", true}, {"SKIN.INI", true}, {"skin.in", false}, {"skin.inix", false}};
    for (const auto& [name, is_text] : names)
        EXPECT_EQ(IsSkinText(name), is_text);
}

TEST(SkinText, ReadsValues)
{
    Table<const char*, uint32_t> colors = {{"1,2,3", 0x030201},   {" 255 , 0x , 17", 0x1100FF}, {"1", 77}, {"", 77},
                                           {"1,2,3,4", 0x040201}, {"256,-1,300", 0x2CFF00},     {",,", 0}};
    for (const auto& [text, wanted] : colors) {
        uint32_t color = 77;
        const bool known = ReadSkinColor(text, color);
        EXPECT_EQ(known, color != 77);
        EXPECT_EQ(color, wanted) << text;
    }
    Table<const char*, int, int> pairs = {{"1,2", 1, 2}, {"-5, 7", -5, 7}, {"3", 9, 9}, {"1,2,3", 1, 2}, {"x,y", 0, 0}};
    for (const auto& [text, x, y] : pairs) {
        skin_pair pair{9, 9};
        ReadSkinPair(text, pair);
        EXPECT_EQ(pair, (skin_pair{x, y})) << text;
    }
    const auto exists = [](std::string_view name) { return name == "ALL-0007"; };
    Table<const char*, skin_section_kind, const char*> names = {
        {"ALL", skin_section_kind::all, ""},         {"ALL-0007", skin_section_kind::all_of_language, "ALL"},
        {"SKINS", skin_section_kind::header, "ALL"}, {"ALLES", skin_section_kind::header, "ALL"},
        {"Page", skin_section_kind::dialog, "ALL"},  {"Page-0007", skin_section_kind::dialog, "ALL-0007"},
        {"all", skin_section_kind::dialog, "ALL"},   {"Page-0009", skin_section_kind::dialog, "ALL"}};
    for (const auto& [name, kind, parent] : names) {
        EXPECT_EQ(KindOfSkinSection(name), kind) << name;
        EXPECT_EQ(ParentOfSkinSection(name, exists), parent) << name;
    }
}

TEST(SkinText, BuildsSectionsInTheirOrder)
{
    const std::map<std::string, std::string> values = {
        {"ALL/BUTTONSUP", "up.gif"}, {"ALL/BUTTONSDOWN", "down.gif"},    {"ALL/RECTS", "1"},
        {"ALL/RECT1POS", "1,2"},     {"ALL/BUTTONSOPT", "SCALE"},        {"Page/RECTS", "2"},
        {"ALL/RECT1AREA", "30,40"},  {"ALL/BUTTONSTXTCLR", "1,1,1"},     {"Page/IMAGES", "2"},
        {"Page/RECT2", "9,8,7"},     {"ALL-0007/BUTTONSUP", "auf.gif"},  {"Page/IMAGE1OPT", "HCENTER,TRANSPARENT,NONE"},
        {"Page/IMAGE1", "a.bmp"},    {"Page/TEXTCOLOR", "3,2,1"},        {"Page/IMAGE1TRNSPRNTCLR", "0,0,255"},
        {"Page/IMAGE1POS", "5,6"},   {"Page-0007/BUTTON1", "12"},        {"Page-0007/BUTTON2OPT", "TRANSPARENT"},
        {"Page-0007/BUTTONS", "3"},  {"Page-0007/BUTTON2UP", "own.bmp"}, {"Page-0007/BUTTON2TRNSPRNTCLR", "12"},
        {"Page-0007/BUTTON2", "1"},  {"Page-0007/BUTTON2POS", "7,8"},    {"Page-0007/BUTTON2DISTXTCLR", "4,5,6"},
        {"Many/IMAGES", "-4"},       {"Many/RECTS", "2000000000"}};
    const skin_reader read = [&](std::string_view section, std::string_view key, skin_form form) {
        const auto found = values.find(std::string(section) + "/" + std::string(key));
        EXPECT_EQ(RoomFor(form), key.ends_with("UP") || key.ends_with("DOWN") ||
                                         (key.starts_with("IMAGE") && key.size() == 6 && key != "IMAGES")
                                     ? 260u
                                     : 1000u)
            << key;
        return found == values.end() ? std::string() : found->second;
    };
    const skin_colors colors{0xF0F0F0, 0x000001, 0x808081};
    const auto sections =
        ReadSkinText(read, {"Page-0007", "SKINS", "Page", "ALL-0007", "ALL", "Many", "ALLES", "Page"}, colors);
    std::string order;
    for (const skin_section_text& section : sections)
        order += section.name + " ";
    ASSERT_EQ(order, "ALL ALL-0007 Page-0007 Page Many ");
    const skin_section_text& all = sections[0];
    EXPECT_EQ(all.text_color, colors.text);
    ASSERT_EQ(all.rects.size(), 1u);
    EXPECT_EQ(all.rects[0].color, colors.face) << "the system's, where none is named";
    EXPECT_EQ(all.rects[0].pos, (skin_pair{1, 2}));
    EXPECT_EQ(all.rects[0].area, (skin_pair{30, 40}));
    const skin_button_text& standard = *all.defaults;
    EXPECT_EQ(standard.options, 2u | 1048576u);
    EXPECT_EQ(std::tuple(standard.transparent, standard.text_color, standard.disabled_color),
              std::tuple(skin_button_transparent, 0x010101u, colors.disabled_text));
    // A language's defaults hold for its sections: file by file, option by option.
    EXPECT_EQ(sections[1].defaults->options, 2u);
    const skin_button_text& first = sections[2].buttons[0];
    EXPECT_EQ(std::tuple(first.id, first.up, first.down, first.pos.has_value(), first.options),
              std::tuple(12, std::string("auf.gif"), std::string(), false, 2u));
    const skin_button_text& second = sections[2].buttons[1];
    EXPECT_EQ(std::tuple(second.id, second.up, *second.pos, second.options),
              std::tuple(1, std::string("own.bmp"), skin_pair{7, 8}, 2u | 32u));
    EXPECT_EQ(std::tuple(second.transparent, second.text_color, second.disabled_color),
              std::tuple(skin_button_transparent, colors.text, 0x060504u));
    EXPECT_EQ(sections[2].text_color, no_skin_color);
    const skin_section_text& page = sections[3];
    EXPECT_EQ(page.text_color, 0x010203u);
    EXPECT_EQ(page.rects[1].color, 0x070809u);
    ASSERT_EQ(page.images.size(), 2u);
    EXPECT_EQ(std::tuple(page.images[0].file, page.images[0].pos, page.images[0].options, page.images[0].transparent),
              std::tuple(std::string("a.bmp"), skin_pair{5, 6}, 512u | 32u, 0xFF0000u));
    EXPECT_EQ(page.images[1].transparent, skin_image_transparent);
    EXPECT_FALSE(page.defaults);
    EXPECT_EQ(sections[4].rects.size(), 1000u);
    EXPECT_EQ(sections[4].images.size(), 0u);
}

} // namespace
