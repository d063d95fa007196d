// The library's functions for dialogs, as the host calls them beside a script.
#pragma once

#include <cstdint>
#include <string>

#include <windows.h>

#include "call_frame.h"
#include "library.h"

namespace host {

// What WaitOnDialog gives beside the numbers of controls.
inline constexpr int32_t wait_created = -100;
inline constexpr int32_t wait_failed = -1;
inline constexpr int32_t wait_loop_ended = 0;
inline constexpr int32_t wait_help = 8;

// The event that a dialog gave last.
struct DialogUse {
    UINT message = 0;
    WPARAM first = 0;
    LPARAM second = 0;

    bool operator==(const DialogUse&) const = default;
};

class DialogCalls {
public:
    // Both have to outlive the object.
    DialogCalls(const Library& library, const CallSite& site) : m_library(library), m_site(site) {}

    int32_t Wait(const std::wstring& dialog) const
    {
        return m_library.Entry<int32_t(void*, const wchar_t*)>("_WaitOnDialog")(m_site.context, dialog.c_str());
    }
    // Null for a dialog that was not created.
    HWND WindowOf(const std::wstring& dialog) const { return reinterpret_cast<HWND>(Asked("_CmdGetHwndDlg", dialog)); }
    DialogUse UseOf(const std::wstring& dialog) const
    {
        return {static_cast<UINT>(
                    m_library.Entry<int32_t(void*, const wchar_t*)>("_CmdGetMsg")(m_site.context, dialog.c_str())),
                static_cast<WPARAM>(Asked("_CmdGetParam1", dialog)),
                static_cast<LPARAM>(Asked("_CmdGetParam2", dialog))};
    }

private:
    int64_t Asked(const char* function, const std::wstring& dialog) const
    {
        return m_library.Entry<int64_t(void*, const wchar_t*)>(function)(m_site.context, dialog.c_str());
    }

    const Library& m_library;
    CallSite m_site;
};

} // namespace host
