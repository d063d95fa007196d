// The install log: a text file with one JSON record a line of all that is done, so that it can be undone. It belongs
// to one process at a time.
#pragma once

#include <set>
#include <unordered_map>

#include "../../scriptdata/unique.h"
#include "../decision.h"
#include "../files.h"
#include "log_record.h"
#include "other_products.h"
#include "record_index.h"

namespace vh::engine {

// A setup claims its log; who only looks reads what is there at this moment, also of a setup that runs. A draft takes
// records as a claimed log does, but keeps them to itself: whoever takes steps only says what they would be.
enum class LogAccess { claim, look, draft };

class InstallLog {
public:
    // Claims the log, then reads it under the claim. A last line that a kill cut short is cut off; damaged lines are
    // passed over. Throws engine_error, and names the other setup when one has the log. A log that is looked at
    // can't be appended to.
    explicit InstallLog(std::wstring file, LogAccess access = LogAccess::claim);
    ~InstallLog() { Close(); }
    InstallLog(const InstallLog&) = delete;
    InstallLog& operator=(const InstallLog&) = delete;

    const std::wstring& File() const { return m_file; }
    bool IsDraft() const { return m_draft; }
    // Whether steps of this draft would have made a folder or key, or taken a thing away.
    bool Makes(std::wstring_view what) const { return m_draft && m_made.contains(Upper(what)); }
    bool Takes(std::wstring_view what) const { return m_draft && m_gone.contains(Upper(what)); }
    void Take(std::wstring_view what) { m_gone.insert(Upper(what)); }
    // Something is there again: `back` tells of a value what it would be.
    void GiveBack(std::wstring_view what, const LogRecord& back)
    {
        m_gone.erase(Upper(what));
        m_back.insert_or_assign(Upper(what), back);
    }
    // Null when the draft gives nothing back there.
    const LogRecord* GivesBack(std::wstring_view what) const
    {
        const auto found = m_draft ? m_back.find(Upper(what)) : m_back.end();
        return found == m_back.end() ? nullptr : &found->second;
    }
    // Whoever takes a step of the run tells what it decided.
    void Listen(DecisionNews news) { m_news = std::move(news); }
    void Tell(const Decision& decision) const
    {
        if (m_news)
            m_news(decision);
    }
    // A record stays where it is in memory while others come.
    const std::deque<LogRecord>& Records() const { return m_records; }
    // Numbers of the lines that could not be read, from 1.
    const std::vector<long>& DamagedLines() const { return m_damaged; }
    // The record was undone, or a later one that still stands took it back.
    bool Undone(const LogRecord& record) const;
    // Highest number so far: records after it are those of a later step.
    long LastId() const { return m_lastId; }
    // Earlier runs that neither commit nor rollback ended, the newest last.
    const std::set<long>& UnfinishedRuns() const { return m_unfinished; }
    // The run that this object writes; 0 before its first record.
    long CurrentRun() const { return m_run; }
    // Committed runs that still have something to tidy up.
    std::set<long> UntidyRuns() const;

    // A name beside `target` that no other log and no other step has: for a file on its way in (L"new") or out
    // (L"old").
    std::wstring NewAside(const std::wstring& target, const wchar_t* ending);
    // Numbers the records and writes them in one piece; the first of a run are preceded by a run record. When they
    // can't be written whole the file is as before and engine_error is thrown.
    void Append(std::vector<LogRecord> records);
    long Append(LogRecord record);
    // Whatever was appended reaches the disk before this returns.
    void Flush();
    // Ends the run of this object with its selection, for good once this returns.
    void Commit(LogRecord selection);
    // The run of this object is over without a commit; one that could not be undone whole stays unfinished.
    void Leave(bool undone);
    // Ends an earlier run. Without effect when the file can't be written: then the next setup sees to it again.
    void TryFinish(long run, LogKind how);
    // In the file too, when that can be written; the steps of a rollback go on without it.
    void MarkUndone(long id);
    // The size and time that the target kept for the file of a record.
    void NotePlaced(long id, uint64_t size, uint64_t time);

    // The new file of a record has its name; nothing is left under the temporary one, which this object forgets.
    void HasItsName(long id);

    // The file of a record is in use; on the disk before this returns.
    void NoteWaiting(long id);

