#include "file_writer.h"

#include <algorithm>
#include <memory>
#include <set>

#include "../product/pack.h"
#include "../sha256.h"
#include "give_way.h"
#include "in_use.h"
#include "removal.h"
#include "undo_step.h"

namespace vh::engine {

namespace {

constexpr DWORD block_size = 256 * 1024;
// Files whose records are written together.
constexpr std::size_t batch_size = 64;
constexpr DWORD kept_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

// Removes the temporary file unless it got its final name.
class TempFile {
public:
    explicit TempFile(std::wstring path) : m_path(std::move(path)) {}
    ~TempFile()
    {
        if (!m_done)
            RemoveFile(m_path);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    void Done() { m_done = true; }

private:
    std::wstring m_path;
    bool m_done = false;
};

// The SHA-256 of what is copied. Large files are looked at by a second thread.
class ContentHash {
public:
    explicit ContentHash(const FileToWrite& file)
    {
        constexpr uint64_t large = 4 << 20;
        if (file.loose)
            return;
        if (file.size < large)
            m_here.emplace();
        else
            m_beside.emplace();
    }
    void Add(std::span<const std::byte> bytes)
    {
        if (m_here)
            m_here->Add(bytes);
        else if (m_beside)
            m_beside->Add(bytes);
    }
    std::wstring Finish() { return m_here ? m_here->Finish() : m_beside ? m_beside->Finish() : std::wstring(); }

private:
    std::optional<Sha256> m_here;
    std::optional<Sha256Beside> m_beside;
};

// `flushed` content reaches the disk before this returns. Result: the content's SHA-256; empty for a loose file, which
// nobody compares later.
std::wstring CopyContent(const FileToWrite& file, const std::wstring& temp, bool flushed, const WriterNews& news)
{
    PayloadReader source(file.source, file.packed);
    const unique_file target(
        CreateFileW(LongPath(temp).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!target)
        ThrowFileError(file.target, L"can't write the file", GetLastError());
    // One is read while the other is still looked at.
    const auto blocks = std::make_unique_for_overwrite<std::byte[]>(std::size_t{2} * block_size);
    ContentHash hash(file);
    uint64_t copied = 0;
    std::size_t got = 0;
    std::size_t turn = 0;
    do {
        std::byte* block = blocks.get() + (turn++ % 2) * block_size;
        got = source.Read({block, block_size});
        hash.Add({block, got});
        DWORD put = 0;
        if (got && (!WriteFile(target.get(), block, static_cast<DWORD>(got), &put, nullptr) || put != got))
            ThrowFileError(file.target, L"can't write the file", put ? ERROR_WRITE_FAULT : GetLastError());
        copied += got;
        news.advance(got, file);
    } while (got);
    if (copied != file.size)
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_INVALID), file.source,
                           L"the payload changed during the setup");
    const FILETIME time{static_cast<DWORD>(file.time & 0xFFFFFFFF), static_cast<DWORD>(file.time >> 32)};
    if (!SetFileTime(target.get(), nullptr, nullptr, &time))
        ThrowFileError(file.target, L"can't set the file's time", GetLastError());
    if (flushed && !FlushFileBuffers(target.get()))
        ThrowFileError(file.target, L"can't write the file", GetLastError());
    std::wstring digest = hash.Finish();
    if (file.packed && digest != file.packed->digest)
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT), file.source,
                           L"the setup is damaged: this is not what was packed");
    return digest;
}

void Rename(const std::wstring& from, const std::wstring& to, const std::wstring& about, const wchar_t* doing)
{
    if (!MoveFileExW(LongPath(from).c_str(), LongPath(to).c_str(), 0))
        ThrowFileError(about, doing, GetLastError());
}

std::wstring VersionOf(const FileToWrite& file)
{
    return file.version.empty() && !file.packed ? FileVersion(file.source) : file.version;
}

