// The install log: a text file with one JSON record a line of all that was done, so that it can be undone.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "../../scriptdata/unique.h"
#include "../messages.h"

namespace vh::engine {

enum class LogKind {
    run,      // a run began
    commit,   // the run is complete
    features, // the selection that the run leaves: `list`
    folder,   // a folder was made
    file,     // a file is written under `temp`, what stood there goes to `backup`, then it gets its name
    key,      // a registry key was made
    value,    // a registry value was written; `old` is what it was
    set,      // a registry set was applied
    shell,    // a shortcut, written like a file
    texts,    // saved targets: `texts`
    undone,   // the record `ref` was undone
};

// Kinds that stand for a file on the machine.
constexpr bool IsFile(LogKind kind) { return kind == LogKind::file || kind == LogKind::shell; }

struct LogRecord {
    LogKind kind = LogKind::run;
    long id = 0;
    long run = 0;
    // Path of a file, shortcut or folder; root\key of the registry; name of a set or saved texts.
    std::wstring what;
    std::wstring feature;
    std::wstring source;
    std::wstring temp;
    std::wstring backup;
    std::wstring version;
    uint64_t size = 0;
    uint64_t time = 0;
    bool permanent = false;
    // Registry value: name, type and bytes in hexadecimal; the old ones are there when oldType is not -1. A shortcut
    // has in oldData the content of one that is not the product's.
    std::wstring name;
    long type = -1;
    std::wstring data;
    long oldType = -1;
    std::wstring oldData;
    long ref = 0;
    std::vector<std::wstring> list;
    std::map<std::wstring, std::wstring> texts;
};

class InstallLog {
public:
    // Reads what is there. A last line that a kill cut short is dropped; any other damage is an engine_error.
    explicit InstallLog(std::wstring file);

    const std::wstring& File() const { return m_file; }
    const std::vector<LogRecord>& Records() const { return m_records; }
    bool Undone(const LogRecord& record) const { return m_undone.contains(record.id); }
    // Highest number so far: records after it are those of a later step.
    long LastId() const { return m_records.empty() ? 0 : m_records.back().id; }
    // The run that no commit follows; 0 when there is none.
    long UnfinishedRun() const;
    // The run that this object writes; 0 before its first record.
    long CurrentRun() const { return m_run; }

    // Keeps other setups from writing; throws when another one does.
    void Claim();
    // Numbers the record and writes it at once; the first record of a run is preceded by a run record.
    long Append(LogRecord record);
    void MarkUndone(long id);
    // The newest record of a kind and name that is not undone; null when there is none.
    const LogRecord* Newest(LogKind kind, std::wstring_view what) const;
    // Records of a kind that still stand, oldest first; of several for one name the newest only.
    std::vector<const LogRecord*> Standing(LogKind kind) const;
    // True while something is recorded that a removal would undo.
    bool AnythingStands() const;
    // Ends writing; the file and its folder go.
    void Delete();
    void Close() { m_writer.reset(); }

    // One readable line.
    static std::wstring Line(const LogRecord& record);

private:
    void Read();
    void Write(const LogRecord& record);

    std::wstring m_file;
    std::vector<LogRecord> m_records;
    std::map<long, long> m_undone; // record to the record that says so
    unique_file m_writer;
    uint64_t m_wholeBytes = 0; // of complete lines
    long m_run = 0;
};

} // namespace vh::engine
