// Redirection of the system folder in a 32-bit process on a 64-bit system.
#pragma once

#include <vector>

#include "../scriptdata/late_fallbacks.h"

namespace vh {

inline bool IsWow64()
{
    BOOL emulated = FALSE;
    return late::is_wow64_process && late::is_wow64_process(GetCurrentProcess(), &emulated) && emulated;
}

// Remembers what each call of disable gave, so that calls nest. Not locked: it belongs to the script's thread.
class fs_redirection {
public:
    // All are false on failure.
    bool disable()
    {
        if (!nests())
            return set(false);
        void* before = nullptr;
        if (!late::wow64_disable_fs_redirection(&before))
            return false;
        m_before.push_back(before);
        return true;
    }
    // Without a disable to take back, switches it on.
    bool enable()
    {
        if (!nests() || m_before.empty())
            return set(true);
        void* const before = m_before.back();
        m_before.pop_back();
        return late::wow64_revert_fs_redirection(before) != FALSE;
    }

private:
    static bool nests() { return late::wow64_disable_fs_redirection && late::wow64_revert_fs_redirection; }
    static bool set(bool on)
    {
        return late::wow64_enable_fs_redirection &&
               late::wow64_enable_fs_redirection(static_cast<BOOLEAN>(on)) != FALSE;
    }

    std::vector<void*> m_before;
};

} // namespace vh
