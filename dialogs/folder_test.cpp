#include "folder_test.h"

#include <windows.h>

#include "../files/exists.h"
#include "../scriptdata/path_text.h"
#include "../system/path_syntax.h"

namespace vh {

namespace {

// A folder that was made for a test, and goes with it.
class test_folder {
public:
    explicit test_folder(const stringx& path) : m_path(path), m_made(CreateDirectoryW(path.c_str(), nullptr) != 0) {}
    test_folder(const test_folder&) = delete;
    test_folder& operator=(const test_folder&) = delete;
    ~test_folder()
    {
        if (m_made)
            RemoveDirectoryW(m_path.c_str());
    }

    bool made() const { return m_made; }
    bool takes_files() const
    {
        wchar_t file[MAX_PATH];
        return GetTempFileNameW(m_path.c_str(), L"vh", 0, file) && DeleteFileW(file);
    }

private:
    const stringx& m_path;
    bool m_made;
};

} // namespace

std::wstring_view TrimmedText(std::wstring_view text)
{
    constexpr std::wstring_view blanks = L" \t\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::wstring_view TypedFolder(std::wstring_view text)
{
    const std::wstring_view folder = TrimmedText(text);
    if (!folder.ends_with(L'\\'))
        return folder;
    const std::wstring_view shorter = folder.substr(0, folder.size() - 1);
    return shorter == PathRoot(shorter) ? folder : shorter;
}

bool IsNewFolderPossible(std::wstring_view path)
{
    std::size_t end = PathRoot(path).size();
    for (;;) {
        const std::size_t name = path.find_first_not_of(L'\\', end);
        if (name == path.npos)
            return false;
        end = std::min(path.find(L'\\', name), path.size());
        const stringx folder(path.substr(0, end));
        if (const test_folder test(folder); test.made())
            return test.takes_files();
        if (!exists(folder.c_str(), exists_directory))
            return false;
    }
}

bool IsFolderAccepted(const stringx& path, bool verify)
{
    const int32_t disk = DiskState(path.view());
    return disk != -1 && disk != -2 && PathSyntax(path.c_str()) && (!verify || IsNewFolderPossible(path.view()));
}

stringx TextWithPath(std::wstring_view text, std::wstring_view path)
{
    stringx made;
    bool placed = false;
    while (!text.empty()) {
        const std::size_t percent = std::min(text.find(L'%'), text.size());
        made += text.substr(0, percent);
        text.remove_prefix(percent);
        const std::size_t mark = text.starts_with(L"%s") ? 2 : text.starts_with(L"%ls") ? 3 : 0;
        if (mark && !placed) {
            made += path;
            placed = true;
            text.remove_prefix(mark);
        } else if (!text.empty()) {
            made += text.front();
            text.remove_prefix(text.starts_with(L"%%") ? 2 : 1);
        }
    }
    return made;
}

} // namespace vh
