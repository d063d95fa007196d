// What the engine has to say to people: every failure names the file and the reason.
#pragma once

#include <exception>
#include <string>
#include <windows.h>

#include "text.h"

namespace vh::engine {

enum class Severity { note, warning, error };

struct Message {
    Severity severity = Severity::note;
    // The file, key or setup folder that it is about; may be empty.
    std::wstring file;
    std::wstring reason;
    // S_OK for a note.
    HRESULT code = S_OK;

    // "file: reason", or the reason alone.
    std::wstring Text() const { return file.empty() ? reason : file + L": " + reason; }
};

// A failure inside the engine. It leaves the engine only from Engine::Open, LogFileOf and Uninstall; engine
// methods turn it into a message and its code.
class engine_error : public std::exception {
public:
    engine_error(HRESULT code, std::wstring file, std::wstring reason)
        : m_message{Severity::error, std::move(file), std::move(reason), code}, m_what(ToUtf8(m_message.Text()))
    {
    }

    const Message& message() const noexcept { return m_message; }
    HRESULT code() const noexcept { return m_message.code; }
    // The same as UTF-8.
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    Message m_message;
    std::string m_what; // UTF-8
};

} // namespace vh::engine
