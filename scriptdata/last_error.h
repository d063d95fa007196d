// Keeps the thread's last-error code across calls that may change it.
#pragma once

#include <windows.h>

namespace vh {

class keep_last_error {
public:
    keep_last_error() = default;
    keep_last_error(const keep_last_error&) = delete;
    keep_last_error& operator=(const keep_last_error&) = delete;
    ~keep_last_error() { SetLastError(m_code); }

private:
    DWORD m_code = GetLastError();
};

} // namespace vh
