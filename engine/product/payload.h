// Finds the payload that a file entry of the product file names.
#pragma once

#include <optional>
#include <unordered_set>

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

class Payload {
public:
    // The payload's folder is the setup folder or lies below it.
    Payload(const std::wstring& setupFolder, const std::wstring& folder) : m_setup(setupFolder), m_folder(folder) {}

    // Appends the files that the entry stands for, until there are more than `most`. The result is empty, or the
    // reason why the entry stands for none.
    std::wstring Find(const FileEntry& entry, std::size_t most, std::vector<ProductFile>& files);

private:
    std::wstring LinkAbove(const std::wstring& file);

    std::wstring m_setup;
    std::wstring m_folder;
    // Folders that are known to be no links.
    std::unordered_set<std::wstring> m_plain;
};

} // namespace vh::engine
