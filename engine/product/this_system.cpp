#include "this_system.h"

#include <algorithm>
#include <iterator>

#include "product.h"

namespace vh::engine {

namespace {

// Workstations by their first build; a server is one whatever its build.
struct FirstBuild {
    DWORD major;
    DWORD minor;
    DWORD build;
    const wchar_t* name;
};
constexpr FirstBuild first_builds[] = {
    {10, 0, 22000, L"windows-11"}, {10, 0, 0, L"windows-10"}, {6, 3, 0, L"windows-8.1"},
    {6, 2, 0, L"windows-8"},       {6, 1, 0, L"windows-7"},
};

uint64_t BitOf(std::wstring_view name)
{
    return std::find_if(std::begin(system_names), std::end(system_names),
                        [&](const SystemName& system) { return name == system.name; })
        ->bit;
}

} // namespace

uint64_t SystemBit(const OSVERSIONINFOEXW& version)
{
    if (version.wProductType != VER_NT_WORKSTATION)
        return BitOf(L"server");
    for (const FirstBuild& first : first_builds)
        if (version.dwMajorVersion == first.major && version.dwMinorVersion == first.minor &&
            version.dwBuildNumber >= first.build)
            return BitOf(first.name);
    return 0;
}

uint64_t ThisSystem()
{
    // The other calls answer by the program's manifest.
    using get_version = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    const auto get = reinterpret_cast<get_version>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof version;
    return get && get(&version) >= 0 ? SystemBit(version) : 0;
}

} // namespace vh::engine