// By the log, which need not read the source; without its word by the source.
bool HoldsWhatWasPlaced(const Core& core, const FileToWrite& file)
{
    if (file.packed)
        return Sha256OfFile(file.target) == file.packed->digest;
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    return record && !record->digest.empty() && !file.compare ? Sha256OfFile(file.target) == record->digest
                                                              : SameContent(file.source, file.target);
}

// Builds of two versions may give a file one size and one time, and still another content. What the log knows of the
// target need not be read.
bool HoldsTheSource(const LogRecord& record, const FileToWrite& file, const FileFacts& there)
{
    const bool known = !record.digest.empty() && record.size == there.size && record.time == there.time;
    if (!known && !file.packed)
        return SameContent(file.source, file.target);
    return (known ? record.digest : Sha256OfFile(file.target)) ==
           (file.packed ? file.packed->digest : Sha256OfFile(file.source));
}

bool IsSame(const Core& core, const FileToWrite& file, const FileFacts& there)
{
    if (there.size != file.size)
        return false;
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    // A target that keeps times less exactly holds the one that it kept.
    if (there.time != file.time && (!record || record->sourceTime != file.time || record->time != there.time))
        return false;
    if (core.IsOtherVersion() && record && !file.loose)
        return HoldsTheSource(*record, file, there);
    if (core.options.repair)
        return HoldsWhatWasPlaced(core, file);
    return !file.compare || SameContent(file.source, file.target);
}

// The product had this file here, or one in its place.
bool IsRepaired(const Core& core, const FileToWrite& file)
{
    return core.kind == RunKind::repair && core.log->Newest(file.kind, file.target);
}

Decision Decide(const Core& core, const FileToWrite& file, const FileFacts& there)
{
    Decision made{Act::keep, Why::same, KindWord(file.kind), file.target, file.feature};
    const auto keep = [&](Why why) { return made.why = why, made; };
    if (!there.exists()) {
        made.act = Act::add;
        made.size = file.size;
        return keep(IsRepaired(core, file) ? Why::missing : Why::fresh);
    }
    if (there.folder())
        throw engine_error(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), file.target,
                           L"a folder stands in the file's place");
    if (IsSame(core, file, there))
        return made;
    if (file.flags & file_never_overwrite)
        return keep(Why::never_overwrite);
    if ((file.flags & file_keep_changed) && !IsOurs(core, file, there))
        return keep(Why::keep_changed);
    if (!(file.flags & file_always_overwrite)) {
        if (made.before = FileVersion(file.target); !made.before.empty())
            made.after = VersionOf(file);
        if (!made.after.empty() && CompareVersions(made.before, made.after) > 0)
            return keep(Why::newer);
    }
    if ((there.attributes & FILE_ATTRIBUTE_READONLY) && !file.overReadOnly && !IsOurs(core, file, there))
        throw engine_error(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), file.target, L"the file is read-only");
    made.act = Act::replace;
    made.size = file.size;
    made.freed = there.size;
    if (!made.after.empty() && CompareVersions(made.before, made.after) != 0)
        return keep(Why::version);
    return keep(IsRepaired(core, file) ? Why::damaged : Why::differs);
}

LogRecord FolderRecord(const std::wstring& folder, const std::wstring& feature, bool loose)
{
    LogRecord record;
    record.kind = LogKind::folder;
    record.what = folder;
    record.feature = feature;
    record.loose = loose;
    return record;
}

void MakeOneFolder(const Core& core, const std::wstring& folder, const std::wstring& feature)
{
    if (!core.log->IsDraft())
        MakeFolder(folder);
    core.log->Tell({Act::add, Why::fresh, L"folder", folder, feature});
}

LogRecord RecordOf(const FileToWrite& file)
{
    LogRecord record;
    record.kind = file.kind;
    record.what = file.target;
    record.feature = file.feature;
    record.source = file.source;
    record.version = file.version;
    record.size = file.size;
    record.time = file.time;
    record.permanent = file.flags & file_permanent;
    record.oldData = ToHex(file.previous);
    record.loose = file.loose;
    return record;
}

