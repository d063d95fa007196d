// Existence of files and sizes of disks.
#include <cstring>
#include <string>

#include "../tests/support/temp_folder.h"
#include "areas.h"
#include "counting.h"
#include "modules.h"

namespace bench {

namespace {

work Exists(decltype(&_ExistsFile) exists, const std::wstring& path)
{
    return {[=](long count) {
        int32_t sum = 0;
        for (; count > 0; --count)
            sum += exists(path.c_str());
        Keep(sum);
    }};
}

VHRTDiskInfo Request()
{
    VHRTDiskInfo info{};
    std::memcpy(info.path, L"C:\\windows", sizeof(L"C:\\windows"));
    info.request = DiskClusterSize | DiskTotalSize | DiskFreeSpace;
    return info;
}

work DiskSize(decltype(&_GetDiskInfo) ask)
{
    return {[=](long count) {
        VHRTDiskInfo info = Request();
        for (; count > 0; --count)
            Keep(ask(&info));
    }};
}

} // namespace

void Disks(suite& s)
{
    const vh::test::TempFolder folder;
    const std::wstring present = folder.Write(L"present.txt", "x");
    const std::wstring missing = folder / L"missing.txt";
    const auto exists = BENCH_GET(Library(), _ExistsFile);
    const auto floor = BENCH_GET(Floor(), _ExistsFile);
    s.Compare("_ExistsFile, present, to the attributes", 1.1, Exists(exists, present), Exists(floor, present));
    s.Compare("_ExistsFile, missing", 1.1, Exists(exists, missing), Exists(floor, missing));
    const auto disk_info = BENCH_GET(Library(), _GetDiskInfo);
    s.Compare("_GetDiskInfo, sizes, to the two calls", 1.05, DiskSize(disk_info),
              DiskSize(BENCH_GET(Floor(), _GetDiskInfo)));
    {
        const call_counter looks(Library().handle(), "GetFileAttributesW");
        const call_counter searches(Library().handle(), "FindFirstFileW");
        exists(present.c_str());
        exists(missing.c_str());
        s.Count("looks at attributes of two files", 2, looks.calls());
        s.Count("searches for them", 0, searches.calls());
    }
    const call_counter kinds(Library().handle(), "GetDriveTypeW");
    VHRTDiskInfo info = Request();
    disk_info(&info);
    s.Count("drive types asked for with the sizes", 0, kinds.calls());
}

} // namespace bench
