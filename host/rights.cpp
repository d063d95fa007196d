#include "rights.h"

#include <windows.h>

#include <shellapi.h>

#include "console.h"
#include "scriptdata/unique.h"
#include "text.h"

namespace host {

namespace {

// The command line behind the program's own name.
const wchar_t* WordsBehindProgram()
{
    const wchar_t* at = GetCommandLineW();
    for (bool quoted = false; *at && (quoted || (*at != L' ' && *at != L'\t')); ++at)
        if (*at == L'"')
            quoted = !quoted;
    while (*at == L' ' || *at == L'\t')
        ++at;
    return at;
}

} // namespace

bool HasMachineRights()
{
    vh::unique_handle token;
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    return OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put()) &&
           GetTokenInformation(token.get(), TokenElevation, &elevation, sizeof elevation, &size) &&
           elevation.TokenIsElevated;
}

ExitCode RunWithMachineRights()
{
    const std::wstring program = ProgramFile();
    SHELLEXECUTEINFOW start{};
    start.cbSize = sizeof start;
    start.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC;
    start.lpVerb = L"runas";
    start.lpFile = program.c_str();
    start.lpParameters = WordsBehindProgram();
    start.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExW(&start)) {
        Complain(L"the rights of an administrator are needed: " + SystemText(GetLastError()));
        return exit_rights;
    }
    const vh::unique_handle process(start.hProcess);
    DWORD code = exit_rights;
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &code);
    return static_cast<ExitCode>(code);
}

std::optional<ExitCode> SeeToRights(bool for_machine, bool silent)
{
    if (!for_machine || HasMachineRights())
        return std::nullopt;
    if (!silent)
        return RunWithMachineRights();
    Complain(L"the product is one for all users: a silent run of it wants the rights of an administrator");
    return exit_rights;
}

} // namespace host