// Files whose records go to the log together.
class Batch {
public:
    Batch(Core& core, std::span<const FileToWrite> files)
        : m_core(core), m_toGo(PutOffList(core.log->File()).PlacesToGo())
    {
        for (const FileToWrite& file : files)
            Plan(file);
    }

    void Write(const WriterNews& news)
    {
        Record();
        for (const auto& [folder, feature] : m_folders)
            MakeOneFolder(m_core, folder, feature);
        std::map<std::wstring, std::wstring> digests;
        for (const Step& step : m_steps) {
            if (step.decision.act != Act::keep && !m_core.log->IsDraft())
                Put(step, news, digests);
            else
                news.advance(step.file->size, *step.file);
            m_core.log->Tell(step.decision);
        }
        m_core.log->NoteContents(std::move(digests));
    }

private:
    struct Step {
        const FileToWrite* file;
        Decision decision;
        std::wstring temp{};
        std::wstring backup{};
        std::size_t record = 0; // among those of the batch; its number in the log later
    };

    void Plan(const FileToWrite& file)
    {
        const FileFacts there = m_core.log->Takes(file.target) ? FileFacts() : FactsOf(file.target);
        if (!file.loose) {
            Want(file);
            ShareFolders(file);
        }
        Step step{&file, Decide(m_core, file, there)};
        if (HasItsFileWaiting(file)) {
            step.decision.act = Act::keep;
            step.decision.why = Why::same;
            step.decision.size = step.decision.freed = 0;
        } else if (step.decision.why == Why::same) {
            RecordFound(file, there);
        }
        if (step.decision.act != Act::keep) {
            for (std::wstring& folder : FoldersFor(file.target))
                if (!m_core.log->Makes(folder) && m_seen.insert(Upper(folder)).second) {
                    m_records.push_back(FolderRecord(folder, file.feature, file.loose));
                    m_folders.emplace_back(std::move(folder), file.feature);
                }
            LogRecord record = RecordOf(file);
            step.temp = record.temp = m_core.log->NewAside(file.target, L"new");
            if (there.exists()) {
                step.backup = record.backup = m_core.log->NewAside(file.target, L"old");
                record.original = file.kind == LogKind::file && !file.loose && !record.permanent && IsForeign(file);
                record.shared = record.original && m_core.log->OthersHave(record);
                if (const LogRecord* own = m_core.log->Newest(record.kind, record.what))
                    record.data = FileNameOf(own->what) == FileNameOf(record.what) ? L"" : FileNameOf(own->what);
                if (record.kind == LogKind::shell && !file.loose)
                    ShareShortcut(record, there);
            }
            step.record = m_records.size();
            m_records.push_back(std::move(record));
        }
        m_steps.push_back(std::move(step));
    }

    // What stands there came neither from the product nor from an earlier version of it, nor is it what a removal could
    // not take away yet.
    bool IsForeign(const FileToWrite& file) const
    {
        const LogRecord* record = m_core.log->Newest(file.kind, file.target);
        return (!record || record->found) && !m_toGo.contains(Upper(file.target));
    }

    // A file that waits for the place already comes from an earlier run: the same is not written again, and another
    // does not count any more.
    bool HasItsFileWaiting(const FileToWrite& file)
    {
        const LogRecord* waiting = m_core.log->Waiting(file.kind, file.target);
        if (!waiting)
            return false;
        const FileFacts there = FactsOf(waiting->temp);
        if (there.size == file.size && there.time == file.time && !file.compare && !m_core.options.repair)
            return true;
        LogRecord forgotten;
        forgotten.kind = LogKind::forgotten;
        forgotten.ref = waiting->id;
        m_records.push_back(std::move(forgotten));
        return false;
    }

