// Facts about machine, system and language through the exports.
#include <gtest/gtest.h>

#include "../../exports/vhrt/calls.h"
#include "../../exports/vhrt/facts.h"
#include "../../exports/vhrt/language.h"
#include "../../exports/vhrt/versions.h"
#include "../support/import_patch.h"

namespace {

TEST(Facts, OfTheProcessorAreTheNativeSystems)
{
    SYSTEM_INFO system;
    GetNativeSystemInfo(&system);
    VHRTProcessorInfo info{};
    EXPECT_EQ(_GetProcessorInfo(&info), 0);
    EXPECT_EQ(info.architecture, system.wProcessorArchitecture);
    EXPECT_EQ(info.processorCount, static_cast<int32_t>(system.dwNumberOfProcessors));
    EXPECT_EQ(info.processorType, static_cast<int32_t>(system.dwProcessorType));
    EXPECT_EQ(info.processorLevel, system.wProcessorLevel);
    EXPECT_EQ(info.processorRevision, system.wProcessorRevision);
    EXPECT_EQ(_GetProcessorInfo(nullptr), -1);
    // A 64-bit processor type is none of those that scripts know.
    EXPECT_EQ(GetCPUType(), 0);
    EXPECT_EQ(_IsArm64(), system.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_ARM64);
}

TEST(Facts, OfThisProcessAndSystem)
{
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
    const vh::test::CallCounter<void(SYSTEM_INFO*)> system("GetNativeSystemInfo", Itanium);
    ASSERT_TRUE(system.found());
    EXPECT_EQ(_GetVirtualMachineType(), 0);
    EXPECT_EQ(_IsVirtualMachine(), 0);
    EXPECT_EQ(GetCPUType(), 586);
}

TEST(Facts, OfPortsAreThoseThatTheSystemLists)
{
    int32_t printers = -1, serial = -1;
    const int32_t code = GetPorts(&printers, &serial);
    // A system without a spooler lists none.
    EXPECT_TRUE(code == 0 || (code == -1 && printers == 0 && serial == 0)) << code;
    EXPECT_GE(printers, 0);
    EXPECT_GE(serial, 0);
}

TEST(Memory, ComesInHalvesThatLimitsCap)
{
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof(memory);
    GlobalMemoryStatusEx(&memory);
    const uint64_t total = memory.ullTotalPhys;
    ASSERT_GT(total >> 20, 1u);

    uint32_t high = 1, low = 1;
    EXPECT_EQ(_GetGlobalMemorySize(&high, &low, 0, 0, 0), 0);
    EXPECT_EQ(uint64_t{high} << 32 | low, total);
    _GetGlobalMemorySize(&high, &low, 20, 0, 0);
    EXPECT_EQ(high, 0u);
    EXPECT_EQ(low, total >> 20);
    // A low limit that bites clears the high half as well.
    _GetGlobalMemorySize(&high, &low, 20, 0, 1);
    EXPECT_EQ(high, 0u);
    EXPECT_EQ(low, 1u);
    // One bit of the size, far enough up to fill the high half.
    _GetGlobalMemorySize(&high, &low, 64, 1, 1);
    EXPECT_EQ(high, 0u);
    EXPECT_EQ(low, 0u);
}

TEST(Language, GetsSublanguage1OnlyWhenItHasNone)
{
    struct row {
        int32_t given, standard;
    };
    for (const row& expected : {row{9, 1033}, row{1033, 1033}, row{0, 1024}, row{2057, 2057}, row{0x3FF, 0x7FF},
                                row{0x10009, 0x10009}, row{-1, -1}})
        EXPECT_EQ(_GetStandardLangId(expected.given), expected.standard);
}

TEST(DllDirectory, IsSetAndClearedLikeTheSystems)
{
    wchar_t before[MAX_PATH] = L"";
    GetDllDirectoryW(MAX_PATH, before);
    EXPECT_NE(_SetDllDirectory(L"C:\\windows\\temp"), 0);
    wchar_t now[MAX_PATH] = L"";
    GetDllDirectoryW(MAX_PATH, now);
    EXPECT_STREQ(now, L"C:\\windows\\temp");
    EXPECT_NE(_SetDllDirectory(before), 0);
}

} // namespace
