// Runs a program as the user without the rights of an administrator, as Windows does until somebody is asked:
//     vhrt_without_rights PROGRAM [WORDS]
// Its exit code is the program's, or 99.
#include <array>
#include <string>
#include <windows.h>

#include "../../scriptdata/unique.h"

namespace {

constexpr int not_started = 99;

bool MakeToken(vh::unique_handle& token)
{
    std::array<BYTE, SECURITY_MAX_SID_SIZE> administrators{};
    DWORD size = administrators.size();
    vh::unique_handle own;
    SID_AND_ATTRIBUTES denied{administrators.data(), 0};
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators.data(), &size) &&
           OpenProcessToken(GetCurrentProcess(), TOKEN_DUPLICATE | TOKEN_ASSIGN_PRIMARY | TOKEN_QUERY, own.put()) &&
           CreateRestrictedToken(own.get(), DISABLE_MAX_PRIVILEGE, 1, &denied, 0, nullptr, 0, nullptr, token.put());
}

} // namespace

int wmain()
{
    // Behind this program's name, which the runner gives in quotation marks or without blanks.
    std::wstring line = GetCommandLineW();
    const std::size_t end = line[0] == L'"' ? line.find(L'"', 1) + 1 : line.find(L' ');
    line.erase(0, line.find_first_not_of(L' ', end));
    vh::unique_handle token;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!MakeToken(token) || !CreateProcessAsUserW(token.get(), nullptr, line.data(), nullptr, nullptr, TRUE, 0,
                                                   nullptr, nullptr, &startup, &started))
        return not_started;
    const vh::unique_handle thread(started.hThread);
    const vh::unique_handle process(started.hProcess);
    DWORD code = not_started;
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &code);
    return static_cast<int>(code);
}
