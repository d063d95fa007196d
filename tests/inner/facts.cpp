// Facts where the system lacks a function, where it refuses, and where the machine would have to be another one.
#include <map>

#include <gtest/gtest.h>

#include "../../exports/vhrt/facts.h"
#include "../../scriptdata/late_fallbacks.h"
#include "../../scriptdata/late_windows.h"
#include "../../system/late_version.h"
#include "../../system/late_winspool.h"
#include "../../system/operating_system.h"
#include "../../system/version_info.h"
#include "../../system/virtual_machine.h"

namespace {

// A function of the system's replaced for one test, or taken away.
template <class Function>
class Replaced {
public:
    explicit Replaced(Function& function) : m_function(function) { function.hide(); }
    Replaced(Function& function, typename Function::pointer replacement) : m_function(function)
    {
        function.replace(replacement);
    }
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;
    ~Replaced() { m_function.replace(nullptr); }

private:
    Function& m_function;
};

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
    EXPECT_EQ(Memory(0), 0x3'8000'0000u);
    EXPECT_EQ(Memory(20), 0x3800u);
    EXPECT_EQ(Memory(0, 2), 0x2'8000'0000u);
    EXPECT_EQ(Memory(0, 3), 0x3'8000'0000u);
    EXPECT_EQ(Memory(0, 0, 0x80000000), 0x3'8000'0000u) << "the low half is not above its limit";
    EXPECT_EQ(Memory(0, 0, 0x7FFFFFFF), 0x7FFFFFFFu) << "a low limit that bites clears the high half";
    EXPECT_EQ(Memory(0, 2, 5), 5u);
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
DWORD needed_bytes;
DWORD asked_bytes;
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

BOOL WINAPI NoPorts(wchar_t*, DWORD, BYTE*, DWORD, DWORD* needed, DWORD*)
{
    *needed = 16;
    return FALSE;
}

TEST(Ports, AreCountedByTheStartsOfTheirNames)
{
    int32_t printers = 7, serial = 7;
    {
        const Replaced spooler(vh::late::enum_ports, SomePorts);
        for (const auto [needed, asked] : std::map<DWORD, DWORD>{{0, 4096}, {4096, 4096}, {100, 4096}, {5000, 5000}}) {
            needed_bytes = needed;
            EXPECT_EQ(GetPorts(&printers, &serial), 0);
            EXPECT_EQ(printers, 2);
            EXPECT_EQ(serial, 3);
            EXPECT_EQ(asked_bytes, asked);
        }
    }
    const Replaced spooler(vh::late::enum_ports, NoPorts);
    EXPECT_EQ(GetPorts(&printers, &serial), -1);
    EXPECT_EQ(printers, 0);
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
    EXPECT_EQ(GetModuleHandleW(L"Shcore.dll"), nullptr);
    EXPECT_GT(_GetSystemDpi(), 0);
    EXPECT_EQ(GetModuleHandleW(L"Shcore.dll"), nullptr) << "the library is freed again";
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

TEST(Bitness, IsAskedByName)
{
    {
        const Replaced emulated(vh::late::is_wow64_process, [](HANDLE, BOOL* yes) WINAPI -> BOOL {
            *yes = TRUE;
            return TRUE;
        });
        EXPECT_EQ(_IsWow64(), 1);
    }
    {
        const Replaced failing(vh::late::is_wow64_process, [](HANDLE, BOOL* yes) WINAPI -> BOOL {
            *yes = TRUE;
            return FALSE;
        });
        EXPECT_EQ(_IsWow64(), 0);
    }
    const Replaced hidden(vh::late::is_wow64_process);
    EXPECT_EQ(_IsWow64(), 0);

    const auto machine = [](HANDLE, USHORT* process, USHORT* native) WINAPI -> BOOL {
        *process = IMAGE_FILE_MACHINE_AMD64;
        *native = native_machine;
        return TRUE;
    };
    for (const auto [native, answer] : std::map<USHORT, int32_t>{{0xAA64, 1}, {0x8664, 0}, {0x1C4, 0}}) {
        const Replaced told(vh::late::is_wow64_process2, machine);
        native_machine = native;
        EXPECT_EQ(_IsArm64(), answer);
    }
    const Replaced none(vh::late::is_wow64_process2);
    EXPECT_EQ(_IsArm64(), 0);
}

// What the system does with its redirection: each disable gives a value, each revert takes one.
std::vector<std::string> redirection_calls;
bool redirection_fails;

BOOL WINAPI Disable(void** before)
{
    static std::intptr_t count = 0;
    *before = reinterpret_cast<void*>(++count);
    redirection_calls.push_back("disable " + std::to_string(count));
    return !redirection_fails;
}

BOOL WINAPI Revert(void* before)
{
    redirection_calls.push_back("revert " + std::to_string(reinterpret_cast<std::intptr_t>(before)));
    return !redirection_fails;
}

BOOLEAN WINAPI Enable(BOOLEAN on)
{
    redirection_calls.push_back("enable " + std::to_string(on));
    return !redirection_fails;
}

class Redirection : public testing::Test {
protected:
    void SetUp() override
    {
        redirection_calls.clear();
        redirection_fails = false;
    }
    void ExpectCalls(const std::vector<std::string>& calls)
    {
        EXPECT_EQ(redirection_calls, calls);
        redirection_calls.clear();
    }

    Replaced<decltype(vh::late::is_wow64_process)> m_emulated{vh::late::is_wow64_process,
                                                              [](HANDLE, BOOL* yes) WINAPI -> BOOL {
                                                                  *yes = TRUE;
                                                                  return TRUE;
                                                              }};
    Replaced<decltype(vh::late::wow64_disable_fs_redirection)> m_disable{vh::late::wow64_disable_fs_redirection,
                                                                         Disable};
    Replaced<decltype(vh::late::wow64_revert_fs_redirection)> m_revert{vh::late::wow64_revert_fs_redirection, Revert};
    Replaced<decltype(vh::late::wow64_enable_fs_redirection)> m_enable{vh::late::wow64_enable_fs_redirection, Enable};
};

TEST_F(Redirection, IsPutBackInReverseOrder)
{
    EXPECT_EQ(_EnableWow64FsRedirection(0), 0);
    EXPECT_EQ(_EnableWow64FsRedirection(0), 0);
    EXPECT_EQ(_EnableWow64FsRedirection(1), 0);
    EXPECT_EQ(_EnableWow64FsRedirection(256), 0);
    ExpectCalls({"disable 1", "disable 2", "revert 2", "revert 1"});
    EXPECT_EQ(_EnableWow64FsRedirection(256), 0);
    ExpectCalls({"enable 1"});
}

TEST_F(Redirection, TellsFailuresAndKeepsNothingOfThem)
{
    redirection_fails = true;
    EXPECT_EQ(_EnableWow64FsRedirection(0), -1);
    redirection_fails = false;
    redirection_calls.clear();
    EXPECT_EQ(_EnableWow64FsRedirection(1), 0);
    ExpectCalls({"enable 1"});
    EXPECT_EQ(_EnableWow64FsRedirection(0), 0);
    redirection_fails = true;
    EXPECT_EQ(_EnableWow64FsRedirection(1), -1);
    redirection_calls.clear();
    EXPECT_EQ(_EnableWow64FsRedirection(1), -1);
    ExpectCalls({"enable 1"});
}

TEST_F(Redirection, TakesTheOlderFunctionWhenOneOfThePairIsMissing)
{
    vh::late::wow64_revert_fs_redirection.hide();
    EXPECT_EQ(_EnableWow64FsRedirection(0), 0);
    EXPECT_EQ(_EnableWow64FsRedirection(1), 0);
    ExpectCalls({"enable 0", "enable 1"});
    vh::late::wow64_enable_fs_redirection.hide();
    EXPECT_EQ(_EnableWow64FsRedirection(0), -1);
    EXPECT_EQ(_EnableWow64FsRedirection(1), -1);
    ExpectCalls({});
}

TEST_F(Redirection, IsNotTouchedInANativeProcess)
{
    vh::late::is_wow64_process.hide();
    EXPECT_EQ(_EnableWow64FsRedirection(0), -1);
    EXPECT_EQ(_EnableWow64FsRedirection(1), -1);
    ExpectCalls({});
}

std::string probes_run;
int answering_probe;

template <int Number>
bool Probe()
{
    probes_run += std::to_string(Number);
    return Number == answering_probe;
}

TEST(VirtualMachine, IsTheFirstProbeThatAnswersAndAskedOnce)
{
    const vh::virtual_machine_probe probes[] = {{11, Probe<1>}, {12, Probe<2>}, {13, Probe<3>}};
    for (const auto& [answering, run] : std::map<int, std::string>{{1, "1"}, {2, "12"}, {3, "123"}, {0, "123"}}) {
        probes_run.clear();
        answering_probe = answering;
        vh::virtual_machine machine(probes);
        const int32_t number = answering ? 10 + answering : 0;
        EXPECT_EQ(machine.type(), number);
        EXPECT_EQ(machine.type(), number);
        EXPECT_EQ(probes_run, run);
    }
}

// Faults that reached the process, seen behind the probes' own handler.
int faults_seen;

LONG CALLBACK SeeFault(EXCEPTION_POINTERS*)
{
    ++faults_seen;
    return EXCEPTION_CONTINUE_SEARCH;
}

TEST(VirtualMachine, ProbesEndWithoutAFaultThatAnyoneElseSees)
{
    const auto probes = vh::VirtualMachineProbes();
    ASSERT_EQ(probes.size(), 4u);
    void* const handler = AddVectoredExceptionHandler(0, SeeFault);
    faults_seen = 0;
    int32_t first = 0;
    for (std::size_t at = 0; at < probes.size(); ++at) {
        EXPECT_EQ(probes[at].number, static_cast<int32_t>(at) + 1);
        const bool answer = probes[at].answers();
        EXPECT_EQ(probes[at].answers(), answer);
        if (answer && first == 0)
            first = probes[at].number;
    }
    RemoveVectoredExceptionHandler(handler);
    EXPECT_EQ(faults_seen, 0);
    EXPECT_FALSE(probes[3].answers());
    EXPECT_EQ(_GetVirtualMachineType(), first);
    EXPECT_EQ(_IsVirtualMachine(), first != 0);
}

TEST(VirtualMachine, ProbesRunOnSeveralThreadsAtOnce)
{
    const auto work = [](void*) WINAPI -> DWORD {
        for (int i = 0; i < 200; ++i)
            for (const auto& probe : vh::VirtualMachineProbes())
                probe.answers();
        return 1;
    };
    HANDLE threads[4];
    for (HANDLE& thread : threads)
        thread = CreateThread(nullptr, 0, work, nullptr, 0, nullptr);
    EXPECT_EQ(WaitForMultipleObjects(4, threads, TRUE, 30000), WAIT_OBJECT_0);
    for (const HANDLE thread : threads) {
        DWORD ended = 0;
        GetExitCodeThread(thread, &ended);
        EXPECT_EQ(ended, 1u);
        CloseHandle(thread);
    }
}

TEST(OperatingSystem, HasACodeAndANameForEachKnownVersion)
{
    const struct {
        uint32_t platform, major, minor;
        bool is_me;
        uint32_t code;
        bool known;
        const wchar_t* name;
    } rows[] = {
        {1, 4, 0, false, 16, true, L"Windows 95"},
        {1, 3, 0, true, 16, true, L"Windows 95"},
        {1, 4, 10, false, 64, true, L"Windows 98"},
        {1, 4, 10, true, 128, true, L"Windows Me"},
        {1, 4, 90, false, 128, true, L"Windows Me"},
        {1, 4, 11, false, 128, false, L"Windows Me"},
        {2, 4, 0, false, 0x10000, true, L"Windows NT 4.0"},
        {2, 4, 9, false, 0x10000, true, L"Windows NT 4.0"},
        {2, 5, 0, false, 0x100000, true, L"Windows 2000"},
        {2, 5, 1, false, 0x400000, true, L"Windows XP"},
        {2, 5, 2, true, 0x800000, true, L"Windows Server 2003"},
        {2, 5, 3, false, 0, false, L""},
        {2, 6, 0, false, 0x1000000, true, L"Windows Vista / Server 2008"},
        {2, 6, 1, false, 0x2000000, true, L"Windows 7 / Server 2008 R2"},
        {2, 6, 2, false, 0x4000000, true, L"Windows 8 / Server 2012"},
        {2, 6, 3, false, 0x8000000, true, L"Windows 8.1 / Server 2012 R2"},
        {2, 6, 4, false, 0, false, L""},
        {2, 10, 0, false, 0x10000000, true, L"Windows 10 / Server 2016"},
        {2, 10, 1, false, 0, false, L""},
        {2, 3, 51, false, 0x10000000, true, L"Windows 10 / Server 2016"},
        {2, 11, 7, false, 0x10000000, true, L"Windows 10 / Server 2016"},
        {0, 3, 10, false, 0, false, L""},
        {3, 5, 0, false, 0, false, L""},
    };
    for (const auto& row : rows) {
        const vh::operating_system system = vh::OperatingSystemOf(row.platform, row.major, row.minor, row.is_me);
        EXPECT_EQ(system.code, row.code) << row.platform << '.' << row.major << '.' << row.minor;
        EXPECT_EQ(system.known, row.known) << row.platform << '.' << row.major << '.' << row.minor;
        if (row.code)
            EXPECT_STREQ(vh::GetOsNameText(row.code, 1), row.name);
    }
    EXPECT_STREQ(vh::GetOsNameText(0x20000, 1), L"");
}

TEST(OperatingSystem, OfCode0IsTheCurrentOne)
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    ASSERT_TRUE(GetVersionExW(&version));
    const auto wanted =
        vh::OperatingSystemOf(version.dwPlatformId, version.dwMajorVersion, version.dwMinorVersion, false);
    ASSERT_TRUE(wanted.known);
    EXPECT_EQ(vh::CurrentOperatingSystem().code, wanted.code);
    EXPECT_STREQ(vh::GetOsNameText(0, 0), vh::GetOsNameText(wanted.code, 0));
}

// The fixed part of the system library that the next look-up finds.
VS_FIXEDFILEINFO told_version;

BOOL WINAPI TellVersion(const void* block, const wchar_t* name, void** value, UINT* length)
{
    if (std::wstring_view(name) != L"\\")
        return FALSE;
    *value = std::memcpy(const_cast<void*>(block), &told_version, sizeof(told_version));
    *length = sizeof(told_version);
    return TRUE;
}

TEST(OperatingSystem, IsMeByTheVersionOfTheSystemLibrary)
{
    EXPECT_EQ(_IsWindowsME(), 0);
    const Replaced query(vh::late::query_version, TellVersion);
    for (const auto [high, answer] :
         std::map<DWORD, int32_t>{{4u << 16 | 90, 1}, {4u << 16 | 10, 0}, {5u << 16 | 90, 0}}) {
        told_version = {};
        told_version.dwFileVersionMS = high;
        told_version.dwFileVersionLS = 3000;
        EXPECT_EQ(_IsWindowsME(), answer);
    }
}

BOOL WINAPI TellNothing(const void*, const wchar_t*, void**, UINT*) { return FALSE; }

TEST(VersionInfo, IsSharedByItsCopiesAndStaysWhenALoadFails)
{
    wchar_t library[MAX_PATH];
    GetSystemDirectoryW(library, MAX_PATH);
    wcscat_s(library, L"\\kernel32.dll");
    vh::version_info copy;
    EXPECT_TRUE(copy.translations().empty());
    {
        vh::version_info info;
        ASSERT_TRUE(info.load(library));
        copy = info;
        const vh::version_info third(copy);
        EXPECT_EQ(third.translations().data(), info.translations().data());
    }
    ASSERT_FALSE(copy.translations().empty());
    EXPECT_EQ(copy.dwSignature, static_cast<DWORD>(VS_FFI_SIGNATURE));
    const uint32_t first = copy.translations().front();
    EXPECT_FALSE(copy.load(L"C:\\missing.dll"));
    EXPECT_FALSE(copy.load(nullptr));
    {
        const Replaced query(vh::late::query_version, TellNothing);
        EXPECT_FALSE(copy.load(library));
    }
    const Replaced missing(vh::late::query_version);
    EXPECT_FALSE(copy.load(library));
    EXPECT_EQ(copy.translations().front(), first);
    EXPECT_EQ(copy.dwSignature, static_cast<DWORD>(VS_FFI_SIGNATURE));
}

} // namespace
