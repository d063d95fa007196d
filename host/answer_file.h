// Answers on the command line: the file that a run takes, and the one that it leaves.
#pragma once

#include <string>

#include "answers.h"
#include "scriptdata/unique.h"

namespace host {

struct RunOptions;

// Makes the run silent, and takes over target, language and variables where the command line does not say otherwise.
// Throws for a file that can't be read, and for a variable whose value it does not hold and nobody gives.
void TakeAnswers(RunOptions& options, const std::wstring& file);

// Throws for a place where answers can't be written; what stands there stays.
void CheckPlaceForAnswers(const std::wstring& file);

// Open under another name from the start, so that a place that can't be written is told before anything is asked. What
// stood there stays until a run is done.
class AnswerFile {
public:
    explicit AnswerFile(const std::wstring& file);
    AnswerFile(const AnswerFile&) = delete;
    AnswerFile& operator=(const AnswerFile&) = delete;
    ~AnswerFile();

    // A failure is complained of: the run is done all the same.
    void Keep(const Answers& answers);

private:
    bool Write(const std::string& text);

    std::wstring m_path;
    std::wstring m_waiting;
    vh::unique_file m_file;
};

} // namespace host
