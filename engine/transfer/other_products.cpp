#include "other_products.h"

#include <algorithm>

#include "../files.h"
#include "install_log.h"

namespace vh::engine {

namespace {

std::wstring ThingOf(const LogRecord& record) { return Upper(record.what + L'\n' + record.name); }

constexpr bool IsThing(LogKind kind)
{
    return IsFile(kind) || kind == LogKind::folder || kind == LogKind::key || kind == LogKind::value;
}
constexpr bool KeepsOld(LogKind kind) { return kind == LogKind::value || kind == LogKind::shell; }

} // namespace

void OtherProducts::Read()
{
    if (std::exchange(m_read, true))
        return;
    const std::wstring own = FolderOf(m_logFile);
    for (const Entry& entry : ListFolder(FolderOf(own), L"{*}")) {
        const std::wstring file = JoinPath(JoinPath(FolderOf(own), entry.name), FileNameOf(m_logFile));
        if (SameText(entry.name, FileNameOf(own)) || !FactsOf(file).file())
            continue;
        try {
            const InstallLog log(file, LogAccess::look);
            std::map<std::wstring, LogRecord> written;
            for (const LogRecord& record : log.Records()) {
                if (!IsThing(record.kind) || !IsForRemoval(record) || log.Undone(record))
                    continue;
                const std::wstring thing = ThingOf(record);
                m_things.insert(thing);
                if (!KeepsOld(record.kind))
                    continue;
                const auto [held, fresh] = written.try_emplace(thing, record);
                LogRecord newest = record;
                const bool shared = held->second.shared;
                newest.firstType = !fresh || shared ? held->second.firstType : record.oldType;
                newest.firstData = !fresh || shared ? held->second.firstData : record.oldData;
                newest.shared = true;
                held->second = std::move(newest);
            }
            for (auto& [thing, record] : written)
                m_written[thing].push_back(std::move(record));
        } catch (const engine_error&) {
            // It can't be read now: nothing can be said of it.
        }
    }
}

const std::vector<LogRecord>* OtherProducts::Of(const LogRecord& record)
{
    Read();
    const auto found = m_written.find(ThingOf(record));
    return found == m_written.end() ? nullptr : &found->second;
}

bool OtherProducts::Have(const LogRecord& record)
{
    Read();
    return IsThing(record.kind) && m_things.contains(ThingOf(record));
}

bool OtherProducts::Wrote(const LogRecord& record, long type, const std::wstring& data)
{
    const auto* others = Of(record);
    return others && std::ranges::any_of(
                         *others, [&](const LogRecord& other) { return other.type == type && other.data == data; });
}

bool OtherProducts::Placed(const LogRecord& record, uint64_t size, uint64_t time)
{
    const auto* others = Of(record);
    return others && std::ranges::any_of(
                         *others, [&](const LogRecord& other) { return other.size == size && other.time == time; });
}

void OtherProducts::Share(LogRecord& record)
{
    const auto* others = Of(record);
    if (!others)
        return;
    record.shared = true;
    record.firstType = others->front().firstType;
    record.firstData = others->front().firstData;
}

void OtherProducts::SettleOld(LogRecord& record)
{
    if (!record.shared || !KeepsOld(record.kind))
        return;
    const auto* others = Of(record);
    if (!others) {
        record.oldType = record.firstType;
        record.oldData = record.firstData;
    } else if (record.kind == LogKind::value && !Wrote(record, record.oldType, record.oldData)) {
        record.oldType = others->front().type;
        record.oldData = others->front().data;
    }
}

void OtherProducts::SettleTime(const LogRecord& record)
{
    const auto* others = record.shared && record.kind == LogKind::shell ? Of(record) : nullptr;
    if (!others || FactsOf(record.what).size != others->front().size)
        return;
    const unique_file file(CreateFileW(LongPath(record.what).c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, nullptr,
                                       OPEN_EXISTING, 0, nullptr));
    const uint64_t time = others->front().time;
    const FILETIME written{static_cast<DWORD>(time & 0xFFFFFFFF), static_cast<DWORD>(time >> 32)};
    if (file)
        SetFileTime(file.get(), nullptr, nullptr, &written);
}

} // namespace vh::engine
