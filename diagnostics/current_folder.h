// Moves the process's current folder for a while.
#pragma once

#include <string_view>
#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

class CCurrentFolderHelper {
public:
    CCurrentFolderHelper() = default;
    CCurrentFolderHelper(const CCurrentFolderHelper&) = delete;
    CCurrentFolderHelper& operator=(const CCurrentFolderHelper&) = delete;
    virtual ~CCurrentFolderHelper()
    {
        if (!m_before.empty())
            SetCurrentDirectoryW(m_before.c_str());
    }

    void MoveTo(const stringx& folder)
    {
        wchar_t current[260] = L"";
        const DWORD units = GetCurrentDirectoryW(static_cast<DWORD>(std::size(current)), current);
        // A folder that can't be read could not be come back to.
        if (units == 0 || units >= std::size(current) || folder == current)
            return;
        m_before = current;
        SetCurrentDirectoryW(folder.c_str());
    }

private:
    // Empty while nothing was changed.
    stringx m_before;
};

} // namespace vh
