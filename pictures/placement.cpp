#include "placement.h"

#include <algorithm>

#include "late_drawing.h"

namespace vh {

RECT PlaceOf(HWND window)
{
    RECT place{};
    late::get_window_rect(window, &place);
    return place;
}

RECT PlaceIn(HWND parent, HWND child)
{
    RECT place = PlaceOf(child);
    late::map_window_points(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&place), 2u);
    return place;
}

void Place(HWND window, const RECT& place)
{
    late::set_window_pos(window, nullptr, place.left, place.top, WidthOf(place), HeightOf(place),
                         SWP_NOZORDER | SWP_NOACTIVATE);
}

RECT WorkAreaOf(HWND window)
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    late::get_monitor_info(late::monitor_from_window(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

void Centre(HWND window, HWND owner)
{
    const auto style_of = [](HWND seen) { return late::get_window_long(seen, GWL_STYLE); };
    const bool inside = (style_of(window) & WS_CHILD) != 0;
    const bool over_owner = owner && (style_of(owner) & (WS_VISIBLE | WS_MINIMIZE)) == WS_VISIBLE;
    RECT area{};
    if (inside)
        late::get_client_rect(owner, &area);
    else
        area = WorkAreaOf(over_owner ? owner : window);
    const RECT about = over_owner && !inside ? PlaceOf(owner) : area;
    const RECT own = PlaceOf(window);
    // The upper left corner wins where the window is larger than the monitor.
    const auto start = [](LONG from, LONG to, LONG extent, LONG least, LONG most) {
        return std::max(least, std::min((from + to - extent) / 2, most - extent));
    };
    const LONG left = start(about.left, about.right, WidthOf(own), area.left, area.right);
    const LONG top = start(about.top, about.bottom, HeightOf(own), area.top, area.bottom);
    late::set_window_pos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace vh
