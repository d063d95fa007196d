// The font record of a dialog template, exchanged in a copy.
#include "../../dialogs/template_font.h"
#include "../support/test.h"

namespace {

// Words as they lie in a template; texts with their NUL.
struct Words {
    std::vector<uint16_t> words;

    Words& operator<<(unsigned word)
    {
        words.push_back(static_cast<uint16_t>(word));
        return *this;
    }
    Words& operator<<(std::u16string_view text)
    {
        words.insert(words.end(), text.begin(), text.end());
        return *this << 0u;
    }
    // To a multiple of 4 bytes.
    Words& Align()
    {
        if (words.size() % 2)
            words.push_back(0);
        return *this;
    }
    std::span<const std::byte> bytes() const { return std::as_bytes(std::span(words)); }
};

constexpr unsigned has_font = 64;

// Style, extended style, count, place; the extended form puts its mark and a help number in front.
Words Head(bool extended, unsigned style)
{
    Words made;
    if (extended)
        made << 1u << 0xFFFFu << 7u << 0u << 3u << 0u << style << 0x80C8u;
    else
        made << style << 0x80C8u << 3u << 0u;
    return made << 1u << 10u << 20u << 30u << 40u;
}

std::vector<uint16_t> Changed(const Words& original, std::u16string_view face, uint16_t size)
{
    const std::vector<std::byte> made = vh::WithFont(original.bytes(), face, size);
    std::vector<uint16_t> words(made.size() / 2);
    std::memcpy(words.data(), made.data(), words.size() * 2);
    return words;
}

TEST(TemplateFont, IsExchangedAndTheItemsStay)
{
    using namespace std::string_view_literals;
    const auto names = [](int kind, Words& words) {
        if (kind == 0)
            words << 0u << 0u << u""sv;
        else if (kind == 1)
            words << 0xFFFFu << 12u << u"Class"sv << u"Title"sv;
        else
            words << u"Menu"sv << 0xFFFFu << 34u << u"T"sv;
    };
    constexpr std::u16string_view long_face = u"A face that has more than thirty-two units";
    for (const bool extended : {false, true})
        for (const int kind : {0, 1, 2})
            for (const std::u16string_view old_face : {u""sv, u"MS Sans Serif"sv, u"Old"sv})
                for (const std::u16string_view face : {u"Tahoma"sv, u"Arial"sv, long_face}) {
                    const bool had_font = !old_face.empty();
                    Words original = Head(extended, 0x44 & ~(had_font ? 0 : has_font));
                    names(kind, original);
                    if (had_font) {
                        original << 8u;
                        if (extended)
                            original << 700u << 0x0201u;
                        original << old_face;
                    }
                    original.Align() << 0x1111u << 0x2222u << 0x3333u;

                    Words expected = Head(extended, 0x44);
                    names(kind, expected);
                    expected << 12u;
                    if (extended)
                        expected << (had_font ? 700u : 400u) << (had_font ? 0x0201u : 0x0100u);
                    expected << face.substr(0, 32);
                    expected.Align() << 0x1111u << 0x2222u << 0x3333u;
                    EXPECT_EQ(Changed(original, face, 12), expected.words) << extended << kind << old_face.size();
                }
}

TEST(TemplateFont, OfMessageBoxesHasNoFace)
{
    Words original = Head(true, has_font);
    original << 0u << 0u << u"" << 0x7FFFu;
    original.Align() << 0x1111u;
    Words expected = Head(true, has_font);
    expected << 0u << 0u << u"" << 9u << 400u << 0x0100u << u"F";
    expected.Align() << 0x1111u;
    EXPECT_EQ(Changed(original, u"F", 9), expected.words);
}

TEST(TemplateFont, IsNotReadBehindTheEnd)
{
    for (const bool extended : {false, true}) {
        Words whole = Head(extended, has_font);
        whole << u"Menu" << u"Class" << u"Title" << 8u;
        if (extended)
            whole << 700u << 1u;
        whole << u"Face";
        for (std::size_t size = 0; size < whole.bytes().size(); ++size) {
            const std::vector<std::byte> cut(whole.bytes().begin(),
                                             whole.bytes().begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_TRUE(vh::WithFont(std::span(cut), std::u16string_view(u"F"), uint16_t{9}).empty()) << size;
        }
        EXPECT_FALSE(Changed(whole, u"F", 9).empty());
    }
}

} // namespace
