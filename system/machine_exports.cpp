// Exported functions on processor and memory.
#include "../exports/vhrt/facts.h"
#include "../scriptdata/halves.h"

namespace {

SYSTEM_INFO NativeSystem()
{
    SYSTEM_INFO system;
    GetNativeSystemInfo(&system);
    return system;
}

bool NativeMachineIsArm64()
{
    using Query = BOOL(WINAPI*)(HANDLE, USHORT*, USHORT*);
    // Systems before Windows 10 lack this function.
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "IsWow64Process2");
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(found));
    USHORT process = 0;
    USHORT native = 0;
    return query && query(GetCurrentProcess(), &process, &native) && native == IMAGE_FILE_MACHINE_ARM64;
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
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof(memory);
    GlobalMemoryStatusEx(&memory);
    const uint64_t size = vh::ShiftRight(memory.ullTotalPhys, shift);
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

int32_t _IsWow64()
{
    BOOL emulated = FALSE;
    return IsWow64Process(GetCurrentProcess(), &emulated) && emulated;
}

int32_t _IsArm64()
{
    return NativeSystem().wProcessorArchitecture == PROCESSOR_ARCHITECTURE_ARM64 || NativeMachineIsArm64();
}
