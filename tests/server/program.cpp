// A server that is a program: keeps its arguments in a file beside it, and ends with the digit before ".exe" in its
// name. The one that ends with 9 does so only once the event "vhrt test server" is set. With "hold PATH" it keeps that
// file open without sharing, with "read PATH" as those do who share all but its end, with "hold" nothing but itself,
// says so, and ends with its input.
#include <windows.h>

#include <cwchar>

namespace {

int Hold(const wchar_t* path, DWORD sharing)
{
    if (path && CreateFileW(path, GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr) == INVALID_HANDLE_VALUE)
        return 1;
    DWORD count = 0;
    char byte = '\n';
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), "ready\n", 6, &count, nullptr);
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &count, nullptr) && count)
        ;
    return 0;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* arguments, int)
{
    if (!wcsncmp(arguments, L"hold", 4))
        return Hold(arguments[4] ? arguments + 5 : nullptr, 0);
    if (!wcsncmp(arguments, L"read ", 5))
        return Hold(arguments + 5, FILE_SHARE_READ | FILE_SHARE_WRITE);
    wchar_t path[MAX_PATH + 4];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    const DWORD code = path[length - 5] - L'0';
    HANDLE file = CreateFileW(wcscat(path, L".said"), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    for (const wchar_t* at = arguments; *at; ++at)
        WriteFile(file, at, 1, &written, nullptr);
    CloseHandle(file);
    if (code == 9)
        WaitForSingleObject(OpenEventW(SYNCHRONIZE, FALSE, L"vhrt test server"), INFINITE);
    return static_cast<int>(code);
}
