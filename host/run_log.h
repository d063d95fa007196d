// A log of runs that a supporter can read: each line with its time and level, passwords masked.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "console.h"
#include "scriptdata/unique.h"

namespace host {

// A name such as those of passwords and keys: what has it is not shown.
bool IsSecretName(std::wstring_view name);
// "--var PASSWORD=..." and the like, with "***" for the value.
std::wstring MaskedWord(std::wstring_view word);

class RunLog {
public:
    // Each run appends a section of its own. Throws std::runtime_error for a file that can't be written.
    explicit RunLog(const std::wstring& file);
    ~RunLog() { Flush(); }
    RunLog(const RunLog&) = delete;
    RunLog& operator=(const RunLog&) = delete;

    // Any thread may write. Warnings and errors reach the file at once, other lines within a second or so.
    void Write(Level level, std::wstring_view text);
    // The value of a variable: where its name is a secret one, no line shows it from now on.
    void Hide(std::wstring_view name, std::wstring_view value);

private:
    void Flush();
    std::wstring Masked(std::wstring_view text) const;

    std::mutex m_lock;
    vh::unique_file m_file;
    std::string m_waiting; // for the file, in UTF-8
    unsigned long long m_flushed = 0;
    std::vector<std::wstring> m_secrets;
};

} // namespace host
