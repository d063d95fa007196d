#include "payload.h"

#include <algorithm>

#include "pack.h"

namespace vh::engine {

namespace {

std::wstring WithBackslashes(std::wstring path)
{
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

} // namespace

// The path as a pack knows it.
std::wstring Payload::InPack(const std::wstring& path) const
{
    return path.size() > m_setup.size() ? path.substr(m_setup.size() + 1) : std::wstring();
}

FileFacts Payload::Facts(const std::wstring& path) const
{
    if (!m_pack)
        return FactsOf(path);
    const PackedFile* packed = m_pack->Find(InPack(path));
    return packed
               ? FileFacts{packed->attributes ? packed->attributes : FILE_ATTRIBUTE_NORMAL, packed->size, packed->time}
               : FileFacts();
}

std::vector<Entry> Payload::List(const std::wstring& folder) const
{
    if (m_pack)
        return m_pack->List(InPack(folder));
    return FactsOf(folder).folder() ? ReadFolder(folder) : std::vector<Entry>();
}

ProductFile Payload::Made(const FileEntry& entry, const std::wstring& source, const std::wstring& path,
                          const FileFacts& facts) const
{
    ProductFile file;
    file.source = source;
    file.path = path;
    file.size = facts.size;
    file.time = facts.time;
    file.attributes = facts.attributes;
    file.version = entry.version;
    file.language = entry.language;
    file.flags = entry.flags;
    if (m_pack) {
        const std::wstring inside = InPack(source);
        file.packed = m_pack->Find(inside);
        file.source = JoinPath(m_pack->File(), inside);
        if (file.version.empty())
            file.version = file.packed->version;
    }
    return file;
}

// Files of a folder stand before those of the folders in it. Folders that are links are left alone: they could lead
// out of the setup folder.
void Payload::Search(const FileEntry& entry, const std::wstring& top, const std::wstring& target,
                     std::wstring_view pattern, std::size_t most, std::vector<ProductFile>& files) const
{
    std::vector<std::wstring> waiting{{}}; // paths below the top
    while (!waiting.empty() && files.size() <= most) {
        const std::wstring below = std::move(waiting.back());
        waiting.pop_back();
        const std::size_t mark = waiting.size();
        const std::wstring folder = JoinPath(top, below);
        for (const Entry& found : List(folder)) {
            const std::wstring path = JoinPath(below, found.name);
            if (!found.facts.folder()) {
                if (MatchesPattern(found.name, pattern))
                    files.push_back(Made(entry, JoinPath(folder, found.name), JoinPath(target, path), found.facts));
            } else if (entry.recurse && !(found.facts.attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
                waiting.push_back(path);
            }
        }
        std::reverse(waiting.begin() + static_cast<std::ptrdiff_t>(mark), waiting.end());
    }
}

// The first folder between the setup folder and the file that is a link; empty when none is.
std::wstring Payload::LinkAbove(const std::wstring& file)
{
    const std::wstring folder = FolderOf(file);
    if (m_pack || folder.size() <= m_setup.size() || m_plain.contains(folder))
        return {};
    std::wstring link = LinkAbove(folder);
    if (link.empty() && (FactsOf(folder).attributes & FILE_ATTRIBUTE_REPARSE_POINT) && FactsOf(folder).folder())
        link = folder;
    if (link.empty())
        m_plain.insert(folder);
    return link;
}

std::wstring Payload::Find(const FileEntry& entry, std::size_t most, std::vector<ProductFile>& files)
{
    const std::wstring path = WithBackslashes(entry.path);
    const std::wstring target = WithBackslashes(entry.target);
    const std::wstring source = JoinPath(m_folder, path);
    const std::wstring last = FileNameOf(path);
    const std::size_t before = files.size();
    if (const std::wstring link = LinkAbove(source); !link.empty())
        return link + L": is a link to another folder, where no payload may lie";
    if (last.find_first_of(L"*?") != std::wstring::npos) {
        try {
            Search(entry, FolderOf(source), target, last, most, files);
        } catch (const engine_error& error) {
            return error.message().Text();
        }
        if (files.size() > most)
            return L"stands for more than " + Number(static_cast<int64_t>(most - before)) + L" files";
        if (files.size() == before)
            return source + L": no payload file matches";
    } else {
        const FileFacts facts = Facts(source);
        if (!facts.file())
            return source + (facts.exists() ? L": the payload is a folder, no file" : L": the payload file is missing");
        if (entry.size && *entry.size != facts.size)
            return source + L": the payload file has " + Number(static_cast<int64_t>(facts.size)) +
                   L" bytes instead of " + Number(static_cast<int64_t>(*entry.size));
        files.push_back(Made(entry, source, JoinPath(target, entry.name.empty() ? last : entry.name), facts));
    }
    for (std::size_t i = before; i < files.size(); ++i)
        if (const std::wstring fault = PathFault(files[i].path); !fault.empty())
            return files[i].source + L": the name \"" + files[i].path + L"\" at the target " + fault;
    return {};
}

} // namespace vh::engine
