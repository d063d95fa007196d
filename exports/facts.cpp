// Exported functions on processor, memory, ports and screen.
#include <cwchar>
#include <vector>

#include "../scriptdata/halves.h"
#include "../scriptdata/late_fallbacks.h"
#include "../scriptdata/late_windows.h"
#include "../scriptdata/unique.h"
#include "../system/fs_redirection.h"
#include "../system/late_winspool.h"
#include "../system/operating_system.h"
#include "../system/system_file.h"
#include "../system/user_rights.h"
#include "../system/virtual_machine.h"
#include "vhrt/facts.h"

namespace {

constexpr int32_t standard_dpi = 96;

SYSTEM_INFO NativeSystem()
{
    SYSTEM_INFO system;
    GetNativeSystemInfo(&system);
    return system;
}

bool NativeMachineIsArm64()
{
    USHORT process = 0;
    USHORT native = 0;
    return vh::late::is_wow64_process2 && vh::late::is_wow64_process2(GetCurrentProcess(), &process, &native) &&
           native == IMAGE_FILE_MACHINE_ARM64;
}

uint64_t PhysicalMemory()
{
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof(memory);
    if (vh::late::global_memory_status_ex && vh::late::global_memory_status_ex(&memory))
        return memory.ullTotalPhys;
    // The older call counts in 32 bits.
    MEMORYSTATUS older{};
    older.dwLength = sizeof(older);
    GlobalMemoryStatus(&older);
    return static_cast<uint32_t>(older.dwTotalPhys);
}

// The ports' records with the texts behind them, and their number. False when they can't be listed.
bool ListPorts(std::vector<std::byte>& records, DWORD& count)
{
    constexpr DWORD least_bytes = 512 * 8;
    if (!vh::late::enum_ports)
        return false;
    wchar_t* const this_machine = nullptr;
    BYTE* const nothing = nullptr;
    DWORD bytes = 0;
    count = 0;
    vh::late::enum_ports(this_machine, DWORD{1}, nothing, DWORD{0}, &bytes, &count);
    if (count == 0 && bytes < least_bytes)
        bytes = least_bytes;
    records.resize(bytes);
    return vh::late::enum_ports(this_machine, DWORD{1}, reinterpret_cast<BYTE*>(records.data()), bytes, &bytes,
                                &count) != FALSE;
}

int32_t MonitorDpi(decltype(GetDpiForMonitor)* query)
{
    const HMONITOR monitor = vh::late::monitor_from_point(POINT{1, 1}, DWORD{MONITOR_DEFAULTTONEAREST});
    UINT horizontal = 0;
    UINT vertical = 0;
    return SUCCEEDED(query(monitor, MDT_EFFECTIVE_DPI, &horizontal, &vertical)) ? static_cast<int32_t>(horizontal)
                                                                                : standard_dpi;
}

struct screen_traits {
    using value_type = HDC;
    static HDC none() { return nullptr; }
    static void close(HDC screen) { vh::late::release_dc(HWND{nullptr}, screen); }
};

int32_t ScreenDpi()
{
    const vh::unique<screen_traits> screen(vh::late::get_dc(HWND{nullptr}));
    return screen ? vh::late::get_device_caps(screen.get(), LOGPIXELSX) : standard_dpi;
}

} // namespace

int32_t GetCPUType()
{
    const auto type = static_cast<int32_t>(NativeSystem().dwProcessorType);
    return type == 386 || type == 486 || type == 586 ? type : 0;
}

int32_t _GetProcessorInfo(VHRTProcessorInfo* info)
{
    if (!info)
        return -1;
    const SYSTEM_INFO system = NativeSystem();
    *info = {system.wProcessorArchitecture, static_cast<int32_t>(system.dwNumberOfProcessors),
             static_cast<int32_t>(system.dwProcessorType), system.wProcessorLevel, system.wProcessorRevision};
    return 0;
}

int32_t _GetGlobalMemorySize(uint32_t* high, uint32_t* low, int32_t shift, uint32_t highLimit, uint32_t lowLimit)
{
    const uint64_t size = vh::ShiftRight(PhysicalMemory(), shift);
    *high = static_cast<uint32_t>(size >> 32);
    *low = static_cast<uint32_t>(size);
    if (highLimit && *high > highLimit)
        *high = highLimit;
    if (lowLimit && *low > lowLimit) {
        *low = lowLimit;
        *high = 0;
    }
    return 0;
}

int32_t GetPorts(int32_t* printerPorts, int32_t* serialPorts)
{
    *printerPorts = 0;
    *serialPorts = 0;
    std::vector<std::byte> records;
    DWORD count = 0;
    if (!ListPorts(records, count))
        return -1;
    const auto* port = reinterpret_cast<const PORT_INFO_1W*>(records.data());
    for (const auto* end = port + count; port != end; ++port) {
        if (std::wcsncmp(port->pName, L"LPT", 3) == 0)
            ++*printerPorts;
        else if (std::wcsncmp(port->pName, L"COM", 3) == 0)
            ++*serialPorts;
    }
    return 0;
}

int32_t _GetSystemDpi()
{
    const vh::unique_module library(
        LoadLibraryExW(vh::SystemFile(L"Shcore.dll").c_str(), nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
    const auto query = vh::late::get_dpi_for_monitor.get_in(library.get());
    return query ? MonitorDpi(query) : ScreenDpi();
}

int32_t _IsArm64()
{
    return NativeSystem().wProcessorArchitecture == PROCESSOR_ARCHITECTURE_ARM64 || NativeMachineIsArm64();
}

namespace {

vh::fs_redirection redirection;
vh::virtual_machine machine(vh::VirtualMachineProbes());

// Itanium systems are not asked.
bool CanBeProbed()
{
    SYSTEM_INFO system;
    GetNativeSystemInfo(&system);
    return system.wProcessorArchitecture != PROCESSOR_ARCHITECTURE_IA64;
}

} // namespace

int32_t IsNTAdmin() { return vh::IsInLocalGroup(vh::local_group::administrators, vh::membership::granted); }

int32_t IsPowerUser() { return vh::IsInLocalGroup(vh::local_group::power_users, vh::membership::granted); }

int32_t _IsInAdminGroup() { return vh::IsInLocalGroup(vh::local_group::administrators, vh::membership::any); }

int32_t _IsWindowsME() { return vh::IsWindowsMe(); }

int32_t _IsWow64() { return vh::IsWow64(); }

int32_t _EnableWow64FsRedirection(int32_t on)
{
    if (!vh::IsWow64())
        return -1;
    return (on ? redirection.enable() : redirection.disable()) ? 0 : -1;
}

int32_t _IsVirtualMachine() { return _GetVirtualMachineType() != 0; }

int32_t _GetVirtualMachineType() { return CanBeProbed() ? machine.type() : 0; }
