#include "record_index.h"

#include <algorithm>
#include <utility>

namespace vh::engine {

namespace {

template <class Numbers>
auto PlaceOfId(Numbers& numbers, long id)
{
    return std::lower_bound(numbers.begin(), numbers.end(), id,
                            [](const auto& entry, long wanted) { return entry.first < wanted; });
}

} // namespace

void RecordIndex::AddNewest()
{
    const LogRecord& record = m_records.back();
    const auto place = static_cast<std::uint32_t>(m_records.size());
    // Numbers grow but in a log that was tampered with.
    if (const auto at = PlaceOfId(m_byId, record.id); at == m_byId.end() || at->first != record.id)
        m_byId.emplace(at, record.id, place);
    else
        at->second = place;
    m_former.push_back(std::exchange(m_newest[std::hash<std::wstring>()(Upper(record.what))], place));
}

void RecordIndex::Clear()
{
    m_newest.clear();
    m_former.clear();
    m_byId.clear();
}

std::optional<std::size_t> RecordIndex::Find(long id) const
{
    const auto at = PlaceOfId(m_byId, id);
    if (at == m_byId.end() || at->first != id)
        return std::nullopt;
    return at->second - 1;
}

} // namespace vh::engine
