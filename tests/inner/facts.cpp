// Facts where the system lacks a function, and where it refuses.
#include "../../exports/vhrt/facts.h"
#include "../../scriptdata/late_fallbacks.h"
#include "../../scriptdata/late_windows.h"
#include "../../system/late_winspool.h"
#include "../support/test.h"

namespace {

uint64_t Memory(int32_t shift, uint32_t high_limit = 0, uint32_t low_limit = 0)
{
    uint32_t high = 77, low = 77;
    EXPECT_EQ(_GetGlobalMemorySize(&high, &low, shift, high_limit, low_limit), 0);
    return uint64_t{high} << 32 | low;
}

TEST(Memory, OfAnySizeGoesThroughShiftAndLimits)
{
    const Replaced status(vh::late::global_memory_status_ex, [](MEMORYSTATUSEX* memory) WINAPI -> BOOL {
        memory->ullTotalPhys = 0x3'8000'0000;
        return TRUE;
    });
    // A low half that is not above its limit stays; a limit that bites clears the high half.
    Table<int32_t, uint32_t, uint32_t, uint64_t> cases = {
        {0, 0, 0, 0x3'8000'0000}, {0, 2, 0, 0x2'8000'0000}, {64, 0, 0, 0}, {0, 0, 0x80000000, 0x3'8000'0000},
        {20, 0, 0, 0x3800},       {0, 3, 0, 0x3'8000'0000}, {0, 2, 5, 5},  {0, 0, 0x7FFFFFFF, 0x7FFFFFFF}};
    for (const auto& [shift, high_limit, low_limit, size] : cases)
        EXPECT_EQ(Memory(shift, high_limit, low_limit), size) << shift << " " << low_limit;
}

TEST(Memory, ComesFromTheOlderCallIn32Bits)
{
    MEMORYSTATUS older{};
    older.dwLength = sizeof(older);
    GlobalMemoryStatus(&older);
    const auto expected = static_cast<uint32_t>(older.dwTotalPhys);
    {
        const Replaced hidden(vh::late::global_memory_status_ex);
        EXPECT_EQ(Memory(0), expected);
    }
    const Replaced failing(vh::late::global_memory_status_ex, [](MEMORYSTATUSEX*) WINAPI -> BOOL { return FALSE; });
    EXPECT_EQ(Memory(0), expected);
}

// Ports of a spooler that asks for so many bytes first.
DWORD needed_bytes, asked_bytes;
const wchar_t* const port_names[] = {L"LPT1:", L"COM1:", L"COM10:", L"FILE:", L"com2:", L"LPT", L"LP", L"", L"COMx"};

BOOL WINAPI SomePorts(wchar_t*, DWORD level, BYTE* buffer, DWORD size, DWORD* needed, DWORD* count)
{
    EXPECT_EQ(level, 1u);
    *needed = needed_bytes;
    if (!buffer) {
        *count = 0;
        return FALSE;
    }
    asked_bytes = size;
    auto* port = reinterpret_cast<PORT_INFO_1W*>(buffer);
    for (const wchar_t* name : port_names)
        *port++ = {const_cast<wchar_t*>(name)};
    *count = std::size(port_names);
    return TRUE;
}

TEST(Ports, AreCountedByTheStartsOfTheirNames)
{
    int32_t printers = 7, serial = 7;
    {
        const Replaced spooler(vh::late::enum_ports, SomePorts);
        for (const auto& [needed, asked] : std::map<DWORD, DWORD>{{0, 4096}, {4096, 4096}, {100, 4096}, {5000, 5000}}) {
            needed_bytes = needed;
            EXPECT_GIVES(GetPorts(&printers, &serial), 0, printers, 2);
            EXPECT_EQ(serial, 3);
            EXPECT_EQ(asked_bytes, asked);
        }
    }
    const Replaced spooler(vh::late::enum_ports,
                           [](wchar_t*, DWORD, BYTE*, DWORD, DWORD* needed, DWORD*)
                               WINAPI -> BOOL { return *needed = 16, FALSE; });
    EXPECT_GIVES(GetPorts(&printers, &serial), -1, printers, 0);
    EXPECT_EQ(serial, 0);
}

HRESULT WINAPI DpiOfMonitor(HMONITOR monitor, MONITOR_DPI_TYPE kind, UINT* horizontal, UINT* vertical)
{
    EXPECT_EQ(monitor, MonitorFromPoint({1, 1}, MONITOR_DEFAULTTONEAREST));
    EXPECT_EQ(kind, MDT_EFFECTIVE_DPI);
    *horizontal = 144;
    *vertical = 120;
    return S_OK;
}

TEST(Resolution, IsTheMonitorsOrElseTheScreens)
{
    const HMODULE before = GetModuleHandleW(L"Shcore.dll");
    EXPECT_GT(_GetSystemDpi(), 0);
    EXPECT_EQ(GetModuleHandleW(L"Shcore.dll"), before) << "the library is freed again";
    {
        const Replaced monitor(vh::late::get_dpi_for_monitor, DpiOfMonitor);
        EXPECT_EQ(_GetSystemDpi(), 144);
    }
    const Replaced screen(vh::late::get_device_caps,
                          [](HDC, int index) WINAPI { return index == LOGPIXELSX ? 120 : 0; });
    {
        const Replaced failing(vh::late::get_dpi_for_monitor,
                               [](HMONITOR, MONITOR_DPI_TYPE, UINT*, UINT*) WINAPI -> HRESULT { return E_FAIL; });
        EXPECT_EQ(_GetSystemDpi(), 96);
    }
    const Replaced hidden(vh::late::get_dpi_for_monitor);
    EXPECT_EQ(_GetSystemDpi(), 120);
    const Replaced no_screen(vh::late::get_dc, [](HWND) WINAPI -> HDC { return nullptr; });
    EXPECT_EQ(_GetSystemDpi(), 96);
}

USHORT native_machine;
BOOL wow64_answer;

BOOL WINAPI SayEmulated(HANDLE, BOOL* yes)
{
    *yes = TRUE;
    return wow64_answer;
}

TEST(Bitness, IsAskedByName)
{
    {
        const Replaced told(vh::late::is_wow64_process, SayEmulated);
        for (const BOOL answer : {FALSE, TRUE}) {
            wow64_answer = answer;
            EXPECT_EQ(_IsWow64(), answer);
        }
    }
    const Replaced hidden(vh::late::is_wow64_process);
    EXPECT_EQ(_IsWow64(), 0);
    {
        const Replaced told(vh::late::is_wow64_process2, [](HANDLE, USHORT* process, USHORT* native) WINAPI -> BOOL {
            *process = IMAGE_FILE_MACHINE_AMD64;
            *native = native_machine;
            return TRUE;
        });
        for (const auto& [native, answer] : std::map<USHORT, int32_t>{{0xAA64, 1}, {0x8664, 0}, {0x1C4, 0}}) {
            native_machine = native;
            EXPECT_EQ(_IsArm64(), answer);
        }
    }
    const Replaced none(vh::late::is_wow64_process2);
    EXPECT_EQ(_IsArm64(), 0);
}

// What the system does with its redirection: each disable gives a value, each revert takes one.
std::string redirection_calls;
bool redirection_fails;

BOOL WINAPI Disable(void** before)
{
    static std::intptr_t count = 0;
    *before = reinterpret_cast<void*>(++count);
    redirection_calls += " disable " + std::to_string(count);
    return !redirection_fails;
}

BOOL WINAPI Revert(void* before)
{
    redirection_calls += " revert " + std::to_string(reinterpret_cast<std::intptr_t>(before));
    return !redirection_fails;
}

BOOLEAN WINAPI Enable(BOOLEAN on)
{
    redirection_calls += " enable " + std::to_string(on);
    return !redirection_fails;
}

struct Redirection : testing::Test {
    void SetUp() override
    {
        redirection_calls.clear();
        redirection_fails = false;
        wow64_answer = TRUE;
    }
    // The result, and the calls that it took.
    std::string Switch(int32_t on, bool fails = false)
    {
        redirection_fails = fails;
        redirection_calls.clear();
        const int32_t result = _EnableWow64FsRedirection(on);
        return std::to_string(result) + redirection_calls;
    }