    // SHA-256 of what files hold, by the number of their records.
    void NoteContents(std::map<std::wstring, std::wstring> digests);
    // The run of this object wants the thing to be there, though it may have left it as it was. An upgrade takes away
    // what nobody wants; other runs need not remember it.
    void RememberWishes() { m_remembers = true; }
    bool RemembersWishes() const { return m_remembers; }
    void Want(std::wstring_view what, std::wstring_view name = {})
    {
        if (m_remembers)
            m_wanted.insert(KeyOf(what, name));
    }
    bool IsWanted(const LogRecord& record) const { return m_wanted.contains(KeyOf(record.what, record.name)); }

    // Null when there is none.
    const LogRecord* Find(long id) const;
    // Where the files of records came from, by their numbers; read from the log, which keeps them for people.
    std::map<long, std::wstring> Sources() const;
    // Whether any record has that name.
    bool Knows(std::wstring_view what) const
    {
        return m_index.FindNamed(what, [](const LogRecord&) { return true; });
    }
    // The newest record of a kind and name that is not undone and that a removal knows; null when there is none. A file
    // that waits for its place is not there yet.
    const LogRecord* Newest(LogKind kind, std::wstring_view what) const;
    // That file; null when none waits.
    const LogRecord* Waiting(LogKind kind, std::wstring_view what) const;
    // Records of a kind that still stand, oldest first; of several for one name the newest only.
    std::vector<const LogRecord*> Standing(LogKind kind) const;
    // Another product of the data folder has this too.
    bool OthersHave(const LogRecord& record) { return m_others.Have(record); }
    OtherProducts& Others() { return m_others; }
    // True while something is recorded that a removal would undo.
    bool AnythingStands() const;
    // Nothing is left to undo, now or by a removal.
    bool IsIdle() const { return !AnythingStands() && m_unfinished.empty() && m_damaged.empty(); }
    // Everything that is recorded is forgotten; the claim stays.
    void Clear();
    // Gives the claim back; the file of an empty log goes, and its folder.
    void Close();

private:
    const LogRecord* NewestThat(LogKind kind, std::wstring_view what, bool waits) const;
    static std::wstring KeyOf(std::wstring_view what, std::wstring_view name)
    {
        return Upper(std::wstring(what) + L'\n' + std::wstring(name));
    }
    void Claim();
    [[noreturn]] void ThrowClaimed() const;
    void Read();
    std::set<long> FindUnfinished() const;
    void Write(const std::string& lines);
    void CutAt(uint64_t size);
    void Keep(LogRecord record);
    LogRecord* Known(long id);
    void NoteDraft(const LogRecord& record);
    std::wstring OwnerFile() const;
    std::wstring OriginalsFolder() const;

    std::wstring m_file;
    OtherProducts m_others{m_file};
    bool m_draft = false;
    std::set<std::wstring> m_made; // by a draft, in upper case
    std::set<std::wstring> m_gone;
    std::map<std::wstring, LogRecord> m_back;
    DecisionNews m_news;
    std::wstring m_token; // of this log's names
    long m_asides = 0;
    std::deque<LogRecord> m_records;
    RecordIndex m_index{m_records};
    std::set<long> m_undone;
    std::unordered_map<long, std::vector<long>> m_takenBack; // a record to those that took it back
    std::vector<long> m_damaged;
    std::set<std::size_t> m_damagedAt; // how many records stand before each damaged line
    std::set<long> m_unfinished;
    bool m_remembers = false;
    std::set<std::wstring> m_wanted;
    unique_file m_writer;
    unique_file m_owner;       // tells others whose claim it is; goes with the process
    uint64_t m_wholeBytes = 0; // of complete lines
    bool m_torn = false;       // bytes beyond them could not be cut off yet
    long m_lastId = 0;
    long m_run = 0;
};

// A file of the product that has not taken its place: another is there, and in use.
inline bool WaitsForItsPlace(const LogRecord& record)
{
    return record.waiting && IsFile(record.kind) && FactsOf(record.temp).exists();
}

// Where a step is recorded: for a removal, or `loose`, until the run ends.
struct Recording {
    InstallLog* log;
    bool loose = false;
};

} // namespace vh::engine
