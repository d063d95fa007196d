#include "support_folder.h"

#include "files.h"

namespace vh::engine {

namespace {

constexpr std::wstring_view name_start = L"VHSetup{";
constexpr std::wstring_view mark_ending = L".running";

// The mark goes with its process, however that ends; after a power failure it may be left, with nobody behind it.
unique_file OpenMark(const std::wstring& path, DWORD disposition)
{
    return unique_file(CreateFileW(LongPath(path).c_str(), GENERIC_WRITE | DELETE, 0, nullptr, disposition,
                                   FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
}

bool IsAbandoned(const std::wstring& mark) { return !FactsOf(mark).exists() || OpenMark(mark, OPEN_EXISTING); }

void RemoveAbandoned(const std::wstring& temp)
{
    for (const Entry& entry : ListFolder(temp, std::wstring(name_start) + L"*}"))
        if (entry.facts.folder() && IsAbandoned(JoinPath(temp, entry.name + std::wstring(mark_ending))))
            RemoveTree(JoinPath(temp, entry.name));
}

} // namespace

SupportFolder::SupportFolder(const std::wstring& guid)
{
    const std::wstring temp = TempFolder();
    RemoveAbandoned(temp);
    m_path = JoinPath(temp, L"VHSetup" + guid);
    // Before the folder, so that nobody takes a new one for an abandoned one.
    m_mark = OpenMark(m_path + std::wstring(mark_ending), CREATE_ALWAYS);
    if (!m_mark)
        ThrowFileError(m_path, L"can't make the folder", GetLastError());
    MakeFolders(m_path);
}

SupportFolder::~SupportFolder() { RemoveTree(m_path); }

} // namespace vh::engine
