// Size, time and cost of files through the exports.
#include "../../exports/vhrt/file_copy.h"
#include "../support/test.h"

namespace {

TEST(InetFile, GivesTheLow32BitsOfALocalSize)
{
    const TempFolder folder;
    uint32_t size = 1;
    EXPECT_GIVES(_GetInetFileSize(folder.Write(L"small", "12345").c_str(), &size), 0, size, 5u);
    EXPECT_GIVES(_GetInetFileSize(folder.Write(L"empty", "").c_str(), &size), 0, size, 0u);

    const std::wstring large = folder.Large(L"large", (5ll << 30) + 7);
    EXPECT_GIVES(_GetInetFileSize(large.c_str(), &size), 0, size, 0x40000007u);
}

TEST(InetFile, GivesTheTimeOfTheLastWrite)
{
    const TempFolder folder;
    const std::wstring path = folder.Write(L"dated", "x");
    const FILETIME wanted{0x5A000000, 0x01D00000};
    {
        const vh::unique_file file(
            CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &wanted));
    }
    FILETIME time{};
    EXPECT_GIVES(_GetInetFileTime(path.c_str(), &time), 0, time.dwHighDateTime, wanted.dwHighDateTime);
    EXPECT_EQ(time.dwLowDateTime, wanted.dwLowDateTime);
}

TEST(InetFile, ThatIsNotThereWritesNothing)
{
    for (const wchar_t* path : {L"C:\\no such file", L"", static_cast<const wchar_t*>(nullptr)}) {
        uint32_t size = 77;
        FILETIME time{78, 79};
        EXPECT_EACH(-1, _GetInetFileSize(path, &size), _GetInetFileTime(path, &time));
        EXPECT_EQ(size, 77u);
        EXPECT_EQ(time.dwLowDateTime, 78u);
    }
}

TEST(FileCost, IsRoundedUpToClustersInHalvesOf31Bits)
{
    Table<int32_t, int32_t, int32_t, int32_t, int32_t> rows = {
        {0, 0, 4096, 0, 0},          {0, 1, 4096, 0, 4096},
        {0, 4096, 4096, 0, 4096},    {0, 4097, 4096, 0, 8192},
        {0, 0x7FFFFFFF, 4096, 1, 0}, {3, 5, 512, 3, 512},
        {0, 10, 3, 0, 12},           {0x3FFFFFFF, 0x7FFFF001, 4096, 0x40000000, 0}};
    for (const auto& [file_high, file_low, cluster, high_sum, low_sum] : rows) {
        int32_t high = 0, low = 0;
        EXPECT_GIVES(_CalculateAndAddFileCost(file_high, file_low, cluster, &high, &low), 0, high, high_sum);
        EXPECT_EQ(low, low_sum);
    }
    // Sums have no carry.
    int32_t high = 10, low = 0x7FFFF000;
    EXPECT_GIVES(_CalculateAndAddFileCost(1, 1, 4096, &high, &low), 0, high, 11);
    EXPECT_EQ(static_cast<uint32_t>(low), 0x80000000u);
}

} // namespace
