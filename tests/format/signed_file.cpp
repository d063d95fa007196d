// The parts of a signed file, of a key file, and of the text that names a certificate.
#include "../../diagnostics/signed_file.h"
#include "../../diagnostics/certificate_choice.h"
#include "../../diagnostics/pvk_file.h"
#include "../support/test.h"

namespace {

std::vector<std::byte> Numbers(std::initializer_list<uint32_t> numbers, std::size_t size = 0)
{
    std::vector<std::byte> bytes;
    for (const uint32_t number : numbers)
        AppendNumber(bytes, number);
    bytes.resize(std::max(size, bytes.size()));
    return bytes;
}

TEST(SignedFile, HeaderNeedsAllOfItsBytes)
{
    auto bytes = Numbers({0x28634856, 0x04000C1C, 9, 500, 40, 700}, 493);
    const auto header = ReadSignedHeader(bytes);
    ASSERT_TRUE(header);
    EXPECT_TRUE(header->is_known());
    EXPECT_EQ(std::tuple(header->descriptor_at, header->descriptor_size, header->content_end),
              std::tuple(500, 40, 700));
    bytes.pop_back();
    EXPECT_FALSE(ReadSignedHeader(bytes));
    EXPECT_FALSE((signed_header{0x28634856, 0x04000C1D, 0, 0, 0}.is_known()));
    EXPECT_FALSE((signed_header{0x28634857, 0x04000C1C, 0, 0, 0}.is_known()));
}

TEST(SignedFile, PiecesAreTheWholeContent)
{
    constexpr uint32_t most = 0xFFFFFFFF;
    // Place and size of the descriptor, size told for the block behind it, content's end; 600 bytes are there.
    Table<uint32_t, uint32_t, uint32_t, uint32_t, bool> rows = {
        {493, 40, 67, 600, true},  {500, 50, 50, 600, true},   {600, 0, 0, 600, true},    {560, 40, 0, 600, true},
        {493, 107, 0, 600, true},  {565, 35, 0, 600, true},    {565, 34, 0, 600, false},  {493, 40, 66, 600, false},
        {493, 40, 68, 600, false}, {492, 40, 68, 600, false},  {493, 40, 67, 599, false}, {601, 0, 0, 600, false},
        {most, 1, 0, 600, false},  {493, most, 0, 600, false}, {493, 108, 0, 600, false}, {500, 40, most, 600, false}};
    for (const auto& [at, size, second, end, whole] : rows) {
        std::vector<std::byte> content(600);
        for (unsigned i = 0; at + 40ull <= 600 && i < 4; ++i)
            content[at + 36 + i] = static_cast<std::byte>(second >> 8 * i);
        const auto number_at = [&](uint32_t place) { return ReadNumber(content, place); };
        EXPECT_EQ(IsContentWhole({0, 0, at, size, end}, number_at), whole) << at << " " << size << " " << second;
    }
}

TEST(SignedFile, TrailerIsCutByItsLength)
{
    // Told length, bytes behind it, of those in the store or -1.
    Table<uint32_t, std::size_t, int> rows = {{3, 5, 2},  {5, 5, 0},           {6, 5, -1},
                                              {0, 5, -1}, {0xFFFFFFFF, 5, -1}, {1, 0, -1}};
    for (const auto& [length, size, store] : rows) {
        const auto trailer = ReadSignedTrailer(Numbers({length}, 4 + size));
        EXPECT_EQ(trailer ? static_cast<int>(trailer->store.size()) : -1, store) << length;
        EXPECT_EQ(trailer ? trailer->signature.size() : length, length);
    }
    EXPECT_FALSE(ReadSignedTrailer(std::vector<std::byte>(3)));
}

TEST(SignedFile, StoreIsExact)
{
    constexpr uint32_t magic = 0x54524543;
    Table<std::vector<std::byte>, int> rows = {{Numbers({0, magic, 0, 0, 0}), 0},
                                               {Numbers({0, magic, 32, 1, 4, 7, 0, 0, 0}), 1},
                                               {Numbers({0, magic, 3, 1, 4, 7, 32, 1, 4, 7, 0, 0, 0}), 2},
                                               {Numbers({0, magic, 32, 1, 4, 7, 0, 0, 0}, 37), -1}, // a byte behind it
                                               {Numbers({0, magic, 32, 1, 4, 7, 0, 0}), -1},        // no end
                                               {Numbers({0, magic, 32, 1, 4, 7, 0, 1, 0}), -1},
                                               {Numbers({0, magic, 32, 1, 4, 7, 0, 0, 1}), -1},
                                               {Numbers({0, magic, 32, 0, 4, 7, 0, 0, 0}), -1}, // another encoding
                                               {Numbers({0, magic, 33, 1, 4, 7, 0, 0, 0}), -1}, // a revocation list
                                               {Numbers({0, magic, 0x10020, 1, 4, 7, 0, 0, 0}), -1},
                                               {Numbers({0, magic, 3, 1, 4, 7, 0, 0, 0}), -1}, // a property of nothing
                                               {Numbers({0, magic, 32, 1, 0xFFFFFFFF, 7, 0, 0, 0}), -1},
                                               {Numbers({0, magic + 1, 0, 0, 0}), -1},
                                               {Numbers({1, magic, 0, 0, 0}), -1},
                                               {Numbers({0}), -1}};
    for (const auto& [bytes, count] : rows) {
        const auto elements = ReadStore(bytes);
        EXPECT_EQ(elements ? static_cast<int>(elements->size()) : -1, count) << &bytes - &std::get<0>(rows[0]);
    }
}

TEST(PvkFile, LengthsStayWithinTheFile)
{
    constexpr uint32_t magic = 0xB0B5F11E;
    // Salt and key as told, bytes that are there, kind of key; whether it is read.
    Table<uint32_t, uint32_t, std::size_t, uint32_t, bool> rows = {
        {0, 12, 12, 7, true},           {0, 12, 11, 7, false},         {0, 11, 12, 7, false}, {0, 12, 12, 6, false},
        {0xFFFFFFFF, 12, 12, 7, false}, {0, 0xFFFFFFFF, 12, 7, false}, {1, 12, 12, 7, false}};
    for (const auto& [salt, key, size, kind, read] : rows) {
        const auto bytes = Numbers({magic, 0, 2, 0, salt, key, kind}, 24 + size);
        EXPECT_EQ(ReadPvk(bytes).has_value(), read) << salt << " " << key;
    }
    const auto encrypted = Numbers({magic, 0, 1, 1, 4, 12, 9, 7, 0x2400, 0x32415352});
    const auto file = ReadPvk(encrypted);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->encrypted);
    EXPECT_EQ(ReadNumber(file->salt, 0), 9u);
    EXPECT_TRUE(IsPrivateKey(file->key));
    EXPECT_FALSE(IsPrivateKey(file->salt));
    EXPECT_FALSE(ReadPvk(Numbers({magic + 1, 0, 2, 0, 0, 12, 7}, 40)));
    EXPECT_FALSE(ReadPvk(Numbers({magic})));
}

