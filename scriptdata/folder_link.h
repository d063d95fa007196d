// Junctions and links to folders.
#pragma once

#include "unique.h"

namespace vh {

inline bool LeadsElsewhere(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

// Removes a junction or link by a handle that is known to be the thing itself. A system that opens what it leads to
// makes this fail, and nothing is removed. False: the system's last error.
inline bool RemoveLink(const wchar_t* path)
{
    const unique_file link(CreateFileW(path, DELETE | FILE_READ_ATTRIBUTES,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION facts{};
    if (!link || !GetFileInformationByHandle(link.get(), &facts))
        return false;
    if (!LeadsElsewhere(facts.dwFileAttributes)) {
        SetLastError(ERROR_NOT_A_REPARSE_POINT);
        return false;
    }
    FILE_DISPOSITION_INFO gone{TRUE};
    return SetFileInformationByHandle(link.get(), FileDispositionInfo, &gone, sizeof(gone)) != FALSE;
}

} // namespace vh
