// Dialogs of setups at the density of the system.
#pragma once

#include <windows.h>

#include "scriptdata/late_windows.h"

namespace host {

namespace late {

// Not before Windows 10.
inline constinit vh::late_function<decltype(SetThreadDpiAwarenessContext)>
    set_thread_density(vh::late::user32, "SetThreadDpiAwarenessContext");

} // namespace late

// Fonts and pictures of dialogs are made for the density of the system. While this object lives, windows that the
// thread makes are of that density, and the system stretches them on each display that has another: they open in the
// right size there, and keep it when they are moved. Other windows of the program go by their display themselves.
class SystemDensity {
public:
    SystemDensity()
    {
        if (late::set_thread_density)
            m_before = late::set_thread_density(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE);
    }
    ~SystemDensity()
    {
        if (m_before)
            late::set_thread_density(m_before);
    }
    SystemDensity(const SystemDensity&) = delete;
    SystemDensity& operator=(const SystemDensity&) = delete;

private:
    DPI_AWARENESS_CONTEXT m_before = nullptr;
};

} // namespace host
