// Keeps the thread's last-error code across calls that may change it.
#pragma once

#include <windows.h>

namespace vh {

class keep_last_error {
public:
    keep_last_error() = default;
    keep_last_error(const keep_last_error&) = delete;
    keep_last_error& operator=(const keep_last_error&) = delete;
    ~keep_last_error() { Place() = m_code; }

private:
    // The code stands in the thread's block, at a place that all 64-bit Windows share. Every long text passes here
    // twice, and the calls of the system would be a tenth of its cost.
    static DWORD& Place()
    {
        constexpr std::size_t offset = 0x68;
        return *reinterpret_cast<DWORD*>(reinterpret_cast<char*>(Block()) + offset);
    }
#ifdef __GNUC__
#pragma GCC diagnostic push
// The compiler takes the segment's small addresses for those of null.
#pragma GCC diagnostic ignored "-Warray-bounds"
#endif
    static void* Block() { return NtCurrentTeb(); }
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

    DWORD m_code = Place();
};

} // namespace vh
