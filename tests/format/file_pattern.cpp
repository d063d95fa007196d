// File patterns against a plain recursive matcher.
#include "../../media/file_pattern.h"
#include "../support/test.h"

namespace {

bool Same(char16_t a, char16_t b) { return (a | 32) == (b | 32); }

bool Fits(std::u16string_view name, std::u16string_view pattern) { return vh::MatchesFilePattern(name, pattern, Same); }

bool Plain(std::u16string_view text, std::u16string_view pattern)
{
    if (pattern.empty())
        return text.empty();
    if (pattern[0] == u'*')
        return Plain(text, pattern.substr(1)) || (!text.empty() && Plain(text.substr(1), pattern));
    return !text.empty() && (pattern[0] == u'?' || Same(pattern[0], text[0])) &&
           Plain(text.substr(1), pattern.substr(1));
}

TEST(FilePattern, AgreesWithAPlainMatcher)
{
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round) {
        std::u16string text(random() % 9, u'a');
        std::u16string pattern(random() % 7, u'a');
        for (char16_t& c : text)
            c = u"abA"[random() % 3];
        for (char16_t& c : pattern)
            c = u"ab*?B"[random() % 5];
        ASSERT_EQ(vh::MatchesWildcards<char16_t>(text, pattern, Same), Plain(text, pattern)) << round;
    }
}

TEST(FilePattern, KnowsTheRulesForNames)
{
    Table<std::u16string_view, std::u16string_view, bool> cases = {
        {u"readme", u"*.*", true},   {u"", u"*.*", true},        {u"readme", u"r*.*", true}, {u"readme", u"r*.?", true},
        {u"readme", u"*.t*", false}, {u"a.txt", u"*.TXT", true}, {u"a.txt", u"a.???", true}, {u"a.txt", u"a.??", false},
        {u"a.b.c", u"*.c", true},    {u"a", u"a.", true},        {u"a", u"", false},         {u"", u"", true},
        {u"a.b", u"a", false},       {u"a", u"b.*", false}};
    for (const auto& [name, pattern, fits] : cases)
        EXPECT_EQ(Fits(name, pattern), fits)
            << std::string(name.begin(), name.end()) << " " << std::string(pattern.begin(), pattern.end());
}

TEST(FilePattern, DoesNotExplodeOnManyStars)
{
    const std::u16string text(4000, u'a');
    std::u16string pattern;
    for (int i = 0; i < 200; ++i)
        pattern += u"a*";
    EXPECT_FALSE(Fits(text, pattern + u"b"));
}

} // namespace
