// Facts about machine, system and language through the exports.
#include "../../exports/vhrt.h"
#include "../support/test.h"

#include <winspool.h>

namespace {

TEST(Facts, OfTheProcessorAreTheNativeSystems)
{
    SYSTEM_INFO system;
    GetNativeSystemInfo(&system);
    VHRTProcessorInfo info{};
    EXPECT_GIVES(_GetProcessorInfo(&info), 0, info.architecture, system.wProcessorArchitecture);
    EXPECT_EQ(info.processorCount, static_cast<int32_t>(system.dwNumberOfProcessors));
    EXPECT_EQ(info.processorType, static_cast<int32_t>(system.dwProcessorType));
    EXPECT_EQ(info.processorLevel, system.wProcessorLevel);
    EXPECT_EQ(info.processorRevision, system.wProcessorRevision);
    EXPECT_EQ(_GetProcessorInfo(nullptr), -1);
    // A 64-bit processor type is none of those that scripts know.
    EXPECT_EQ(GetCPUType(), 0);
    EXPECT_EQ(_IsArm64(), system.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_ARM64);
    // This process and its system.
    EXPECT_EQ(_IsWow64(), 0);
    EXPECT_EQ(_EnableWow64FsRedirection(0), -1);
    EXPECT_EQ(IsOSTypeNT(), 1);
}

// As if the machine were an Itanium.
void WINAPI Itanium(SYSTEM_INFO* system)
{
    *system = {};
    system->wProcessorArchitecture = PROCESSOR_ARCHITECTURE_IA64;
    system->dwProcessorType = 586;
}

TEST(Facts, OfAnotherMachineFollowItsArchitecture)
{
    const CallCounter<void(SYSTEM_INFO*)> system("GetNativeSystemInfo", Itanium);
    EXPECT_EACH(0, _GetVirtualMachineType(), _IsVirtualMachine());
    EXPECT_EQ(GetCPUType(), 586);
}

// The names of the system's ports by a call of the test's own; empty when there is no spooler.
std::vector<std::wstring> PortNames()
{
    std::vector<PORT_INFO_2W> records(200);
    const auto room = static_cast<DWORD>(records.size() * sizeof(PORT_INFO_2W));
    DWORD needed = 0, count = 0;
    std::vector<std::wstring> names;
    if (EnumPortsW(nullptr, 2, reinterpret_cast<BYTE*>(records.data()), room, &needed, &count))
        for (DWORD i = 0; i < count; ++i)
            names.emplace_back(records[i].pPortName);
    return names;
}

TEST(Facts, OfPortsAreThoseThatTheSystemLists)
{
    const std::vector<std::wstring> names = PortNames();
    const auto starting = [&](const wchar_t* start) {
        return std::ranges::count_if(names, [start](const std::wstring& name) { return name.starts_with(start); });
    };
    int32_t printers = -1, serial = -1;
    const int32_t code = GetPorts(&printers, &serial);
    EXPECT_EQ(printers, starting(L"LPT"));
    EXPECT_EQ(serial, starting(L"COM"));
    EXPECT_TRUE(code == 0 || names.empty()) << code;
}

TEST(Language, GetsSublanguage1OnlyWhenItHasNone)
{
    Table<int32_t, int32_t> rows = {{9, 1033},      {1033, 1033},       {0, 1024}, {2057, 2057},
                                    {0x3FF, 0x7FF}, {0x10009, 0x10009}, {-1, -1}};
    for (const auto& [given, standard] : rows)
        EXPECT_EQ(_GetStandardLangId(given), standard);
}

TEST(DllDirectory, IsSetAndClearedLikeTheSystems)
{
    const auto now = [] {
        return Filled([](wchar_t* to, int room) { GetDllDirectoryW(static_cast<DWORD>(room), to); });
    };
    const std::wstring before = now();
    EXPECT_NE(_SetDllDirectory(L"C:\\windows\\temp"), 0);
    EXPECT_EQ(now(), L"C:\\windows\\temp");
    EXPECT_NE(_SetDllDirectory(before.c_str()), 0);
}

} // namespace
