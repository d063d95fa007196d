// Exports by their names, with arguments of any kind.
#pragma once

#include "test.h"

namespace vh::test {

inline intptr_t Slot(const void* pointer) { return reinterpret_cast<intptr_t>(pointer); }
inline intptr_t Slot(int64_t number) { return static_cast<intptr_t>(number); }

// On 64-bit Windows all arguments take one slot each and further ones do no harm, so one shape of call does for all.
template <class... Arguments>
int64_t CallExport(const char* name, const Arguments&... arguments)
{
    using Function = int64_t(__stdcall*)(...);
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"VHRT.dll"), name);
    if (!found) {
        ADD_FAILURE() << name << " is not exported";
        return 0;
    }
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found))(Slot(arguments)...);
}

} // namespace vh::test
