// Existence, disk sizes and signatures through the exports, with the system calls counted.
#include "../../exports/vhrt/disks.h"
#include "../support/test.h"

namespace {

template <DWORD Error>
DWORD AttributesFail(const wchar_t*)
{
    SetLastError(Error);
    return INVALID_FILE_ATTRIBUTES;
}

TEST(Existence, TellsFilesFromDirectoriesInOppositeWays)
{
    const TempFolder folder;
    const std::wstring file = folder.Write(L"\u00FCber.txt", "x");
    const std::wstring missing = folder / L"missing", deeper = folder / L"missing\\deeper";
    Table<const wchar_t*, int32_t, int32_t> cases = {{file.c_str(), 1, -1}, {folder.path().c_str(), 0, 0},
                                                     {L"", 0, -1},          {missing.c_str(), 0, -1},
                                                     {nullptr, 0, -1},      {deeper.c_str(), 0, -1}};
    const auto expect_all = [&] {
        for (const auto& [path, is_file, is_directory] : cases) {
            EXPECT_EQ(_ExistsFile(path), is_file) << path;
            EXPECT_EQ(_ExistsDir(path), is_directory) << path;
        }
    };
    expect_all();
    {
        // One look at the attributes each, and none for no path.
        const CallCounter<decltype(GetFileAttributesW)> looks("GetFileAttributesW");
        const CallCounter<decltype(FindFirstFileW)> searches("FindFirstFileW");
        const CallCounter<decltype(CreateFileW)> opens("CreateFileW");
        _ExistsFile(file.c_str());
        _ExistsFile(missing.c_str());
        EXPECT_EQ(looks.calls(), 2);
        EXPECT_EACH(0, searches.calls(), opens.calls());
    }
    // What can't be asked is read from its folder.
    const CallCounter<decltype(GetFileAttributesW)> denied("GetFileAttributesW", AttributesFail<ERROR_ACCESS_DENIED>);
    expect_all();
}

TEST(Existence, ReportsOtherErrorsByTheirCode)
{
    for (const auto& [path, code] : {std::pair(L"C:\\no such folder\\x", 0), {L"C:", 0}, {L"Q:\\", -1}, {L"", -1}})
        EXPECT_EQ(_ExistsDisk(path), code) << path;
    EXPECT_EQ(_ExistsDisk(nullptr), -1);
    {
        const CallCounter<decltype(GetFileAttributesW)> fails("GetFileAttributesW",
                                                              AttributesFail<ERROR_SHARING_VIOLATION>);
        EXPECT_EACH(ERROR_SHARING_VIOLATION, _ExistsFile(L"c:\\x"), _ExistsDir(L"c:\\x"));
        EXPECT_EQ(_ExistsDisk(L"c:\\x"), -1);
    }
    const CallCounter<decltype(GetFileAttributesW)> empty("GetFileAttributesW", AttributesFail<ERROR_NOT_READY>);
    EXPECT_EQ(_ExistsDisk(L"D:\\x"), -2);
    EXPECT_EQ(_ExistsFile(L"D:\\x"), ERROR_NOT_READY);
}

// A disk whose numbers the test sets, and what it was asked for.
struct Disk {
    static inline std::wstring root;
    static inline uint64_t available = 0;
    static inline uint64_t total = 0;

    static BOOL Bytes(const wchar_t* path, ULARGE_INTEGER* caller, ULARGE_INTEGER* all, ULARGE_INTEGER* free)
    {
        root = path;
        caller->QuadPart = available;
        all->QuadPart = total;
        free->QuadPart = 1;
        return TRUE;
    }
    static BOOL Clusters(const wchar_t*, DWORD* sectors, DWORD* bytes, DWORD* free, DWORD* all)
    {
        *sectors = 8;
        *bytes = 512;
        *free = *all = 1;
        return TRUE;
    }

