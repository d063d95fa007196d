// Exported functions on versions.
#include "../exports/vhrt/versions.h"

int32_t IsOSTypeNT()
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    return GetVersionExW(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
}
