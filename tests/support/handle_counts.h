// How many handles of the system, drawing objects and windows this process has.
#pragma once

#include "test.h"

namespace vh::test {

// Files, keys, events and the like; not every system counts them by itself.
inline int OpenHandles()
{
    int count = 0;
    constexpr uintptr_t highest = 0x8000;
    for (uintptr_t value = 4; value < highest; value += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE;
    }
    return count;
}

// Where the system does not count them, the table that it shows to each process is counted.
inline int OpenGdiObjects()
{
    if (const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return static_cast<int>(counted);
    struct entry {
        uint64_t object;
        uint32_t owner;
        uint16_t unique;
        uint8_t type;
        uint8_t flags;
        uint64_t user;
    };
    // The process environment block, and the place of the table in it.
    const FARPROC current_block = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetCurrentPeb");
    const auto* table = *reinterpret_cast<const entry* const*>(current_block() + 0xF8);
    return static_cast<int>(std::count_if(table, table + 0x10000, [](const entry& one) { return one.type != 0; }));
}

inline int Windows()
{
    int count = 0;
    const auto count_all = [](HWND window, LPARAM counter) -> BOOL {
        ++*reinterpret_cast<int*>(counter);
        EnumChildWindows(
            window, [](HWND, LPARAM inner) -> BOOL { return ++*reinterpret_cast<int*>(inner), TRUE; }, counter);
        return TRUE;
    };
    EnumThreadWindows(GetCurrentThreadId(), count_all, reinterpret_cast<LPARAM>(&count));
    return count;
}

} // namespace vh::test
