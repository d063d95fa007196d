#include "put_off.h"

#include <algorithm>
#include <map>

#include "../../system/pending_operations.h"
#include "../../system/reboot_move.h"
#include "../files.h"
#include "in_use.h"

namespace vh::engine {

namespace {

constexpr const wchar_t* list_name = L"in-use.log";
constexpr uint64_t largest_list = 1 << 30;
// Another setup keeps the list for its own steps; a long removal is not waited for.
constexpr DWORD longest_wait = 5'000; // ms

// Forms of an entry: an exchange has `temp`; a `taken` file goes from its `backup`; a `file` without `temp` goes from
// its own place, a `folder` too, when nothing is in it.
const std::wstring& SourceOf(const LogRecord& entry)
{
    return !entry.temp.empty() ? entry.temp : entry.kind == LogKind::taken ? entry.backup : entry.what;
}

bool IsOwnPlace(const LogRecord& entry) { return entry.kind != LogKind::taken && entry.temp.empty(); }

LogRecord EntryOf(LogKind kind, const std::wstring& what)
{
    LogRecord entry;
    entry.kind = kind;
    entry.what = what;
    return entry;
}

// With the system, or where that is not allowed on the library's list. Result: when it happens.
std::wstring Schedule(const LogRecord& entry)
{
    const std::wstring target = entry.temp.empty() ? std::wstring() : LongPath(entry.what);
    if (ScheduleAtReboot(stringxi(LongPath(SourceOf(entry))), stringxi(target)) == ERROR_SUCCESS)
        return L" when the system starts again";
    if (!target.empty())
        RecordPendingOperation(entry.temp.c_str(), entry.what.c_str());
    return L" with the next start of a setup";
}

// The sources of what was carried out, or is not to be.
void Unschedule(const std::set<std::wstring>& sources)
{
    if (sources.empty())
        return;
    std::set<stringxi> paths;
    std::set<stringxi> longPaths;
    for (const std::wstring& source : sources) {
        paths.emplace(source);
        longPaths.emplace(LongPath(source));
    }
    WithdrawAtReboot(longPaths);
    ForgetPendingOperations(paths);
}

} // namespace

PutOffList::PutOffList(const std::wstring& logFile)
    : m_file(JoinPath(FolderOf(FolderOf(logFile)), list_name)), m_product(FileNameOf(FolderOf(logFile)))
{
    if (FactsOf(m_file).file())
        Open(OPEN_EXISTING);
}

PutOffList::~PutOffList()
{
    Close();
    EndTurn();
}

void PutOffList::EndTurn()
{
    if (m_turn)
        ReleaseMutex(m_turn.get());
    m_turn.reset();
}

void PutOffList::Close()
{
    if (!m_open)
        return;
    if (m_changed)
        Save();
    FILE_DISPOSITION_INFO gone{TRUE};
    if (m_entries.empty() && !m_damaged &&
        SetFileInformationByHandle(m_open.get(), FileDispositionInfo, &gone, sizeof gone)) {
        m_open.reset();
        RemoveDirectoryW(LongPath(FolderOf(m_file)).c_str());
    }
    m_open.reset();
}

bool PutOffList::Open(DWORD disposition)
{
    if (m_open)
        return true;
    m_turn.reset(CreateMutexW(nullptr, FALSE, L"Local\\VHSetup.InUse"));
    if (m_turn && WaitForSingleObject(m_turn.get(), longest_wait) == WAIT_TIMEOUT)
        m_turn.reset();
    if (m_turn)
        m_open.reset(CreateFileW(LongPath(m_file).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr,
                                 disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (m_open)
        Read();
    else
        EndTurn();
    return static_cast<bool>(m_open);
}

void PutOffList::Read()
{
    std::string content(static_cast<std::size_t>(std::min(FactsOf(m_file).size, largest_list)), '\0');
    DWORD got = 0;
    ReadFile(m_open.get(), content.data(), static_cast<DWORD>(content.size()), &got, nullptr);
    content.resize(got);
    for (std::size_t at = 0, end = 0; (end = content.find('\n', at)) != content.npos; at = end + 1)
        if (auto entry = FromLine(std::string_view(content).substr(at, end - at)))
            m_entries.push_back(std::move(*entry));
        else
            ++m_damaged;
}

void PutOffList::Save()
{
    std::string lines;
    for (const LogRecord& entry : m_entries)
        lines += ToLine(entry) + '\n';
    DWORD written = 0;
    SetFilePointer(m_open.get(), 0, nullptr, FILE_BEGIN);
    WriteFile(m_open.get(), lines.data(), static_cast<DWORD>(lines.size()), &written, nullptr);
    SetEndOfFile(m_open.get());
}

bool PutOffList::Holds(const std::wstring& path) const
{
    return std::ranges::any_of(m_entries, [&](const LogRecord& entry) { return SameText(SourceOf(entry), path); });
}

std::set<std::wstring> PutOffList::PlacesToGo() const
{
    std::set<std::wstring> places;
    for (const LogRecord& entry : m_entries)
        if (IsOwnPlace(entry))
            places.insert(Upper(entry.what));
    return places;
}

bool PutOffList::Waits() const
{
    return std::ranges::any_of(m_entries, [&](const LogRecord& entry) { return SameText(entry.name, m_product); });
}

bool PutOffList::Note(LogRecord entry)
{
    if (!Open(OPEN_ALWAYS))
        return false;
    entry.id = 1;
    entry.name = m_product;
    m_entries.push_back(std::move(entry));
    Save();
    return true;
}

void PutOffList::Tell(const LogRecord& entry, const std::wstring& words, const std::wstring& reason)
{
    const std::wstring& used = entry.temp.empty() ? SourceOf(entry) : entry.what;
    m_told.push_back({entry.what, (reason.empty() ? InUseWords(used) : reason) + words + Schedule(entry)});
}

bool PutOffList::Add(LogRecord entry, const std::wstring& words, const std::wstring& reason)
{
    // A setup that was killed may not have come to schedule it.
    if (Holds(SourceOf(entry)))
        Unschedule({SourceOf(entry)});
    else if (!Note(entry))
        return false;
    Tell(entry, words, reason);
    return true;
}

bool PutOffList::Exchange(const LogRecord& record)
{
    if (!Holds(record.temp))
        Withdraw(record.what);
    if (MoveOver(record.temp, record.what))
        return true;
    const DWORD code = GetLastError();
    LogRecord entry = EntryOf(LogKind::file, record.what);
    entry.temp = record.temp;
    // Whatever keeps it, the new file is not forgotten.
    return Add(std::move(entry), L"; the new file takes its place",
               IsInUse(record.what, code) ? std::wstring() : L"can't be replaced yet: " + SystemText(code));
}

bool PutOffList::Delete(const LogRecord& record)
{
    if (!FactsOf(record.backup).file() || RemoveFile(record.backup))
        return true;
    if (!IsInUse(record.backup, GetLastError()))
        return false;
    LogRecord entry = EntryOf(LogKind::taken, record.what);
    entry.backup = record.backup;
    return Add(std::move(entry), L" in its old form, which goes");
}

bool PutOffList::Remove(const std::wstring& path, const std::wstring& aside)
{
    const FileFacts there = FactsOf(path);
    if (!there.exists() || RemoveFile(path))
        return true;
    if (!IsInUse(path, GetLastError()))
        return false;
    // On the list before the name is another, so that a kill leaves nothing that nobody knows of.
    LogRecord entry = EntryOf(LogKind::taken, path);
    entry.backup = aside;
    if (!Note(entry))
        return false;
    if (MoveFileExW(LongPath(path).c_str(), LongPath(aside).c_str(), 0)) {
        Tell(entry, L"; it goes");
        return true;
    }
    m_entries.pop_back();
    entry = EntryOf(LogKind::file, path);
    entry.size = there.size;
    entry.time = there.time;
    return Add(std::move(entry), L"; it goes");
}

bool PutOffList::RemoveFolder(const std::wstring& folder)
{
    const std::vector<Entry> content = ListFolder(folder);
    if (!std::ranges::all_of(content, [&](const Entry& entry) { return Holds(JoinPath(folder, entry.name)); }))
        return false;
    if (content.empty() && (RemoveDirectoryW(LongPath(folder).c_str()) || !IsInUse(folder, GetLastError())))
        return !FactsOf(folder).exists();
    return Add(EntryOf(LogKind::folder, folder), L"; it goes");
}

void PutOffList::Withdraw(const std::wstring& path, bool exchanges)
{
    const auto left = std::stable_partition(m_entries.begin(), m_entries.end(), [&](const LogRecord& entry) {
        return !SameText(entry.what, path) || !(IsOwnPlace(entry) || (exchanges && !entry.temp.empty()));
    });
    std::set<std::wstring> sources;
    for (auto entry = left; entry != m_entries.end(); ++entry) {
        if (!entry->temp.empty())
            RemoveFile(entry->temp);
        sources.insert(SourceOf(*entry));
        m_changed = true;
    }
    m_entries.erase(left, m_entries.end());
    Unschedule(sources);
}

bool PutOffList::IsDone(const LogRecord& entry) const
{
    const FileFacts there = FactsOf(SourceOf(entry));
    if (!there.exists())
        return true;
    if (!entry.temp.empty())
        return MoveOver(entry.temp, entry.what);
    if (entry.kind == LogKind::folder)
        return RemoveDirectoryW(LongPath(entry.what).c_str()) ||
               (GetLastError() == ERROR_DIR_NOT_EMPTY && std::ranges::none_of(m_entries, [&](const LogRecord& other) {
                    return &other != &entry && LiesIn(SourceOf(other), entry.what);
                }));
    // Another file has the place by now.
    if (IsOwnPlace(entry) && (there.size != entry.size || there.time != entry.time))
        return true;
    return there.file() && RemoveFile(SourceOf(entry));
}

// A setup decides by what it sees: nobody changes that under its feet.
bool PutOffList::IsBusyElsewhere(const std::wstring& product) const
{
    return !SameText(product, m_product) &&
           FactsOf(JoinPath(JoinPath(FolderOf(m_file), product), L"setup.running")).exists();
}

std::optional<Message> PutOffList::CarryOut()
{
    std::map<std::wstring, bool> busy; // products
    std::set<std::wstring> sources;
    for (LogRecord& entry : m_entries) {
        const auto [product, unknown] = busy.try_emplace(entry.name);
        if (unknown)
            product->second = IsBusyElsewhere(entry.name);
        if (product->second || !IsDone(entry))
            continue;
        sources.insert(SourceOf(entry));
        entry = LogRecord();
    }
    std::erase_if(m_entries, [](const LogRecord& entry) { return !entry.id; });
    Unschedule(sources);
    const std::size_t damaged = std::exchange(m_damaged, 0);
    m_changed |= !sources.empty() || damaged;
    if (!damaged)
        return std::nullopt;
    return Message{Severity::warning, m_file,
                   L"damaged lines are left out (" + Number(static_cast<int64_t>(damaged)) +
                       L"); what they told of stays",
                   E_FAIL};
}

} // namespace vh::engine