    // In a plan what gives way to the folder is still there.
    std::vector<std::wstring> Missing(const std::wstring& folder) const
    {
        if (!m_core.log->IsDraft() || !FactsOf(folder).file() || !m_core.log->Takes(folder))
            return MissingFolders(folder);
        std::vector<std::wstring> folders = MissingFolders(FolderOf(folder));
        folders.push_back(folder);
        return folders;
    }

    // Those that are missing, and those that a removal could not take away yet: they are the product's again.
    std::vector<std::wstring> FoldersFor(const std::wstring& target) const
    {
        std::vector<std::wstring> folders = Missing(FolderOf(target));
        if (m_toGo.empty())
            return folders;
        for (std::wstring at = FolderOf(target); !at.empty() && at != DriveOf(at); at = FolderOf(at))
            if (m_toGo.contains(Upper(at)) && FactsOf(at).folder() && !m_core.log->Newest(LogKind::folder, at))
                folders.insert(folders.begin(), at);
        return folders;
    }

    // A folder that another product made goes with the last of them.
    void ShareFolders(const FileToWrite& file)
    {
        const std::size_t mark = m_records.size();
        for (std::wstring at = FolderOf(file.target); m_shared.insert(at).second; at = FolderOf(at)) {
            LogRecord record = FolderRecord(at, file.feature, false);
            if (m_core.log->OthersHave(record) && FactsOf(at).folder() && !m_core.log->Newest(LogKind::folder, at))
                m_records.push_back(std::move(record));
        }
        std::reverse(m_records.begin() + static_cast<std::ptrdiff_t>(mark), m_records.end());
    }

    // One that replaces another product's; what our own newest one says of that holds on.
    void ShareShortcut(LogRecord& record, const FileFacts& there)
    {
        const LogRecord* own = m_core.log->Newest(record.kind, record.what);
        if (!own || own->oldData != record.oldData) {
            if (m_core.log->Others().Placed(record, there.size, there.time))
                m_core.log->Others().Share(record);
            return;
        }
        record.shared = own->shared;
        record.firstData = own->firstData;
    }

    void Want(const FileToWrite& file)
    {
        m_core.log->Want(file.target);
        for (std::wstring folder = FolderOf(file.target); m_wanted.insert(folder).second; folder = FolderOf(folder))
            m_core.log->Want(folder);
    }

    // A file that is there already and the same counts as placed. It is the product's when a record says so: one of
    // a run that could not be undone whole is taken over; or when a removal could only put off its end.
    void RecordFound(const FileToWrite& file, const FileFacts& there)
    {
        if (file.loose)
            return;
        const LogRecord* before = m_core.log->Newest(file.kind, file.target);
        if (before && !m_core.log->UnfinishedRuns().contains(before->run))
            return;
        LogRecord record = RecordOf(file);
        record.found = !before && !m_toGo.contains(Upper(file.target)) && !m_core.log->OthersHave(record);
        record.oldData.clear();
        record.time = there.time;
        if (there.time != file.time)
            record.sourceTime = file.time;
        m_records.push_back(std::move(record));
    }

    // What a step can't repeat is on the disk before the step is done.
    void Record()
    {
        const bool replaces =
            std::any_of(m_steps.begin(), m_steps.end(), [](const Step& s) { return !s.backup.empty(); });
        const std::size_t count = m_records.size();
        if (count == 0)
            return;
        m_core.log->Append(std::move(m_records));
        for (Step& step : m_steps)
            step.record += static_cast<std::size_t>(m_core.log->LastId()) - count + 1;
        if (replaces)
            m_core.log->Flush();
    }

