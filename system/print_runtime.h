// Prints a file by the application that belongs to it: a print dialog picks the printer, a shell verb does the rest.
#pragma once

#include <string_view>
#include <windows.h>

#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"

namespace vh {

// Each operation answers false and adds to the error text when it fails; pieces are separated by "; ". Nothing is
// raised.
class CPrintRuntime {
public:
    // `owner` carries the print dialog and may be null.
    explicit CPrintRuntime(HWND owner) : m_owner(owner) {}
    CPrintRuntime(const CPrintRuntime&) = delete;
    CPrintRuntime& operator=(const CPrintRuntime&) = delete;

    // The file at the path that was set; waits for the application, but not for longer than 10 s.
    bool PrintFileWithShellExecute();
    // The text as a temporary file with the extension, without its dot; the file goes once it is printed.
    bool PrintStream(std::string_view text, const wchar_t* extension);

    // The path becomes that of a temporary file with the extension, which is made and stays open.
    bool CreateTempFile(const wchar_t* extension);
    bool GetTempFilePathAndName(const wchar_t* extension);
    bool ChangeFileExtension(const wchar_t* extension);
    // To the temporary file.
    bool WriteStreamToFile(std::string_view text);

    // "This error occurred while processing the file ..."
    bool AppendFileNameToError();
    const wchar_t* GetErrorStream() const { return m_error.c_str(); }
    // The system's text for a code, behind "ShellExecute returned: ".
    bool GetShellExecuteReturnValue(DWORD code);

    // Cut at 259 units.
    void SetPath(const wchar_t* path);
    const wchar_t* Path() const { return m_path; }
    // Whether a printed file goes; true at first. Result: the value before.
    bool SetDelete(bool on) { return std::exchange(m_delete, on); }

private:
    template <class Body>
    bool Guarded(const wchar_t* operation, Body&& body);
    // False, so that a failing step can end with it.
    bool AddError(const wchar_t* format, ...);
    void Wait(HANDLE process);

    unique_file m_file;
    HWND m_owner;
    wchar_t m_path[260] = L"";
    stringx m_error;
    bool m_delete = true;
    bool m_record = true;
};

// With the first visible window that belongs to `window` as the owner, or `window` itself. The file stays.
bool PrintFile(HWND window, const wchar_t* path);

} // namespace vh
