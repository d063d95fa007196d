#include "payload.h"

#include <algorithm>

namespace vh::engine {

namespace {

std::wstring WithBackslashes(std::wstring path)
{
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

ProductFile Made(const FileEntry& entry, const std::wstring& source, const std::wstring& path, const FileFacts& facts)
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
    return file;
}

// Folders that are links are left alone: they could lead out of the setup folder.
void Search(const FileEntry& entry, const std::wstring& folder, const std::wstring& below, std::wstring_view pattern,
            std::size_t most, std::vector<ProductFile>& files)
{
    for (const Entry& found : ListFolder(folder)) {
        if (files.size() > most)
            return;
        const std::wstring source = JoinPath(folder, found.name);
        const std::wstring path = JoinPath(below, found.name);
        if (found.facts.folder()) {
            if (entry.recurse && !(found.facts.attributes & FILE_ATTRIBUTE_REPARSE_POINT))
                Search(entry, source, path, pattern, most, files);
        } else if (MatchesPattern(found.name, pattern)) {
            files.push_back(Made(entry, source, path, found.facts));
        }
    }
}

} // namespace

std::wstring FindPayload(const std::wstring& payloadFolder, const FileEntry& entry, std::size_t most,
                         std::vector<ProductFile>& files)
{
    const std::wstring path = WithBackslashes(entry.path);
    const std::wstring target = WithBackslashes(entry.target);
    const std::wstring source = JoinPath(payloadFolder, path);
    const std::wstring last = FileNameOf(path);
    if (last.find_first_of(L"*?") != std::wstring::npos) {
        const std::size_t before = files.size();
        Search(entry, FolderOf(source), target, last, most, files);
        if (files.size() > most)
            return L"stands for more than " + Number(static_cast<int64_t>(most)) + L" files";
        return files.size() == before ? source + L": no payload file matches" : L"";
    }
    const FileFacts facts = FactsOf(source);
    if (!facts.file())
        return source + (facts.exists() ? L": the payload is a folder, no file" : L": the payload file is missing");
    if (entry.size && *entry.size != facts.size)
        return source + L": the payload file has " + Number(static_cast<int64_t>(facts.size)) + L" bytes instead of " +
               Number(static_cast<int64_t>(*entry.size));
    files.push_back(Made(entry, source, JoinPath(target, entry.name.empty() ? last : entry.name), facts));
    return {};
}

} // namespace vh::engine
