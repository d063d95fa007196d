#include "console.h"

#include <mutex>
#include <string>
#include <windows.h>

#include "text.h"

namespace host {

namespace {

bool IsConsole(HANDLE handle)
{
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != FALSE;
}

void Write(HANDLE handle, std::wstring_view text)
{
    DWORD written = 0;
    if (IsConsole(handle)) {
        WriteConsoleW(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        return;
    }
    const std::string bytes = Utf8(text);
    WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

// Signals are told on a thread of their own.
std::mutex console_lock;

// What was complained of and nobody could read; guarded by the lock.
std::wstring unread;

std::function<void(Level, std::wstring_view)> overhears;
bool reserved = false;

// Units of the status line that stands on the console now; guarded by the lock.
std::size_t status_width = 0;

void ClearStatus(HANDLE handle)
{
    if (status_width == 0)
        return;
    Write(handle, L"\r" + std::wstring(status_width, L' ') + L"\r");
    status_width = 0;
}

void Line(DWORD stream, std::wstring_view line)
{
    const std::scoped_lock lock(console_lock);
    const HANDLE handle = GetStdHandle(stream);
    ClearStatus(GetStdHandle(STD_OUTPUT_HANDLE));
    Write(handle, std::wstring(line) + L"\n");
}

void WriteToConsole()
{
    // It stays open as long as the process.
    const HANDLE console = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, 0, nullptr);
    if (console == INVALID_HANDLE_VALUE)
        return;
    SetStdHandle(STD_OUTPUT_HANDLE, console);
    SetStdHandle(STD_ERROR_HANDLE, console);
}

} // namespace

void Overhear(std::function<void(Level, std::wstring_view)> listener) { overhears = std::move(listener); }
bool Overheard() { return static_cast<bool>(overhears); }

void ReserveOutput() { reserved = true; }
void Output(std::wstring_view text) { Line(STD_OUTPUT_HANDLE, text); }

void Say(std::wstring_view line)
{
    Line(reserved ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE, line);
    Mention(line, Level::info);
}

void Complain(std::wstring_view line, Level level)
{
    const std::wstring shown = (level == Level::warning ? L"warning: " : L"") + std::wstring(line);
    if (GetStdHandle(STD_ERROR_HANDLE))
        Line(STD_ERROR_HANDLE, ProgramName() + L": " + shown);
    else {
        const std::scoped_lock lock(console_lock);
        unread += shown + L"\n";
    }
    Mention(line, level);
}

void Mention(std::wstring_view line, Level level)
{
    if (overhears)
        overhears(level, line);
}

void ShareConsole()
{
    if (!GetStdHandle(STD_OUTPUT_HANDLE) && !GetStdHandle(STD_ERROR_HANDLE) && AttachConsole(ATTACH_PARENT_PROCESS))
        WriteToConsole();
}

void ShareConsoleOfParent()
{
    const bool own = FreeConsole() != FALSE;
    if (AttachConsole(ATTACH_PARENT_PROCESS) || (own && AllocConsole()))
        WriteToConsole();
}

void ShowComplaints()
{
    if (!unread.empty())
        MessageBoxW(nullptr, unread.c_str(), ProgramName().c_str(), MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
    unread.clear();
}

bool Status(std::wstring_view line)
{
    const HANDLE handle = GetStdHandle(STD_OUTPUT_HANDLE);
    if (!IsConsole(handle))
        return false;
    const std::scoped_lock lock(console_lock);
    ClearStatus(handle);
    const std::wstring_view shown = line.substr(0, 78);
    Write(handle, shown);
    status_width = shown.size();
    return true;
}

} // namespace host
