#include "answer_file.h"

#include <memory>
#include <stdexcept>

#include "console.h"
#include "engine/files.h"
#include "engine/product/json_reader.h"
#include "setup_run.h"
#include "text.h"

namespace host {

namespace {

std::wstring Refusal(const std::wstring& file, DWORD code)
{
    return file + L": the answers can't be written: " + SystemText(code);
}

// Also those that lack a password.
bool AreAnswers(const std::wstring& file)
{
    using vh::engine::JsonFile;
    try {
        const JsonFile json(file, JsonFile::Faults::collected);
        return json.Found().empty() && json.Root().Has("format") && json.Root().Has("product");
    } catch (const vh::engine::engine_error&) {
        return false;
    }
}

} // namespace

void TakeAnswers(RunOptions& options, const std::wstring& file)
{
    auto answers = std::make_shared<Answers>(ReadAnswers(file));
    for (const auto& [name, value] : answers->variables) {
        if (options.variables.contains(name))
            continue;
        if (!value)
            throw std::runtime_error(
                Utf8(file + L": /variables/" + name +
                     L": is a secret, which answers do not keep: give it by --var, or write it here"));
        options.variables[name] = *value;
    }
    if (options.target.empty())
        options.target = answers->target;
    if (options.language == 0)
        options.language = answers->language;
    options.silent = true;
    options.answers = std::move(answers);
    options.answers_file = file;
}

void CheckPlaceForAnswers(const std::wstring& file)
{
    const AnswerFile place(file);
    // Other files are not lost to a slip in the command line.
    if (const auto there = vh::engine::FactsOf(file); there.exists() && there.size && !AreAnswers(file))
        throw std::runtime_error(Utf8(file + L": the answers can't be written: another file has the name"));
}

AnswerFile::AnswerFile(const std::wstring& file) : m_path(file), m_waiting(file + L".~vhanswers")
{
    const DWORD attributes = GetFileAttributesW(LongPath(file).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)))
        throw std::runtime_error(Utf8(Refusal(file, ERROR_ACCESS_DENIED)));
    m_file.reset(CreateFileW(LongPath(m_waiting).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!m_file)
        throw std::runtime_error(Utf8(Refusal(file, GetLastError())));
}

AnswerFile::~AnswerFile()
{
    if (!m_file)
        return;
    m_file.reset();
    DeleteFileW(LongPath(m_waiting).c_str());
}

bool AnswerFile::Write(const std::string& text)
{
    DWORD written = 0;
    if (!WriteFile(m_file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) ||
        written != text.size() || !FlushFileBuffers(m_file.get()))
        return false;
    m_file.reset();
    if (MoveFileExW(LongPath(m_waiting).c_str(), LongPath(m_path).c_str(), MOVEFILE_REPLACE_EXISTING))
        return true;
    const DWORD code = GetLastError();
    DeleteFileW(LongPath(m_waiting).c_str());
    SetLastError(code);
    return false;
}

void AnswerFile::Keep(const Answers& answers)
{
    if (Write(TextOf(answers)))
        Say(L"answers kept in " + m_path);
    else
        Complain(Refusal(m_path, GetLastError()), Level::warning);
}

} // namespace host