    CallCounter<decltype(GetDiskFreeSpaceExW)> sizes{"GetDiskFreeSpaceExW", Bytes};
    CallCounter<decltype(GetDiskFreeSpaceW)> clusters{"GetDiskFreeSpaceW", Clusters};
    CallCounter<decltype(GetDriveTypeW)> types{"GetDriveTypeW"};
};

VHRTDiskInfo Request(const wchar_t* path, uint32_t request)
{
    VHRTDiskInfo info;
    std::memset(&info, 0x55, sizeof(info));
    wcscpy(info.path, path);
    info.request = request;
    return info;
}

constexpr int32_t untouched = 0x55555555;

std::vector<int32_t> Fields(const VHRTDiskInfo& info)
{
    return {info.clusterSize, info.totalLow, info.totalHigh, info.freeLow, info.freeHigh, info.driveType, info.result};
}

TEST(DiskInfo, FillsOnlyWhatIsRequestedAndAsksForNoMore)
{
    const Disk disk;
    Disk::total = 0x123456789ABull;
    Disk::available = 0x80000000ull;

    VHRTDiskInfo info = Request(L"X:\\dir", DiskClusterSize | DiskTotalSize | DiskFreeSpace);
    EXPECT_EQ(_GetDiskInfo(&info), 0);
    EXPECT_EQ(Disk::root, L"X:\\");
    using values = std::vector<int32_t>;
    EXPECT_EQ(Fields(info), (values{4096, 0x456789AB, 0x246, 0, 1, untouched, 0}));
    EXPECT_EQ((values{disk.types.calls(), disk.sizes.calls(), disk.clusters.calls()}), (values{0, 1, 1}));

    info = Request(L"C:\\dir", DiskDriveType);
    EXPECT_EQ(_GetDiskInfo(&info), 0);
    EXPECT_EQ(Fields(info), (values{untouched, untouched, untouched, untouched, untouched, DRIVE_FIXED, untouched}));
    EXPECT_EQ(disk.sizes.calls(), 1);

    info = Request(L"X:", DiskFreeSpace);
    EXPECT_EQ(_GetDiskInfo(&info), 0);
    EXPECT_EQ(Fields(info), (values{untouched, untouched, untouched, 0, 1, untouched, 0}));
}

TEST(DiskInfo, OfADiskThatIsNotThereWritesTheResultAlone)
{
    VHRTDiskInfo info = Request(L"Q:\\", DiskTotalSize | DiskDriveType);
    EXPECT_EQ(_GetDiskInfo(&info), -1);
    EXPECT_EQ(Fields(info),
              (std::vector<int32_t>{untouched, untouched, untouched, untouched, untouched, untouched, -1}));
    info = Request(L"", DiskTotalSize);
    EXPECT_EACH(-1, _GetDiskInfo(&info), _GetDiskInfo(nullptr));
}

TEST(DiskSpace, IsCappedAtThe31BitsOfAScriptNumber)
{
    const Disk disk;
    Disk::available = 3ull << 30;
    Disk::total = 0x7FFFFFFFull << 10;
    Table<int32_t, int32_t, int32_t> rows = {{0, 1, 0x7FFFFFFF}, {10, 1, 3 << 20}, {10, 0, 0x7FFFFFFF},
                                             {1, 0, 0x7FFFFFFF}, {30, 1, 3},       {64, 1, 0}};
    for (const auto& [shift, which, wanted] : rows) {
        int32_t high = -1, low = -1;
        EXPECT_EQ(_GetDiskSpaceEx(L"\\\\server\\share", &high, &low, shift, which), 0);
        EXPECT_EQ(Disk::root, L"\\\\server\\share\\");
        EXPECT_EQ(high, 0);
        EXPECT_EQ(low, wanted) << "shift " << shift;
    }
    int32_t high = 5, low = 6;
    EXPECT_GIVES(_GetDiskSpaceEx(nullptr, &high, &low, 0, 0), -1, high, 5);
    EXPECT_EQ(low, 6);
}

TEST(DiskSpace, AsTextChoosesItsUnit)
{
    const Disk disk;
    Table<uint64_t, int32_t, int32_t, int32_t, const wchar_t*> rows = {
        {3ull << 29, 0, 0, 30, L"1.50"},   {0x40000000, 0, 0, 30, L"1.00"},    {3ull << 29, 1, 20, 20, L"1536.00"},
        {0x100000, 0, 0, 20, L"1.00"},     {0x3FFFFFFF, 0, 0, 20, L"1024.00"}, {3ull << 29, 1, 10, 10, L"1572864.00"},
        {100, 0, 0, 10, L"0.10"},          {0xFFFFF, 0, 0, 10, L"1024.00"},    {0, 0, 7, 10, L"0.00"},
        {5ull << 40, 0, 0, 30, L"5120.00"}};
    for (const auto& [bytes, keep, shift_before, shift_after, wanted_text] : rows) {
        Disk::available = bytes;
        wchar_t text[32] = L"";
        int32_t shift = shift_before;
        EXPECT_GIVES_TEXT(_GetDiskSpaceExEx(L"X:\\", text, &shift, keep, 1), 0, text, wanted_text);
        EXPECT_EQ(shift, shift_after);
    }
}

TEST(DiskSpace, OfARealDiskIsNotEmpty)
{
    int32_t high = -1, low = -1;
    EXPECT_EQ(_GetDiskSpaceEx(L"C:\\", &high, &low, 20, 0), 0);
    EXPECT_GT(low, 0);
    wchar_t text[32] = L"kept";
    int32_t shift = 3;
    EXPECT_GIVES_TEXT(_GetDiskSpaceExEx(L"Q:\\", text, &shift, 0, 0), -1, text, L"kept");
    EXPECT_EQ(shift, 3);
}

TEST(Signature, IsThatOfEveryByteOfTheFile)
{
    const TempFolder folder;
    const std::pair<std::string, const wchar_t*> rows[] = {
        {"", L"D41D8CD98F00B204E9800998ECF8427E"},
        {"abc", L"900150983CD24FB0D6963F7D28E17F72"},
        // A byte-order mark counts like any other bytes.
        {"\xFF\xFE", L"F3B25701FE362EC84616A93A45CE9998"},
        {std::string(1000000, 'a'), L"7707D6AE4E027C70EEA2A935C2296F21"}};
    wchar_t text[33] = L"?";
    for (const auto& [content, digest] : rows) {
        EXPECT_EQ(_GenerateFileMD5SignatureHex(nullptr, folder.Write(L"content", content).c_str(), text), 0);
        EXPECT_STREQ(text, digest);
    }
    const std::wstring file = folder.Write(L"content", std::string(3 * 16384 + 1, 'x'));
    const CallCounter<decltype(ReadFile)> reads("ReadFile");
    EXPECT_EQ(_GenerateFileMD5SignatureHex(nullptr, file.c_str(), text), 0);
    // One for the mark, four with data, one that finds the end.
    EXPECT_EQ(reads.calls(), 6);
    // A file that is not there has none, which is no failure.
    EXPECT_EQ(_GenerateFileMD5SignatureHex(nullptr, L"C:\\no such file", text), 0);
    EXPECT_NE(wcslen(text), 32u);
}

} // namespace
