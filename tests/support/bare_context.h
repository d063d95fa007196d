// A context without an engine: enough for what the library owns itself.
#pragma once

#include "../../exports/vhrt/context.h"
#include "../../exports/vhrt/lists.h"
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
