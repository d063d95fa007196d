#include "disk_space.h"

#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

std::optional<disk_space> disk_space::query(std::wstring_view path)
{
    if (path.empty())
        return {};
    const stringx root = Concat(path.starts_with(L"\\\\") ? path : path.substr(0, 2), L"\\");
    ULARGE_INTEGER available, total, all_free;
    DWORD sectors_per_cluster, bytes_per_sector, free_clusters, clusters;
    if (!GetDiskFreeSpaceExW(root.c_str(), &available, &total, &all_free) ||
        !GetDiskFreeSpaceW(root.c_str(), &sectors_per_cluster, &bytes_per_sector, &free_clusters, &clusters))
        return {};
    return disk_space{available.QuadPart, total.QuadPart, sectors_per_cluster * bytes_per_sector};
}

} // namespace vh
