// A context without an engine: enough for what the library owns itself; and exports by their names.
#pragma once

#include "../../exports/vhrt.h"
#include "test.h"

namespace vh::test {

class BareContext : Pinned {
public:
    BareContext() : m_context(__CreateObjectContext(nullptr, nullptr)) {}
    ~BareContext()
    {
        if (m_context)
            __ReleaseObjectContext(m_context);
    }

    operator ObjectContext*() const { return m_context; }
    // The caller releases it.
    ObjectContext* Take() { return std::exchange(m_context, nullptr); }

private:
    ObjectContext* m_context;
};

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

// The whole list as "a|b|c", read by first and next; the position ends on the last element.
inline std::wstring ListText(ObjectContext* context, ListHandle list)
{
    std::wstring all;
    wchar_t buffer[4096];
    for (int64_t code = _ListGetFirstString(context, list, buffer, 4096); code == 0;
         code = _ListGetNextString(context, list, buffer, 4096))
        all += (all.empty() ? L"" : L"|") + std::wstring(buffer);
    return all;
}

} // namespace vh::test
