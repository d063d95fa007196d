#include "operating_system.h"

#include <windows.h>

#include "system_file.h"
#include "version_info.h"

namespace vh {

namespace {

constexpr uint32_t any = UINT32_MAX;
constexpr uint32_t windows_me = 128;

enum class library : uint8_t { any_version, is_490, is_not_490 };

struct system_row {
    uint32_t platform;
    uint32_t major;
    uint32_t minor;
    library system_library;
    operating_system system;
    const wchar_t* name;
};

// The first row that fits counts. A row without a name is a system that is not known.
constexpr system_row systems[] = {
    {VER_PLATFORM_WIN32_WINDOWS, any, 0, library::any_version, {16, true}, L"Windows 95"},
    {VER_PLATFORM_WIN32_WINDOWS, any, 10, library::is_not_490, {64, true}, L"Windows 98"},
    {VER_PLATFORM_WIN32_WINDOWS, any, 10, library::is_490, {windows_me, true}, L"Windows Me"},
    {VER_PLATFORM_WIN32_WINDOWS, any, 90, library::any_version, {windows_me, true}, L"Windows Me"},
    {VER_PLATFORM_WIN32_WINDOWS, any, any, library::any_version, {windows_me, false}, L""},
    {VER_PLATFORM_WIN32_NT, 4, any, library::any_version, {0x10000, true}, L"Windows NT 4.0"},
    {VER_PLATFORM_WIN32_NT, 5, 0, library::any_version, {0x100000, true}, L"Windows 2000"},
    {VER_PLATFORM_WIN32_NT, 5, 1, library::any_version, {0x400000, true}, L"Windows XP"},
    {VER_PLATFORM_WIN32_NT, 5, 2, library::any_version, {0x800000, true}, L"Windows Server 2003"},
    {VER_PLATFORM_WIN32_NT, 5, any, library::any_version, {0, false}, L""},
    {VER_PLATFORM_WIN32_NT, 6, 0, library::any_version, {0x1000000, true}, L"Windows Vista / Server 2008"},
    {VER_PLATFORM_WIN32_NT, 6, 1, library::any_version, {0x2000000, true}, L"Windows 7 / Server 2008 R2"},
    {VER_PLATFORM_WIN32_NT, 6, 2, library::any_version, {0x4000000, true}, L"Windows 8 / Server 2012"},
    {VER_PLATFORM_WIN32_NT, 6, 3, library::any_version, {0x8000000, true}, L"Windows 8.1 / Server 2012 R2"},
    {VER_PLATFORM_WIN32_NT, 6, any, library::any_version, {0, false}, L""},
    {VER_PLATFORM_WIN32_NT, 10, 0, library::any_version, {0x10000000, true}, L"Windows 10 / Server 2016"},
    {VER_PLATFORM_WIN32_NT, 10, any, library::any_version, {0, false}, L""},
    {VER_PLATFORM_WIN32_NT, any, any, library::any_version, {0x10000000, true}, L"Windows 10 / Server 2016"},
};

constexpr bool Fits(uint32_t wanted, uint32_t value) { return wanted == any || wanted == value; }

constexpr bool Fits(library wanted, bool is_me)
{
    return wanted == library::any_version || (wanted == library::is_490) == is_me;
}

} // namespace

operating_system OperatingSystemOf(uint32_t platform, uint32_t major, uint32_t minor, bool is_me)
{
    for (const system_row& row : systems)
        if (row.platform == platform && Fits(row.major, major) && Fits(row.minor, minor) &&
            Fits(row.system_library, is_me))
            return row.system;
    return {};
}

operating_system CurrentOperatingSystem()
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    if (!GetVersionExW(&version))
        return {};
    // Only one platform has systems that the library tells apart.
    const bool is_me = version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS && IsWindowsMe();
    return OperatingSystemOf(version.dwPlatformId, version.dwMajorVersion, version.dwMinorVersion, is_me);
}

const wchar_t* GetOsNameText(uint32_t code, uint32_t)
{
    if (code == 0)
        code = CurrentOperatingSystem().code;
    for (const system_row& row : systems)
        if (row.system.known && row.system.code == code)
            return row.name;
    return L"";
}

bool IsWindowsMe()
{
    version_info info;
    return info.load(SystemFile(L"Kernel32.dll").c_str()) && info.is(4, 90);
}

} // namespace vh
