#include "install_log.h"

#include <algorithm>

#include "../engine.h"
#include "../machine_folder.h"

namespace vh::engine {

namespace {

constexpr uint64_t largest_log = 1u << 30;
constexpr const wchar_t* cant_write = L"can't write the install log";

std::wstring ProcessNote()
{
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    SYSTEMTIME now;
    GetLocalTime(&now);
    const auto two = [](WORD number) { return (number < 10 ? L"0" : L"") + Number(number); };
    return FileNameOf(program) + L", process " + Number(GetCurrentProcessId()) + L", since " + two(now.wHour) + L":" +
           two(now.wMinute) + L":" + two(now.wSecond);
}

// Names of one log never meet those of another, which may lie about after a kill.
std::wstring NewToken()
{
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    const uint64_t mixed = (static_cast<uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) ^
                           static_cast<uint64_t>(ticks.QuadPart) << 20 ^
                           static_cast<uint64_t>(GetCurrentProcessId()) << 40;
    constexpr wchar_t digits[] = L"0123456789abcdef";
    std::wstring token;
    for (int shift = 44; shift >= 0; shift -= 4)
        token += digits[mixed >> shift & 0xF];
    return token;
}

constexpr bool EndsRun(LogKind kind) { return kind == LogKind::commit || kind == LogKind::ended; }
constexpr bool BelongsToNoRun(LogKind kind)
{
    return EndsRun(kind) || kind == LogKind::run || kind == LogKind::undone || kind == LogKind::clean;
}

} // namespace

InstallLog::InstallLog(std::wstring file, LogAccess access)
    : m_file(std::move(file)), m_draft(access == LogAccess::draft), m_token(NewToken())
{
    if (access == LogAccess::claim)
        Claim();
    if (!m_draft || FactsOf(m_file).file())
        Read();
}

std::wstring InstallLog::OriginalsFolder() const { return JoinPath(FolderOf(m_file), L"originals"); }

std::wstring InstallLog::OwnerFile() const { return JoinPath(FolderOf(m_file), L"setup.running"); }

void InstallLog::Claim()
{
    // A setup that ends may take the folder away at this very moment.
    for (int attempt = 0; !m_writer; ++attempt) {
        MakeLogFolder(m_file, DefaultDataDir(true));
        m_writer.reset(CreateFileW(LongPath(m_file).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                   OPEN_ALWAYS, 0, nullptr));
        if (m_writer)
            break;
        const DWORD code = GetLastError();
        if (code == ERROR_SHARING_VIOLATION)
            ThrowClaimed();
        if (code == ERROR_ACCESS_DENIED && attempt == 0 && FactsOf(m_file).file() &&
            SetFileAttributesW(LongPath(m_file).c_str(), FILE_ATTRIBUTE_NORMAL))
            continue;
        if (code != ERROR_PATH_NOT_FOUND || attempt == 3)
            ThrowFileError(m_file, cant_write, code);
    }
    m_owner.reset(CreateFileW(LongPath(OwnerFile()).c_str(), GENERIC_WRITE | DELETE,
                              FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    const std::string note = ToUtf8(ProcessNote());
    DWORD written = 0;
    // Without the note another setup is refused all the same, only with fewer words.
    if (m_owner)
        WriteFile(m_owner.get(), note.data(), static_cast<DWORD>(note.size()), &written, nullptr);
}

void InstallLog::ThrowClaimed() const
{
    std::wstring who;
    const unique_file note(CreateFileW(LongPath(OwnerFile()).c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                       0, nullptr));
    char text[512];
    DWORD got = 0;
    if (note && ReadFile(note.get(), text, sizeof text, &got, nullptr) && got)
        who = L" (" + ToWide({text, got}) + L")";
    throw engine_error(FromWin32(ERROR_SHARING_VIOLATION), m_file, L"another setup of this product is running" + who);
}

void InstallLog::Read()
{
    long number = 0;
    const uint64_t torn = ReadLines(m_file, largest_log, [&](std::string_view line) {
        ++number;
        m_wholeBytes += line.size() + 1;
        // An editor's line ends are no damage.
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (auto record = FromLine(line)) {
            Keep(std::move(*record));
        } else {
            m_damaged.push_back(number);
            m_damagedAt.insert(m_records.size());
        }
    });
    if (m_writer && torn)
        CutAt(m_wholeBytes);
    m_unfinished = FindUnfinished();
}

LogRecord* InstallLog::Known(long id)
{
    const auto at = m_index.Find(id);
    return at ? &m_records[*at] : nullptr;
}

void InstallLog::Keep(LogRecord record)
{
    if (record.original)
        record.waits = JoinPath(OriginalsFolder(), Number(record.id));
    m_lastId = std::max(m_lastId, record.id);
    if (record.kind == LogKind::undone) {
        m_undone.insert(record.ref);
    } else if (record.kind == LogKind::placed) {
        if (LogRecord* file = Known(record.ref)) {
            file->sourceTime = file->time;
            file->size = record.size;
            file->time = record.time;
        }
    } else if (record.kind == LogKind::waiting) {
        if (LogRecord* file = Known(record.ref))
            file->waiting = true;
    } else if (record.kind == LogKind::content) {
        for (const auto& [id, digest] : record.texts)
            if (LogRecord* file = Known(wcstol(id.c_str(), nullptr, 10)))
                file->digest = FromHex(digest);
        record.texts.clear();
    } else if (record.ref) {
        m_takenBack[record.ref].push_back(record.id);
    }
    // Seldom asked for: the file has it.
    std::exchange(record.source, {});
    m_records.push_back(std::move(record));
    m_index.AddNewest();
}

bool InstallLog::Undone(const LogRecord& record) const
{
    if (m_undone.contains(record.id))
        return true;
    const auto takers = m_takenBack.find(record.id);
    return takers != m_takenBack.end() && std::any_of(takers->second.begin(), takers->second.end(),
                                                      [&](long taker) { return !m_undone.contains(taker); });
}

std::set<long> InstallLog::FindUnfinished() const
{
    // Where a run's records stand.
    struct Extent {
        std::size_t first = 0;
        std::size_t last = 0;
        bool ended = false;
        bool hasSelection = false;
    };
    std::map<long, Extent> runs;
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        const LogRecord& record = m_records[i];
        if (!record.run)
            continue;
        Extent& run = runs.try_emplace(record.run, Extent{i, i}).first->second;
        if (EndsRun(record.kind))
            run.ended = true;
        else if (record.kind != LogKind::clean && record.kind != LogKind::undone)
            run.last = i;
        run.hasSelection |= record.kind == LogKind::features;
    }
    std::set<long> unfinished;
    for (auto run = runs.begin(); run != runs.end(); ++run) {
        if (run->second.ended)
            continue;
        // A damaged line right behind a run's end was most likely that end: it is taken for one.
        const auto damaged = m_damagedAt.upper_bound(run->second.last);
        const bool last = std::next(run) == runs.end();
        if (damaged != m_damagedAt.end() &&
            (last ? run->second.hasSelection : *damaged <= std::next(run)->second.first))
            continue;
        unfinished.insert(run->first);
    }
    return unfinished;
}

std::set<long> InstallLog::UntidyRuns() const
{
    std::set<long> untidy;
    for (const LogRecord& record : m_records)
        if (record.kind == LogKind::commit)
            untidy.insert(record.run);
        else if (record.kind == LogKind::clean)
            untidy.erase(record.run);
    return untidy;
}

std::wstring InstallLog::NewAside(const std::wstring& target, const wchar_t* ending)
{
    return AsideName(target, m_token, ++m_asides, ending);
}

void InstallLog::Append(std::vector<LogRecord> records)
{
    long run = m_run;
    if (!run && std::any_of(records.begin(), records.end(),
                            [](const LogRecord& record) { return !BelongsToNoRun(record.kind); })) {
        for (const LogRecord& before : m_records)
            run = std::max(run, before.run);
        records.insert(records.begin(), LogRecord{});
        ++run;
    }
    long id = m_lastId;
    std::string lines;
    for (LogRecord& record : records) {
        record.id = ++id;
        if (!record.run)
            record.run = run;
        lines += ToLine(record) + '\n';
    }
    if (!m_draft)
        Write(lines);
    m_run = run;
    for (LogRecord& record : records) {
        if (m_draft)
            NoteDraft(record);
        Keep(std::move(record));
    }
}

void InstallLog::NoteDraft(const LogRecord& record)
{
    if (record.kind == LogKind::folder || record.kind == LogKind::key)
        m_made.insert(Upper(record.what));
    else if (record.kind == LogKind::taken || record.kind == LogKind::unkey)
        Take(record.what);
    else if (record.kind == LogKind::value && record.type == -1)
        Take(record.what + L'\\' + record.name);
}

long InstallLog::Append(LogRecord record)
{
    std::vector<LogRecord> one;
    one.push_back(std::move(record));
    Append(std::move(one));
    return m_lastId;
}

void InstallLog::CutAt(uint64_t size)
{
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    m_torn = !SetFilePointerEx(m_writer.get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(m_writer.get());
}

void InstallLog::Write(const std::string& lines)
{
    if (!m_writer)
        ThrowFileError(m_file, cant_write, ERROR_INVALID_HANDLE);
    CutAt(m_wholeBytes);
    DWORD code = m_torn ? GetLastError() : ERROR_SUCCESS;
    DWORD written = 0;
    if (code == ERROR_SUCCESS) {
        if (!WriteFile(m_writer.get(), lines.data(), static_cast<DWORD>(lines.size()), &written, nullptr))
            code = GetLastError();
        else if (written != lines.size())
            code = ERROR_WRITE_FAULT;
    }
    if (code != ERROR_SUCCESS) {
        CutAt(m_wholeBytes);
        ThrowFileError(m_file, cant_write, code);
    }
    m_wholeBytes += lines.size();
}

void InstallLog::Flush()
{
    if (!m_draft && !FlushFileBuffers(m_writer.get())) {
        const DWORD code = GetLastError();
        ThrowFileError(m_file, cant_write, code);
    }
}

void InstallLog::Commit(LogRecord selection)
{
    LogRecord end;
    end.kind = LogKind::commit;
    std::vector<LogRecord> records;
    records.push_back(std::move(selection));
    records.push_back(std::move(end));
    Append(std::move(records));
    Flush();
    m_run = 0;
}

void InstallLog::Leave(bool undone)
{
    const long run = std::exchange(m_run, 0);
    m_unfinished.insert(run);
    if (undone) {
        TryFinish(run, LogKind::ended);
        m_unfinished.erase(run);
    }
}

void InstallLog::TryFinish(long run, LogKind how)
{
    LogRecord end;
    end.kind = how;
    end.run = run;
    try {
        Append(std::move(end));
        m_unfinished.erase(run);
    } catch (const engine_error&) {
        // Whoever comes next finds the steps done.
    }
}

void InstallLog::MarkUndone(long id)
{
    LogRecord record;
    record.kind = LogKind::undone;
    record.ref = id;
    try {
        Append(std::move(record));
    } catch (const engine_error&) {
        // Done all the same: whoever comes next finds nothing left to do there.
        m_undone.insert(id);
    }
}

void InstallLog::NotePlaced(long id, uint64_t size, uint64_t time)
{
    LogRecord record;
    record.kind = LogKind::placed;
    record.ref = id;
    record.size = size;
    record.time = time;
    Append(std::move(record));
}

void InstallLog::HasItsName(long id)
{
    if (LogRecord* file = Known(id); file && file->backup.empty())
        std::exchange(file->temp, {});
}

void InstallLog::NoteWaiting(long id)
{
    LogRecord record;
    record.kind = LogKind::waiting;
    record.ref = id;
    Append(std::move(record));
    Flush();
}

void InstallLog::NoteContents(std::map<std::wstring, std::wstring> digests)
{
    if (digests.empty())
        return;
    LogRecord record;
    record.kind = LogKind::content;
    record.texts = std::move(digests);
    Append(std::move(record));
}

const LogRecord* InstallLog::Find(long id) const
{
    const auto at = m_index.Find(id);
    return at ? &m_records[*at] : nullptr;
}

std::map<long, std::wstring> InstallLog::Sources() const
{
    std::map<long, std::wstring> sources;
    if (!FactsOf(m_file).file())
        return sources;
    ReadLines(m_file, largest_log, [&](std::string_view line) {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (auto record = FromLine(line); record && !record->source.empty())
            sources[record->id] = std::move(record->source);
    });
    return sources;
}

const LogRecord* InstallLog::Newest(LogKind kind, std::wstring_view what) const
{
    if (what.empty()) {
        const auto found = std::find_if(m_records.rbegin(), m_records.rend(), [&](const LogRecord& record) {
            return record.kind == kind && record.what.empty() && !record.loose && !Undone(record);
        });
        return found == m_records.rend() ? nullptr : &*found;
    }
    return NewestThat(kind, what, false);
}

const LogRecord* InstallLog::Waiting(LogKind kind, std::wstring_view what) const
{
    return NewestThat(kind, what, true);
}

const LogRecord* InstallLog::NewestThat(LogKind kind, std::wstring_view what, bool waits) const
{
    return m_index.FindNamed(what, [&](const LogRecord& record) {
        return record.kind == kind && !record.loose && !record.ref && !Undone(record) &&
               WaitsForItsPlace(record) == waits;
    });
}

std::vector<const LogRecord*> InstallLog::Standing(LogKind kind) const
{
    const auto stands = [&](const LogRecord& record) {
        return record.kind == kind && !record.loose && !record.ref && !Undone(record);
    };
    std::vector<const LogRecord*> standing;
    for (const LogRecord& record : m_records)
        if (stands(record) && &record == m_index.FindNamed(record.what, [&](const LogRecord& other) {
                return stands(other) && Upper(other.name) == Upper(record.name);
            }))
            standing.push_back(&record);
    return standing;
}

bool InstallLog::AnythingStands() const
{
    return std::any_of(m_records.begin(), m_records.end(),
                       [&](const LogRecord& record) { return IsForRemoval(record) && !Undone(record); });
}

void InstallLog::Clear()
{
    if (!m_draft)
        CutAt(0);
    m_records.clear();
    m_index.Clear();
    m_undone.clear();
    m_takenBack.clear();
    m_damaged.clear();
    m_damagedAt.clear();
    m_unfinished.clear();
    m_wholeBytes = 0;
    m_run = 0;
}

void InstallLog::Close()
{
    if (!m_writer)
        return;
    m_owner.reset();
    m_writer.reset();
    if (m_wholeBytes)
        return;
    RemoveDirectoryW(LongPath(OriginalsFolder()).c_str());
    // Another setup that has claimed it by now keeps it.
    RemoveFile(m_file);
    RemoveDirectoryW(LongPath(FolderOf(m_file)).c_str());
}

} // namespace vh::engine
