// Exported functions on existence, disk sizes and file signatures.
#include "vhrt/disks.h"

#include <algorithm>

#include "../diagnostics/file.h"
#include "../files/disk_space.h"
#include "../files/exists.h"
#include "../files/md5.h"
#include "../scriptdata/format.h"
#include "../scriptdata/halves.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/results.h"

namespace {

// Room for two decimals of any double below 2^64.
constexpr std::size_t size_text_units = 32;

// The path of the record, which may fill its field to the last unit.
std::wstring_view PathOf(const VHRTDiskInfo& info) { return {info.path, wcsnlen(info.path, std::size(info.path))}; }

void StoreSizes(const vh::disk_space& space, VHRTDiskInfo& info)
{
    if (info.request & DiskClusterSize)
        info.clusterSize = static_cast<int32_t>(space.cluster);
    if (info.request & DiskTotalSize) {
        const vh::halves31 total = vh::ToHalves31(space.total);
        info.totalHigh = total.high;
        info.totalLow = total.low;
    }
    if (info.request & DiskFreeSpace) {
        const vh::halves31 available = vh::ToHalves31(space.available);
        info.freeHigh = available.high;
        info.freeLow = available.low;
    }
}

int32_t UnitOf(uint64_t bytes)
{
    if (bytes >= 0x40000000)
        return 30;
    return bytes >= 0x100000 ? 20 : 10;
}

// A power of two as a signed 32-bit number has it; exponents count modulo 32, as in a shift of the processor.
double PowerOfTwo(int32_t exponent) { return static_cast<int32_t>(uint32_t{1} << (exponent & 31)); }

vh::md5::digest SignatureOf(vh::file& file)
{
    vh::md5 sum;
    std::byte block[16384];
    while (const DWORD count = file.read_bytes(block, sizeof(block)))
        sum.update(std::span(block, count));
    return sum.finish();
}

} // namespace

int32_t _ExistsFile(const wchar_t* path) { return vh::TestPath(path, vh::test_file, 1, 0, 0); }

int32_t _ExistsDir(const wchar_t* path) { return vh::TestPath(path, vh::test_directory, 0, -1, -1); }

int32_t _ExistsDisk(const wchar_t* path) { return vh::DiskState(vh::View(path)); }

int32_t _GetDiskInfo(VHRTDiskInfo* info)
{
    if (!info)
        return -1;
    int32_t result = 0;
    if (info->request & (DiskClusterSize | DiskTotalSize | DiskFreeSpace)) {
        const auto space = vh::disk_space::query(PathOf(*info));
        info->result = result = space ? 0 : -1;
        if (!space)
            return result;
        StoreSizes(*space, *info);
    }
    if (info->request & DiskDriveType)
        info->driveType = static_cast<int32_t>(GetDriveTypeW(vh::Concat(vh::PathRoot(PathOf(*info)), L"\\").c_str()));
    return result;
}

int32_t _GetDiskSpaceEx(const wchar_t* path, int32_t* high, int32_t* low, int32_t shift, int32_t which)
{
    const auto space = vh::disk_space::query(vh::View(path));
    if (!space)
        return -1;
    const uint64_t value = vh::ShiftRight(space->bytes(which != 0), shift);
    *high = 0;
    *low = value < 0x80000000 ? static_cast<int32_t>(value) : INT32_MAX;
    return 0;
}

int32_t _GetDiskSpaceExEx(const wchar_t* path, wchar_t* text, int32_t* shift, int32_t keep, int32_t which)
{
    const auto space = vh::disk_space::query(vh::View(path));
    if (!space)
        return -1;
    const uint64_t value = space->bytes(which != 0);
    if (keep == 0)
        *shift = UnitOf(value);
    const double high = static_cast<double>(value >> 32) * PowerOfTwo(32 - *shift);
    const double low = static_cast<double>(value & 0xFFFFFFFF) / PowerOfTwo(*shift);
    vh::FormatText(text, size_text_units, L"%.2f", high + low);
    return 0;
}

int32_t _GenerateFileMD5SignatureHex(const void*, const wchar_t* path, wchar_t* text)
{
    *text = L'\0';
    try {
        vh::file file;
        // A file that can't be opened is not reported.
        if (file.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
            return 0;
        for (const std::byte one : SignatureOf(file)) {
            vh::FormatText(text, 3, L"%02X", std::to_integer<unsigned>(one));
            text += 2;
        }
    } catch (const vh::win32_exception& failure) {
        // Nor is a system code of one that can't be read; a server's refusal is.
        return std::min(static_cast<int32_t>(failure.code()), 0);
    }
    return 0;
}
