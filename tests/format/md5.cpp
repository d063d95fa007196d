// MD5 against the published vectors, and over every way to cut the input.
#include "../../files/md5.h"
#include "../support/test.h"

namespace {

std::string Text(const vh::md5::digest& digest)
{
    std::string text;
    for (const std::byte one : digest) {
        text += "0123456789abcdef"[std::to_integer<unsigned>(one) >> 4];
        text += "0123456789abcdef"[std::to_integer<unsigned>(one) & 15];
    }
    return text;
}

std::string SumOf(std::string_view data)
{
    vh::md5 sum;
    sum.update(std::as_bytes(std::span(data)));
    return Text(sum.finish());
}

TEST(Md5, GivesThePublishedDigests)
{
    EXPECT_EQ(SumOf(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(SumOf("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(SumOf("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(SumOf("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(SumOf("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(SumOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(SumOf("1234567890123456789012345678901234567890123456789012345678901234567890123456789"
                    "0"),
              "57edf4a22be3c955ac49da2e2107b67a");
    EXPECT_EQ(SumOf(std::string(1000000, 'a')), "7707d6ae4e027c70eea2a935c2296f21");
}

TEST(Md5, PadsRightAroundTheEndOfABlock)
{
    Table<std::size_t, const char*> rows = {
        {55, "ef1772b6dff9a122358552954ad0df65"},  {56, "3b0c8ac703f828b04c6c197006d17218"},
        {57, "652b906d60af96844ebd21b674f35e93"},  {63, "b06521f39153d618550606be297466d5"},
        {64, "014842d480b571495a4a0363793f7367"},  {65, "c743a45e0d2e6a95cb859adae0248435"},
        {119, "8a7bd0732ed6a28ce75f6dabc90e1613"}, {120, "5f61c0ccad4cac44c75ff505e1f1e537"},
        {128, "e510683b3f5ffe4093d021808bc6ff70"}};
    for (const auto& [length, digest] : rows)
        EXPECT_EQ(SumOf(std::string(length, 'a')), digest) << length;
}

TEST(Md5, DoesNotDependOnHowTheInputIsCut)
{
    std::string data(200, '\0');
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<char>(i * 7 + 3);
    for (std::size_t length = 0; length <= data.size(); ++length) {
        const std::string_view whole = std::string_view(data).substr(0, length);
        const std::string expected = SumOf(whole);
        for (const std::size_t piece :
             {std::size_t{1}, std::size_t{13}, std::size_t{63}, std::size_t{64}, std::size_t{65}}) {
            vh::md5 sum;
            for (std::size_t at = 0; at < length; at += piece)
                sum.update(std::as_bytes(std::span(whole.substr(at, piece))));
            EXPECT_EQ(Text(sum.finish()), expected) << length << " bytes in pieces of " << piece;
        }
    }
}

} // namespace
