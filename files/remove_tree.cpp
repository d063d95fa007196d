#include "remove_tree.h"

#include <vector>

#include "../diagnostics/file_exception.h"
#include "../scriptdata/folder_link.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/unique.h"

namespace vh {

namespace {

[[noreturn]] void Fail(const stringx& path)
{
    const DWORD code = GetLastError();
    throw file_exception(code, path);
}

stringx Joined(const stringx& folder, std::wstring_view name)
{
    stringx path(folder);
    PathAppend(path, name);
    return path;
}

// A folder on the way, whose entries go one after the other.
class folder_walk {
public:
    explicit folder_walk(stringx path) : m_path(std::move(path))
    {
        m_search = unique_find(FindFirstFileW(Joined(m_path, L"*.*").c_str(), &m_found));
        if (!m_search && GetLastError() != ERROR_FILE_NOT_FOUND)
            Fail(m_path);
    }

    // The next entry's path, or nothing; then the folder itself may go.
    const WIN32_FIND_DATAW* Next()
    {
        while (m_search) {
            if (!std::exchange(m_first, false) && !FindNextFileW(m_search.get(), &m_found))
                m_search.reset();
            else if (const std::wstring_view name = m_found.cFileName; name != L"." && name != L"..")
                return &m_found;
        }
        return nullptr;
    }

    const stringx& path() const { return m_path; }

private:
    stringx m_path;
    unique_find m_search;
    WIN32_FIND_DATAW m_found{};
    bool m_first = true;
};

} // namespace

void RemoveTree(const stringx& path, bool ignore_file_failure)
{
    std::vector<folder_walk> walks;
    // Files and links go at once, folders when they are empty.
    const auto remove = [&](stringx entry, DWORD attributes) {
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            if (!DeleteFileW(entry.c_str()) && !ignore_file_failure)
                Fail(entry);
        } else if (LeadsElsewhere(attributes)) {
            if (!RemoveLink(entry.c_str()))
                Fail(entry);
        } else {
            walks.emplace_back(std::move(entry));
        }
    };
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        Fail(path);
    remove(path, attributes);
    while (!walks.empty()) {
        if (const WIN32_FIND_DATAW* entry = walks.back().Next()) {
            remove(Joined(walks.back().path(), entry->cFileName), entry->dwFileAttributes);
            continue;
        }
        if (const stringx& folder = walks.back().path(); !RemoveDirectoryW(folder.c_str()))
            Fail(folder);
        walks.pop_back();
    }
}

} // namespace vh
