// Size and free space of the disk that holds a path.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vh {

struct disk_space {
    // Bytes; `available` is what the caller may use.
    uint64_t available = 0;
    uint64_t total = 0;
    uint32_t cluster = 0;

    // The disk is that of the first two units, or a whole network path. Nothing for an empty path, or when the
    // system can't tell.
    static std::optional<disk_space> query(std::wstring_view path);

    uint64_t bytes(bool free) const { return free ? available : total; }
};

} // namespace vh
