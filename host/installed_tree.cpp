#include "installed_tree.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "console.h"
#include "engine/sha256.h"
#include "scriptdata/unique.h"
#include "text.h"

namespace host {

namespace {

constexpr DWORD block_size = 1 << 18;

vh::unique_file OpenForReading(const std::wstring& path)
{
    return vh::unique_file(CreateFileW(LongPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::optional<uint64_t> SizeOf(const vh::unique_file& file)
{
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size))
        return std::nullopt;
    return static_cast<uint64_t>(size.QuadPart);
}

bool SameContent(const vh::unique_file& first, const vh::unique_file& second)
{
    std::vector<char> left(block_size);
    std::vector<char> right(block_size);
    for (;;) {
        DWORD left_count = 0;
        DWORD right_count = 0;
        if (!ReadFile(first.get(), left.data(), block_size, &left_count, nullptr) ||
            !ReadFile(second.get(), right.data(), block_size, &right_count, nullptr) || left_count != right_count ||
            std::memcmp(left.data(), right.data(), left_count) != 0)
            return false;
        if (left_count == 0)
            return true;
    }
}

bool LiesUnder(const std::wstring& folder, const std::wstring& path)
{
    return path.size() > folder.size() && path[folder.size()] == L'\\' &&
           CompareStringOrdinal(path.data(), static_cast<int>(folder.size()), folder.data(),
                                static_cast<int>(folder.size()), TRUE) == CSTR_EQUAL;
}

// Empty when the file equals its source.
std::wstring Difference(const vh::engine::InstalledFile& file, const vh::engine::Pack* pack, uint64_t& size)
{
    const std::wstring& place = file.waiting.empty() ? file.target : file.waiting;
    const vh::unique_file target = OpenForReading(place);
    const auto target_size = SizeOf(target);
    if (!target_size)
        return L"MISSING";
    size = *target_size;
    if (pack && LiesUnder(pack->File(), file.source))
        if (const auto* packed = pack->Find(file.source.substr(pack->File().size() + 1)))
            return packed->size == size && vh::engine::Sha256OfFile(place) == packed->digest ? L"" : L"DIFFERENT";
    const vh::unique_file source = OpenForReading(file.source);
    const auto source_size = SizeOf(source);
    if (!source_size)
        return L"source is gone";
    return *source_size == *target_size && SameContent(source, target) ? L"" : L"DIFFERENT";
}

std::wstring RightAligned(uint64_t number, std::size_t width)
{
    const std::wstring digits = std::to_wstring(number);
    return std::wstring(digits.size() < width ? width - digits.size() : 0, L' ') + digits;
}

} // namespace

TreeCounts ShowInstalledTree(const std::wstring& folder, const std::vector<vh::engine::InstalledFile>& files,
                             const vh::engine::Pack* pack)
{
    std::vector<vh::engine::InstalledFile> sorted = files;
    std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.target < b.target; });
    TreeCounts counts;
    Say(folder);
    for (const vh::engine::InstalledFile& file : sorted) {
        uint64_t size = 0;
        const std::wstring difference = Difference(file, pack, size);
        const std::wstring shown = LiesUnder(folder, file.target) ? file.target.substr(folder.size() + 1) : file.target;
        const std::wstring same = file.waiting.empty() ? L"same" : L"same, waits for its place";
        Say(RightAligned(size, 12) + L"  " + (difference.empty() ? same : difference) + L"  " + shown);
        ++counts.files;
        counts.different += difference.empty() ? 0 : 1;
        counts.bytes += size;
    }
    return counts;
}

} // namespace host