    void Put(const Step& step, const WriterNews& news, std::map<std::wstring, std::wstring>& digests)
    {
        const FileToWrite& file = *step.file;
        const bool replaces = !step.backup.empty();
        TempFile unfinished(step.temp);
        if (std::wstring digest = CopyContent(file, step.temp, replaces, news); !digest.empty())
            digests[Number(static_cast<int64_t>(step.record))] = std::move(digest);
        if (const FileFacts kept = FactsOf(step.temp); kept.time != file.time)
            m_core.log->NotePlaced(static_cast<long>(step.record), kept.size, kept.time);
        if (file.attributes & kept_attributes)
            SetFileAttributesW(LongPath(step.temp).c_str(), file.attributes & kept_attributes);
        if (replaces && !MoveFileExW(LongPath(file.target).c_str(), LongPath(step.backup).c_str(), 0)) {
            LetWait(step, GetLastError());
            unfinished.Done();
            return;
        }
        try {
            Rename(step.temp, file.target, file.target, L"can't write the file");
        } catch (...) {
            if (replaces)
                MoveFileExW(LongPath(step.backup).c_str(), LongPath(file.target).c_str(), 0);
            throw;
        }
        unfinished.Done();
    }

    // The new file stays under its own name beside one that is in use, until the run is committed. What is not the
    // product's has a copy by then, which a removal puts back.
    void LetWait(const Step& step, DWORD code)
    {
        const std::wstring& target = step.file->target;
        if (!IsInUse(target, code))
            ThrowFileError(target, L"can't replace the file", code);
        const auto id = static_cast<long>(step.record);
        m_core.log->NoteWaiting(id);
        if (const LogRecord* record = m_core.log->Find(id);
            record && record->original && !CopyFileW(LongPath(target).c_str(), LongPath(step.backup).c_str(), TRUE))
            ThrowFileError(
                target, InUseWords(target) + L"; it was there before the product, and no copy of it can be kept", code);
    }

    Core& m_core;
    std::vector<Step> m_steps;
    std::vector<LogRecord> m_records;
    std::vector<std::pair<std::wstring, std::wstring>> m_folders; // to be made, the outermost first, and for whom
    std::set<std::wstring> m_seen;
    std::set<std::wstring> m_toGo;   // of an earlier removal, in upper case
    std::set<std::wstring> m_wanted; // folders that the log has heard of
    std::set<std::wstring> m_shared; // folders that others were asked for
};

} // namespace

bool IsOurs(const Core& core, const FileToWrite& file, const FileFacts& facts)
{
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    return record && !record->found && record->size == facts.size && record->time == facts.time;
}

void MakeLoggedFolders(Core& core, const std::wstring& path, bool logged)
{
    std::vector<std::wstring> missing = MissingFolders(path);
    std::erase_if(missing, [&](const std::wstring& folder) { return core.log->Makes(folder); });
    for (std::wstring folder = path; logged && !folder.empty(); folder = FolderOf(folder))
        core.log->Want(folder);
    std::vector<LogRecord> records;
    for (const std::wstring& folder : missing)
        records.push_back(FolderRecord(folder, {}, false));
    if (logged && !records.empty())
        core.log->Append(std::move(records));
    for (const std::wstring& folder : missing)
        MakeOneFolder(core, folder, {});
}

void WriteFilesSafely(Core& core, std::span<const FileToWrite> files, const WriterNews& news)
{
    if (core.IsOtherVersion())
        GiveWay(core, files);
    while (!files.empty()) {
        // A target that comes again is looked at when it is there.
        std::set<std::wstring> targets;
        std::size_t count = 0;
        while (count < std::min(batch_size, files.size()) && targets.insert(Upper(files[count].target)).second)
            ++count;
        Batch(core, files.first(count)).Write(news);
        files = files.subspan(count);
    }
}

void WriteAllOrNothing(Core& core, std::span<const FileToWrite> files, const WriterNews& news)
{
    const long before = core.log->LastId();
    try {
        WriteFilesSafely(core, files, news);
    } catch (...) {
        UndoRecords(*core.log, Undo::rollback, [&](const LogRecord& record) { return record.id > before; });
        throw;
    }
}

} // namespace vh::engine
