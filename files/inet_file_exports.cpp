// Exported functions on files that may lie on the internet, and on their cost.
#include "../exports/vhrt/file_copy.h"

#include "../diagnostics/file.h"
#include "../scriptdata/halves.h"

namespace {

// Opens the path and lets `ask` look at it. Result: 0; the code of a failure on an address, else -1.
template <class Ask>
int32_t AskFile(const wchar_t* path, Ask&& ask)
{
    try {
        vh::file file;
        if (file.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
            return -1;
        ask(file);
        return 0;
    } catch (const vh::internet_file_exception& failure) {
        return static_cast<int32_t>(failure.code());
    } catch (const std::exception&) {
        return -1;
    }
}

} // namespace

int32_t _GetInetFileSize(const wchar_t* path, uint32_t* size)
{
    return AskFile(path, [&](vh::file& file) { *size = file.size(); });
}

int32_t _GetInetFileTime(const wchar_t* path, FILETIME* time)
{
    return AskFile(path, [&](vh::file& file) { *time = file.last_write_time(); });
}

int32_t _CalculateAndAddFileCost(int32_t high, int32_t low, int32_t cluster, int32_t* highSum, int32_t* lowSum)
{
    const auto wide = [](int32_t number) { return static_cast<uint64_t>(int64_t{number}); };
    uint64_t total = (wide(high) << 31) + wide(low) + wide(cluster) - 1;
    total -= total % wide(cluster);
    const vh::halves31 rounded = vh::ToHalves31(total);
    *highSum = static_cast<int32_t>(static_cast<uint32_t>(*highSum) + static_cast<uint32_t>(rounded.high));
    *lowSum = static_cast<int32_t>(static_cast<uint32_t>(*lowSum) + static_cast<uint32_t>(rounded.low));
    return 0;
}
