// Finds records of the install log by number and by name.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "../text.h"
#include "log_record.h"

namespace vh::engine {

// A log has many records: the index keeps no names of its own.
class RecordIndex {
public:
    explicit RecordIndex(const std::deque<LogRecord>& records) : m_records(records) {}

    // The newest record of the list.
    void AddNewest();
    void Clear();
    // Place of the newest record of that number; nothing when there is none.
    std::optional<std::size_t> Find(long id) const;
    // Records of a name, whatever its case, from the newest to the oldest, until the answer is true: that one, or null.
    template <class Wanted>
    const LogRecord* FindNamed(std::wstring_view name, Wanted&& wanted) const
    {
        const std::wstring upper = Upper(name);
        const auto newest = m_newest.find(std::hash<std::wstring>()(upper));
        for (std::size_t at = newest == m_newest.end() ? 0 : newest->second; at; at = m_former[at - 1])
            if (const LogRecord& record = m_records[at - 1]; Upper(record.what) == upper && wanted(record))
                return &record;
        return nullptr;
    }

private:
    const std::deque<LogRecord>& m_records;
    // Places counted from 1; 0 stands for none.
    std::unordered_map<std::size_t, std::uint32_t> m_newest; // by the hash of a name in upper case
    std::vector<std::uint32_t> m_former;                     // of each record, the one before with the same hash
    std::vector<std::pair<long, std::uint32_t>> m_byId;      // in order of the numbers
};

} // namespace vh::engine
