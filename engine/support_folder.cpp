#include "support_folder.h"

#include <utility>

#include "engine.h"
#include "files.h"
#include "machine_folder.h"

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

// What is in a folder goes while that is held; nobody can put another one in its place meanwhile.
void Remove(const std::wstring& folder, unique_file held)
{
    for (const Entry& entry : ListFolder(folder))
        if (const std::wstring path = JoinPath(folder, entry.name); entry.facts.folder())
            RemoveTree(path);
        else
            RemoveFile(path);
    held.reset();
    RemoveDirectoryW(LongPath(folder).c_str());
}

void RemoveAbandoned(const std::wstring& temp, bool rights)
{
    for (const Entry& entry : ListFolder(temp, std::wstring(name_start) + L"*}")) {
        const std::wstring folder = JoinPath(temp, entry.name);
        if (!entry.facts.folder() || !IsAbandoned(folder + std::wstring(mark_ending)))
            continue;
        try {
            if (rights)
                Remove(folder, HoldTrusted(folder));
            else
                RemoveTree(folder);
        } catch (const engine_error&) {
            // Somebody else's.
        }
    }
}

} // namespace

SupportFolder::SupportFolder(const std::wstring& guid)
{
    const bool rights = HasMachineRights();
    const std::wstring temp = TempFolder();
    RemoveAbandoned(temp, rights);
    m_path = JoinPath(temp, L"VHSetup" + guid);
    // Before the folder, so that nobody takes a new one for an abandoned one.
    m_mark = OpenMark(m_path + std::wstring(mark_ending), CREATE_ALWAYS);
    if (!m_mark)
        ThrowFileError(m_path, L"can't make the folder", GetLastError());
    // Other programs of the same user may write in the temporary folder, without having these rights.
    MakePrivateFolder(m_path);
    if (rights)
        m_held = HoldTrusted(m_path);
}

SupportFolder::~SupportFolder() { Remove(m_path, std::move(m_held)); }

} // namespace vh::engine
