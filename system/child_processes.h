// Which process of a table is the child that a script asks for.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

struct ProcessEntry {
    uint32_t id = 0;
    uint32_t parent = 0;
    std::wstring name;
};

// All processes of one moment, by rising id.
class ProcessTable {
public:
    explicit ProcessTable(std::vector<ProcessEntry> entries) : m_entries(std::move(entries))
    {
        std::stable_sort(m_entries.begin(), m_entries.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    }

    // The first child, or descendant on demand; 0 when there is none. `time_of` reads the creation time of a process
    // and is asked for those that qualify only; a child that is older than its parent has that number by chance.
    template <class TimeOf>
    uint32_t FindChild(uint32_t parent, bool descendants, std::optional<uint64_t> parent_time, TimeOf&& time_of) const
    {
        for (const ProcessEntry& entry : m_entries) {
            if (entry.parent != parent && !(descendants && DescendsFrom(entry, parent)))
                continue;
            if (IsPasswordStore(entry.name))
                continue;
            if (parent_time)
                if (const std::optional<uint64_t> time = time_of(entry.id); time && *time < *parent_time)
                    continue;
            return entry.id;
        }
        return 0;
    }

private:
    const ProcessEntry* Find(uint32_t id) const
    {
        const auto at = std::lower_bound(m_entries.begin(), m_entries.end(), id,
                                         [](const ProcessEntry& entry, uint32_t wanted) { return entry.id < wanted; });
        return at != m_entries.end() && at->id == id ? &*at : nullptr;
    }

    // Numbers that came back can make a circle.
    bool DescendsFrom(const ProcessEntry& entry, uint32_t ancestor) const
    {
        std::set<uint32_t> visited;
        for (const ProcessEntry* at = &entry; at && visited.insert(at->id).second; at = Find(at->parent))
            if (at->parent == ancestor)
                return true;
        return false;
    }

    // The system's keeper of passwords starts under any process that needs it.
    static bool IsPasswordStore(std::wstring_view name)
    {
        constexpr std::wstring_view store = L"PSTORES.EXE";
        return std::search(name.begin(), name.end(), store.begin(), store.end(), [](wchar_t a, wchar_t b) {
                   return (a >= L'a' && a <= L'z' ? a - L'a' + L'A' : a) == b;
               }) != name.end();
    }

    std::vector<ProcessEntry> m_entries;
};

} // namespace vh
