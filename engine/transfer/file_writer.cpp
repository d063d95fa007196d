#include "file_writer.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "content_copier.h"
#include "file_decision.h"
#include "give_way.h"
#include "in_use.h"
#include "logged_folders.h"
#include "removal.h"
#include "temp_file.h"
#include "undo_step.h"

namespace vh::engine {

namespace {

// Files whose records are written together.
constexpr std::size_t batch_size = 64;
constexpr DWORD kept_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

void Rename(const std::wstring& from, const std::wstring& to, const std::wstring& about, const wchar_t* doing)
{
    if (!MoveFileExW(LongPath(from).c_str(), LongPath(to).c_str(), 0))
        ThrowFileError(about, doing, GetLastError());
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

// Writes batch by batch; what it learns of folders it keeps from one to the next.
class Writer {
public:
    explicit Writer(Core& core) : m_core(core), m_toGo(PutOffList(core.log->File()).PlacesToGo()) {}

    void Write(const FileSource& next, const WriterNews& news)
    {
        std::vector<FileToWrite> batch;
        FileToWrite file;
        for (bool more = next(file); more;) {
            batch.clear();
            // A target that comes again is looked at when it is there.
            std::set<std::wstring> targets{Upper(file.target)};
            do
                batch.push_back(std::move(file));
            while ((more = next(file)) && batch.size() < batch_size && targets.insert(Upper(file.target)).second);
            WriteBatch(batch, news);
        }
    }

private:
    struct Step {
        const FileToWrite* file;
        Decision decision;
        std::wstring temp{};
        std::wstring backup{};
        std::size_t record = 0; // among those of the batch; its number in the log later
    };

    void WriteBatch(const std::vector<FileToWrite>& batch, const WriterNews& news)
    {
        m_steps.clear();
        m_folders.clear();
        for (const FileToWrite& file : batch)
            Plan(file);
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

    void Plan(const FileToWrite& file)
    {
        m_way.GiveWayTo(file);
        const FileFacts there = m_core.log->Takes(file.target) ? FileFacts() : FactsAt(file.target);
        if (!file.loose) {
            if (m_core.log->RemembersWishes())
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
                record.original = file.kind == LogKind::file && !file.loose && !record.permanent && IsForeignHere(file);
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

    // Nor is it what a removal could not take away yet.
    bool IsForeignHere(const FileToWrite& file) const
    {
        return IsForeign(m_core, file) && !m_toGo.contains(Upper(file.target));
    }

    // In a folder that this writer has made stands what it has put there, and nothing else.
    FileFacts FactsAt(const std::wstring& target) const
    {
        return !m_fresh.empty() && m_fresh.contains(FolderOf(target)) && !m_core.log->Knows(target) ? FileFacts()
                                                                                                    : FactsOf(target);
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
    // Asked once for each folder.
    std::vector<std::wstring> FoldersFor(const std::wstring& target)
    {
        if (!m_met.insert(FolderOf(target)).second)
            return {};
        std::vector<std::wstring> folders = Missing(FolderOf(target));
        m_fresh.insert(folders.begin(), folders.end());
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
        m_core.log->Append(std::exchange(m_records, {}));
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
        if (std::wstring digest = m_copier.Copy(file, step.temp, replaces, news); !digest.empty())
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
        m_core.log->HasItsName(static_cast<long>(step.record));
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
    std::unordered_set<std::wstring> m_met;   // folders that files go to
    std::unordered_set<std::wstring> m_fresh; // folders that were not there before this writer
    WayGiver m_way{m_core};
    std::set<std::wstring> m_toGo;   // of an earlier removal, in upper case
    std::set<std::wstring> m_wanted; // folders that the log has heard of
    std::set<std::wstring> m_shared; // folders that others were asked for
    ContentCopier m_copier;
};

} // namespace

void WriteAllOrNothing(Core& core, const FileSource& files, const WriterNews& news)
{
    const long before = core.log->LastId();
    try {
        Writer(core).Write(files, news);
    } catch (...) {
        UndoRecords(*core.log, Undo::rollback, [&](const LogRecord& record) { return record.id > before; });
        throw;
    }
}

void WriteAllOrNothing(Core& core, std::span<const FileToWrite> files, const WriterNews& news)
{
    WriteAllOrNothing(
        core,
        [&](FileToWrite& file) {
            if (files.empty())
                return false;
            file = files.front();
            files = files.subspan(1);
            return true;
        },
        news);
}

} // namespace vh::engine
