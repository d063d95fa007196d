// A server that is a program: keeps its arguments in a file beside it, and ends with the digit before ".exe" in its
// name. The one that ends with 9 does so only once the event "vhrt test server" is set.
#include <windows.h>

#include <cwchar>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* arguments, int)
{
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
