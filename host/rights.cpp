#include "rights.h"

#include "console.h"
#include "scriptdata/unique.h"
#include "text.h"

namespace host {

namespace {

constexpr const wchar_t* refused =
    L"the product is one for all users, and the rights of an administrator were not given; nothing was done";
constexpr const wchar_t* no_rights =
    L"the product is one for all users, and this user can't get the rights of an administrator; nothing was done";

// The command line behind the program's own name.
const wchar_t* WordsBehindProgram(const wchar_t* at)
{
    for (bool quoted = false; *at && (quoted || (*at != L' ' && *at != L'\t')); ++at)
        if (*at == L'"')
            quoted = !quoted;
    while (*at == L' ' || *at == L'\t')
        ++at;
    return at;
}

std::wstring CurrentFolder()
{
    std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    return folder;
}

ExitCode AwaitEnd(HANDLE process)
{
    // It hears Ctrl+C by itself; this one stays to hand its end on.
    SetConsoleCtrlHandler(nullptr, TRUE);
    DWORD code = exit_rights;
    WaitForSingleObject(process, INFINITE);
    GetExitCodeProcess(process, &code);
    SetConsoleCtrlHandler(nullptr, FALSE);
    return static_cast<ExitCode>(code);
}

} // namespace

ExitCode RunWithMachineRights(const wchar_t* command_line)
{
    const std::wstring_view given = WordsBehindProgram(command_line);
    const std::wstring option = Wide(rights_option) + L' ';
    if (given.starts_with(option)) {
        Complain(no_rights);
        return exit_rights;
    }
    // What is said from now on stands behind this in the log that both write.
    Mention(L"asking for the rights of an administrator", Level::warning);
    const std::wstring program = ProgramFile();
    // The system starts it in a folder of its own choice, which may be another than this one.
    const std::wstring words = option + Quoted(CurrentFolder()) + L' ' + std::wstring(given);
    const std::wstring folder = ProgramFolder();
    SHELLEXECUTEINFOW start{};
    start.cbSize = sizeof start;
    start.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    start.lpVerb = L"runas";
    start.lpFile = program.c_str();
    start.lpParameters = words.c_str();
    start.lpDirectory = folder.c_str();
    start.nShow = SW_SHOWNORMAL;
    if (!late::shell_execute_ex(&start)) {
        const DWORD code = GetLastError();
        Complain(code == ERROR_CANCELLED
                     ? refused
                     : L"the product is one for all users, and the rights of an administrator can't be asked for: " +
                           SystemText(code));
        return exit_rights;
    }
    const vh::unique_handle process(start.hProcess);
    return process ? AwaitEnd(process.get()) : exit_rights;
}

bool TakeRunOver(const std::wstring& folder)
{
    ShareConsoleOfParent();
    if (SetCurrentDirectoryW(folder.c_str()))
        return true;
    const DWORD code = GetLastError();
    Complain(folder + L": can't be reached with the rights of an administrator: " + SystemText(code));
    return false;
}

} // namespace host
