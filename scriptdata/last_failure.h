// The last failure of the helpers for files, for the whole process.
#pragma once

#include <mutex>
#include <windows.h>

#include "stringx.h"

namespace vh {

struct file_failure {
    DWORD code = 0;
    stringx path;
};

namespace detail {
inline std::mutex failure_guard;
inline file_failure last_failure;
} // namespace detail

inline void RecordFailure(DWORD code, const stringx& path)
{
    const std::lock_guard guard(detail::failure_guard);
    detail::last_failure = {code, path};
}

inline file_failure LastFailure()
{
    const std::lock_guard guard(detail::failure_guard);
    return detail::last_failure;
}

} // namespace vh
