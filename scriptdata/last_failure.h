// What the file helpers last failed with.
#pragma once

#include <string>

#include <windows.h>

namespace vh {

// One for the process; any later file helper overwrites it.
struct file_failure {
    DWORD code = 0;
    std::wstring path;
};

inline file_failure& last_file_failure()
{
    static file_failure failure;
    return failure;
}

} // namespace vh
