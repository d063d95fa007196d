// The library's text: storage, conversions and what it leaves alone.
#include "../../scriptdata/stringx.h"
#include "../support/test.h"

#include <oleauto.h>

namespace {

TEST(Stringx, GrowsByItsRule)
{
    Table<size_t, size_t, size_t> cases = {{0, 0, 7},   {7, 7, 7},       {8, 8, 15},      {15, 15, 15}, {16, 16, 23},
                                           {8, 16, 23}, {100, 101, 103}, {103, 104, 154}, {3, 9, 15}};
    for (const auto& [first, then, capacity] : cases) {
        stringx text(std::wstring(first, L'a'));
        text += std::wstring(then - first, L'b');
        EXPECT_EQ(text.capacity(), capacity) << first << " then " << then;
        EXPECT_EQ(text.size(), then);
        EXPECT_EQ(text.c_str()[then], L'\0');
    }
    stringx text(L"kept");
    EXPECT_THROW(text.reserve(0x7FFFFFFFFFFFFFFF), std::length_error);
    EXPECT_EQ(text.view(), L"kept");
}

TEST(Stringx, MovesBetweenShortAndLongWithoutLosingText)
{
    stringx text(L"short");
    const std::wstring filler(50, L'x');
    text = filler;
    text = text;
    EXPECT_EQ(text.view(), filler);
    text += text;
    EXPECT_EQ(text.view(), filler + filler);
    text = std::wstring_view(text).substr(3, 4);
    EXPECT_EQ(text.view(), L"xxxx");
    stringx moved(std::move(text));
    text = L"again";
    EXPECT_EQ(moved.view(), L"xxxx");
    EXPECT_EQ(text.view(), L"again");
    moved.swap(text);
    EXPECT_EQ(moved.view(), L"again");

    stringx seven(L"1234567");
    seven.resize(3);
    seven += L"4567";
    EXPECT_EQ(seven.view(), L"1234567");
    EXPECT_EQ(seven.capacity(), 7u);
    seven.resize(9);
    EXPECT_EQ(seven.view(), std::wstring_view(L"1234567\0\0", 9));
}

TEST(Stringx, LeavesTheLastErrorAlone)
{
    SetLastError(1234);
    {
        stringx text(std::wstring(200, L'\u00e9'));
        const stringx copy(text);
        text.AsNarrow();
        text.AsBstr();
        text += L"more and more and more";
        stringx narrow("caf\xE9", -1);
    }
    EXPECT_EQ(GetLastError(), 1234u);
}

TEST(Stringx, ShowsItselfAsBstr)
{
    stringx text(L"");
    EXPECT_NE(text.AsBstr(), nullptr);
    for (const wchar_t* value : {L"a", L"a longer text", L"b", L"", L"another long text"}) {
        text = value;
        const BSTR view = text.AsBstr();
        EXPECT_GIVES_TEXT(SysStringLen(view), wcslen(value), view, value);
    }
    const stringx embedded(std::wstring_view(L"a\0b", 3));
    EXPECT_EQ(SysStringLen(embedded.AsBstr()), 3u);
}

TEST(Stringx, ConvertsBothWays)
{
    EXPECT_STREQ(stringx(L"caf\u00e9").AsNarrow(), "caf\xE9");
    EXPECT_EQ(stringx("caf\xE9").view(), L"caf\u00e9");
    EXPECT_EQ(stringx("abcdef", 3).view(), L"abc");
    EXPECT_EQ(stringx("\xC3\xA9", -1, CP_UTF8).view(), L"\u00e9");
    std::string euros;
    for (int i = 0; i < 90; ++i)
        euros += "\xE2\x82\xAC";
    EXPECT_EQ(stringx(std::wstring(90, L'\u20AC')).AsNarrow(CP_UTF8), euros) << "three bytes a unit need more room";

    EXPECT_EQ(stringx("a\0b\0", 4, 1200).view(), L"ab");
    EXPECT_EQ(stringx("a\0\0", 0, 1200).view(), L"");
    EXPECT_EQ(stringx("\0a\0b", 4, 1201).view(), L"ab");
    const stringx big_endian(L"ab");
    EXPECT_EQ(std::string(big_endian.AsNarrow(1201), 6), std::string("\0a\0b\0\0", 6));

    stringx kept(L"kept");
    EXPECT_FALSE(kept.assign_narrow("", -1) || kept.assign_narrow(nullptr, -1));
    EXPECT_EQ(kept.view(), L"kept");
    EXPECT_TRUE(stringx(static_cast<const wchar_t*>(nullptr)).empty());
    EXPECT_TRUE(stringx(static_cast<const char*>(nullptr)).empty());
}

TEST(Stringxi, FoldsCaseInEveryComparison)
{
    EXPECT_TRUE(stringxi(L"C:\\Dir") == stringxi(L"c:\\DIR"));
    EXPECT_FALSE(stringx(L"a") == stringx(L"A"));
    EXPECT_TRUE(stringxi(L"abc") < stringxi(L"ABD"));
    EXPECT_EQ(stringxi(L"one TWO").folded().find(stringxi(L"Two").folded()), 4u);
    EXPECT_EQ(stringxi(L"aXb").folded().find(L'x'), 1u);
    EXPECT_EQ(stringxi(L"Mixed").view(), L"Mixed") << "the text itself keeps its case";
}

} // namespace