    Replaced<decltype(vh::late::is_wow64_process)> m_emulated{vh::late::is_wow64_process, SayEmulated};
    Replaced<decltype(vh::late::wow64_disable_fs_redirection)> m_disable{vh::late::wow64_disable_fs_redirection,
                                                                         Disable};
    Replaced<decltype(vh::late::wow64_revert_fs_redirection)> m_revert{vh::late::wow64_revert_fs_redirection, Revert};
    Replaced<decltype(vh::late::wow64_enable_fs_redirection)> m_enable{vh::late::wow64_enable_fs_redirection, Enable};
};

TEST_F(Redirection, IsPutBackInReverseOrder)
{
    EXPECT_EQ(Switch(0), "0 disable 1");
    EXPECT_EQ(Switch(0), "0 disable 2");
    EXPECT_EQ(Switch(1), "0 revert 2");
    EXPECT_EQ(Switch(256), "0 revert 1");
    EXPECT_EQ(Switch(256), "0 enable 1") << "nothing is left to revert";
    // Failures are told, and nothing of them is kept.
    EXPECT_EQ(Switch(0, true), "-1 disable 3");
    EXPECT_EQ(Switch(1), "0 enable 1");
    EXPECT_EQ(Switch(0), "0 disable 4");
    EXPECT_EQ(Switch(1, true), "-1 revert 4");
    EXPECT_EQ(Switch(1, true), "-1 enable 1");
}

TEST_F(Redirection, TakesTheOlderFunctionWhenOneOfThePairIsMissing)
{
    vh::late::wow64_revert_fs_redirection.hide();
    EXPECT_EQ(Switch(0), "0 enable 0");
    EXPECT_EQ(Switch(1), "0 enable 1");
    vh::late::wow64_enable_fs_redirection.hide();
    for (const int32_t on : {0, 1})
        EXPECT_EQ(Switch(on), "-1");
    vh::late::wow64_enable_fs_redirection.show();
    vh::late::is_wow64_process.hide();
    for (const int32_t on : {0, 1})
        EXPECT_EQ(Switch(on), "-1") << "a native process is not touched";
}

} // namespace
