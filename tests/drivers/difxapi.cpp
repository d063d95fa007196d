// A driver library that installs nothing: it tells its log callback what it was given. Its code is the number that the
// package's name ends with, and at 77 it asks for a restart.
#include <windows.h>

#include <cwchar>
#include <string>

#include "../../Src/inc/script_values.h"

namespace {

void(WINAPI* g_log)(int, DWORD, const wchar_t*, void*) = nullptr;
void* g_context = nullptr;

DWORD Tell(const wchar_t* what, const wchar_t* package, DWORD flags, const INSTALLERINFO* by = nullptr)
{
    std::wstring text = std::wstring(what) + L" " + package + L" " + std::to_wstring(flags);
    if (by)
        text += std::wstring(L" ") + by->applicationId + L"," + by->displayName + L"," + by->productName + L"," +
                by->manufacturerName;
    const wchar_t* digits = package + wcscspn(package, L"0123456789-");
    const auto code = static_cast<DWORD>(wcstol(digits, nullptr, 10));
    if (g_log)
        g_log(3, code, text.c_str(), g_context);
    return code;
}

DWORD Change(const wchar_t* what, const wchar_t* package, DWORD flags, const INSTALLERINFO* by, BOOL* reboot)
{
    const DWORD code = Tell(what, package, flags, by);
    if (code == 77)
        *reboot = TRUE;
    return code;
}

} // namespace

extern "C" {

__declspec(dllexport) void WINAPI
    DIFXAPISetLogCallbackW(void(WINAPI* log)(int, DWORD, const wchar_t*, void*), void* context)
{
    g_log = log;
    g_context = context;
}
__declspec(dllexport) DWORD WINAPI DriverPackagePreinstallW(const wchar_t* package, DWORD flags)
{
    return Tell(L"preinstall", package, flags);
}
__declspec(dllexport) DWORD WINAPI
    DriverPackageInstallW(const wchar_t* package, DWORD flags, const INSTALLERINFO* by, BOOL* reboot)
{
    return Change(L"install", package, flags, by, reboot);
}
__declspec(dllexport) DWORD WINAPI DriverPackageGetPathW(const wchar_t* package, wchar_t* buffer, DWORD* size)
{
    const DWORD needed = static_cast<DWORD>(wcslen(package)) + 1, room = *size;
    *size = needed;
    if (!buffer || room < needed)
        return ERROR_INSUFFICIENT_BUFFER;
    wcscpy(buffer, package);
    return Tell(L"path", package, 0);
}

} // extern "C"