TEST(CertificateChoice, IsTakenApart)
{
    // Text; path, store, location, certificate, thumbprint, hash.
    Table<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, bool, int> rows = {
        {L"C:\\keys\\my.pfx", L"C:\\keys\\my.pfx", L"MY", L"User", L"", false, 0},
        {L"", L"", L"MY", L"User", L"", false, 0},
        {L"*Example", L"", L"MY", L"User", L"Example", false, 0},
        {L"*TEST*Example", L"", L"TEST", L"User", L"Example", false, 0},
        {L"*Machine:Example", L"", L"MY", L"Machine", L"Example", false, 0},
        {L"*TEST*Machine:Example?sha256", L"", L"TEST", L"Machine", L"Example", false, 2},
        {L"*User:|00 fF?sha1", L"", L"MY", L"User", L"00 fF", true, 1},
        {L"*Example?sha2", L"", L"MY", L"User", L"Example", false, 2},
        {L"*Example?dual", L"", L"MY", L"User", L"Example", false, 3},
        {L"*Example?md5", L"", L"MY", L"User", L"Example", false, 0},
        {L"**Example", L"", L"", L"User", L"Example", false, 0},
        {L"*", L"", L"MY", L"User", L"", false, 0}};
    for (const auto& [text, path, store, location, certificate, thumbprint, hash] : rows) {
        const certificate_choice choice = ReadCertificateChoice(text);
        using parts = std::tuple<std::wstring, std::wstring, std::wstring, std::wstring, bool, int>;
        const parts read{choice.path,        choice.store,      choice.location,
                         choice.certificate, choice.thumbprint, choice.hash};
        const parts wanted{path, store, location, certificate, thumbprint, hash};
        EXPECT_EQ(read, wanted) << testing::PrintToString(text);
    }
}

TEST(CertificateChoice, ThumbprintsAreWholeBytes)
{
    using bytes = std::vector<unsigned char>;
    Table<const wchar_t*, std::optional<bytes>> rows = {{L"00fFa1", bytes{0, 255, 0xA1}},
                                                        {L"0 0", bytes{0}},
                                                        {L"0", std::nullopt},
                                                        {L"", std::nullopt},
                                                        {L"0g", std::nullopt}};
    for (const auto& [text, wanted] : rows)
        EXPECT_EQ(ReadThumbprint(text), wanted);
}

} // namespace
