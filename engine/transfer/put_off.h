// What a file in use puts off: a list beside the logs of all products, scheduled with the system as well, and tried
// again by each start of a setup.
#pragma once

#include <optional>
#include <set>
#include <vector>

#include "../../scriptdata/unique.h"
#include "log_record.h"

namespace vh::engine {

// Open for one setup at a time. Lines are those of an install log.
class PutOffList {
public:
    // Of the folder that the log's folder lies in; what is added belongs to the product of that log.
    explicit PutOffList(const std::wstring& logFile);
    ~PutOffList();
    PutOffList(const PutOffList&) = delete;
    PutOffList& operator=(const PutOffList&) = delete;

    // Carries out what it can, but for other products whose setup runs at this moment. Result: a
    // warning about damaged lines, which are left out from now on.
    std::optional<Message> CarryOut();

    // The file at `temp` takes the place of `what`, at once or later; what was to take it before goes. False when
    // something else than its use is in the way.
    bool Exchange(const LogRecord& record);
    // The file at `backup` goes, at once or later. False when something else than its use is in the way.
    bool Delete(const LogRecord& record);
    // A file goes from its place, at once or under the name `aside`; one that can't be renamed goes later. False when
    // something else than its use is in the way.
    bool Remove(const std::wstring& path, const std::wstring& aside);
    // A folder goes that is in use, or that holds nothing but files of this list. False for others.
    bool RemoveFolder(const std::wstring& folder);
    // The file is not to go from its place any more. With `exchanges`, what was to take that place goes.
    void Withdraw(const std::wstring& path, bool exchanges = true);

    // Files and folders that are to go from their own places, in upper case.
    std::set<std::wstring> PlacesToGo() const;
    // Something of this product waits.
    bool Waits() const;

    struct News {
        std::wstring file;
        std::wstring reason;
    };
    // What was put off through this object, in words for people.
    const std::vector<News>& Told() const { return m_told; }

private:
    bool Open(DWORD disposition);
    void Close();
    void EndTurn();
    void Read();
    void Save();
    bool Note(LogRecord entry);
    // `words` tell what waits, behind the reason; an empty one is the use of the file.
    void Tell(const LogRecord& entry, const std::wstring& words, const std::wstring& reason = {});
    bool Add(LogRecord entry, const std::wstring& words, const std::wstring& reason = {});
    bool IsDone(const LogRecord& entry) const;
    bool IsBusyElsewhere(const std::wstring& product) const;
    bool Holds(const std::wstring& path) const;

    std::wstring m_file;
    std::wstring m_product;
    std::vector<LogRecord> m_entries;
    std::size_t m_damaged = 0; // lines that nobody has been told of
    std::vector<News> m_told;
    unique_handle m_turn; // a mutex of all setups of this session
    unique_file m_open;
    bool m_changed = false;
};

} // namespace vh::engine
