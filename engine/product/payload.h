// Finds the payload that a file entry of the product file names.
#pragma once

#include <optional>

#include "product.h"

namespace vh::engine {

// A file entry before its payload was looked up.
struct FileEntry {
    std::wstring path; // below the payload folder; wildcards in the last part
    bool recurse = false;
    std::wstring name;
    std::wstring target;
    std::optional<uint64_t> size;
    std::wstring version;
    WORD language = 0;
    unsigned flags = 0;
};

// Appends the files that the entry stands for. The result is empty, or the reason why there are none.
std::wstring FindPayload(const std::wstring& payloadFolder, const FileEntry& entry, std::size_t most,
                         std::vector<ProductFile>& files);

} // namespace vh::engine
