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
    // The payload's folder is the setup folder or lies below it. With a pack, which may be null, the files are there.
    Payload(const std::wstring& setupFolder, const std::wstring& folder, const Pack* pack)
        : m_setup(setupFolder), m_folder(folder), m_pack(pack)
    {
    }

    // Appends the files that the entry stands for, until there are more than `most`. The result is empty, or the
    // reason why the entry stands for none.
    std::wstring Find(const FileEntry& entry, std::size_t most, std::vector<ProductFile>& files);

private:
    std::wstring LinkAbove(const std::wstring& file);
    std::wstring InPack(const std::wstring& path) const;
    FileFacts Facts(const std::wstring& path) const;
    std::vector<Entry> List(const std::wstring& folder) const;
    ProductFile Made(const FileEntry& entry, const std::wstring& source, const std::wstring& path,
                     const FileFacts& facts) const;
    void Search(const FileEntry& entry, const std::wstring& top, const std::wstring& target, std::wstring_view pattern,
                std::size_t most, std::vector<ProductFile>& files) const;

    std::wstring m_setup;
    std::wstring m_folder;
    const Pack* m_pack;
    // Folders that are known to be no links.
    std::unordered_set<std::wstring> m_plain;
};

} // namespace vh::engine
