// INI lines: what is a section, an entry, or nothing, in both unit sizes and for any bytes.
#include "../../files/ini_text.h"
#include "../support/test.h"

namespace {

// "[name]" for a section, "key>value;" for an entry, "!" for a broken line.
template <class Unit>
std::string Shown(const std::string& narrow, const std::string& separator)
{
    // A block of exactly the size lets the sanitizer see every step beyond.
    const std::unique_ptr<Unit[]> units(new Unit[narrow.size()]);
    std::copy(narrow.begin(), narrow.end(), units.get());
    const std::basic_string<Unit> wide_separator(separator.begin(), separator.end());
    vh::ini_reader<Unit> reader({units.get(), narrow.size()}, wide_separator);
    std::string shown;
    const auto add = [&](std::basic_string_view<Unit> text) {
        for (const Unit unit : text)
            shown += static_cast<char>(unit);
    };
    for (;;) {
        switch (reader.next()) {
        case vh::ini_line::end:
            return shown;
        case vh::ini_line::broken:
            return shown + "!";
        case vh::ini_line::section:
            shown += "[";
            add(reader.name());
            shown += "]";
            break;
        case vh::ini_line::entry:
            add(reader.name());
            shown += ">";
            add(reader.value());
            shown += ";";
            break;
        }
    }
}

TEST(IniText, IsReadLineByLine)
{
    Table<const char*, const char*, const char*> cases = {
        {"\r\n\n\r;x\n;[\n", "=", ""},   {"", "=", ""},
        {"[a]\r\nk=v", "=", "[a]k>v;"},  {"[a]", "=", "[a]"},
        {"[a]b]\n", "=", "[a]"},         {"[a]\rk=v\rl=w\n\rm=", "=", "[a]k>v;l>w;m>;"},
        {"[]\n=v\n=", "=", "[]>v;>;"},   {"[a] tail=1\nx=1=2", "=", "[a]x>1=2;"},
        {"[a]\nflag", "=", "[a]flag>;"}, {"[a]\n k = v \n ;no comment", "=", "[a] k > v ; ;no comment>;"},
        {"k=v\n[a]", "=", "!"},          {"[a\nk=v", "=", "!"},
        {";c\n\nk", "=", "!"},           {"[a]\nk=v\n[b", "=", "[a]k>v;!"},
        {"[a]\nk=v", "", "[a]>=v;"},     {"[a]\nk::v", "::", "[a]k>:v;"},
        {"[a]\nk\tv", "\t", "[a]k>v;"},  {"[a]\nk:v::w\nx::", "::", "[a]k:v>:w;x>:;"}};
    for (const auto& [text, separator, shown] : cases) {
        EXPECT_EQ(Shown<char>(text, separator), shown) << testing::PrintToString(text);
        EXPECT_EQ(Shown<char16_t>(text, separator), shown) << testing::PrintToString(text);
    }
}

TEST(IniText, TakesAnyBytes)
{
    std::mt19937 random(11);
    for (int round = 0; round < 5000; ++round) {
        std::string text(random() % 30, '\0');
        for (char& c : text)
            c = "[]=;\r\na b\0"[random() % 10];
        const std::string separator(random() % 3, '=');
        EXPECT_EQ(Shown<char>(text, separator), Shown<char16_t>(text, separator));
        // A line end of one kind is as good as any other.
        std::string other = text;
        std::replace(other.begin(), other.end(), '\r', '\n');
        EXPECT_EQ(Shown<char>(text, separator), Shown<char>(other, separator));
    }
}

TEST(IniText, ComesOutOfBothByteOrders)
{
    const std::byte bytes[] = {std::byte{0x41}, std::byte{0x00}, std::byte{0x3D}, std::byte{0xD8}, std::byte{0x5B}};
    EXPECT_EQ(vh::UnitsOfUtf16<char16_t>(bytes, false), (std::u16string{0x0041, 0xD83D}));
    EXPECT_EQ(vh::UnitsOfUtf16<char16_t>(bytes, true), (std::u16string{0x4100, 0x3DD8}));
    EXPECT_TRUE(vh::UnitsOfUtf16<char16_t>(std::span(bytes, 1), true).empty());
}

} // namespace
