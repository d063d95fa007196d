#include "monitor_scale.h"

#include "../pictures/gdi_objects.h"
#include "../scriptdata/late_fallbacks.h"

namespace vh {

namespace {

constexpr int standard_dpi = 96;

int PrimaryDpi()
{
    if (late::get_dpi_for_monitor) {
        UINT across = 0;
        UINT down = 0;
        const HMONITOR primary = late::monitor_from_point(POINT{0, 0}, DWORD{MONITOR_DEFAULTTOPRIMARY});
        if (SUCCEEDED(late::get_dpi_for_monitor(primary, MDT_EFFECTIVE_DPI, &across, &down)) && across)
            return static_cast<int>(across);
    }
    const unique_screen_context screen(late::get_dc(HWND{nullptr}));
    const int dpi = screen ? late::get_device_caps(screen.get(), LOGPIXELSX) : 0;
    return dpi > 0 ? dpi : standard_dpi;
}

} // namespace

int MonitorScale() { return MulDiv(PrimaryDpi(), 100, standard_dpi); }

} // namespace vh
