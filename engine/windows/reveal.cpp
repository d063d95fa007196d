#include "reveal.h"

#include <algorithm>

namespace vh::engine {

namespace {

// The middle part of a stretch, as far as it shows.
RECT Middle(const RECT& place, int across, int down)
{
    const long width = place.right - place.left;
    const long height = place.bottom - place.top;
    const long half_width = width * across / (2 * reveal_steps);
    const long half_height = height * down / (2 * reveal_steps);
    const long x = place.left + width / 2;
    const long y = place.top + height / 2;
    return {x - half_width, y - half_height, x + half_width, y + half_height};
}

// A pattern that has no pattern to the eye, with as many cells more at each step.
std::vector<RECT> Dissolved(int step, const RECT& place)
{
    constexpr long cells = 20;
    std::vector<RECT> parts;
    for (long row = 0; row < cells; ++row)
        for (long column = 0; column < cells; ++column)
            if ((row * 7 + column * 13 + row * column * 3) % reveal_steps < step) {
                const auto at = [&](long from, long to, long cell) { return from + (to - from) * cell / cells; };
                parts.push_back({at(place.left, place.right, column), at(place.top, place.bottom, row),
                                 at(place.left, place.right, column + 1), at(place.top, place.bottom, row + 1)});
            }
    return parts;
}

// Strips from both ends that pass each other: even ones come from the near end, odd ones from the far one.
std::vector<RECT> Blinds(int step, const RECT& place, bool columns)
{
    const long from = columns ? place.left : place.top;
    const long to = columns ? place.right : place.bottom;
    const long strip = columns ? 4 : 2;
    const long shown = (to - from) * step / reveal_steps;
    std::vector<RECT> parts;
    for (long at = from, count = 0; at < to; at += strip, ++count)
        if (count % 2 == 0 ? at - from < shown : to - at <= shown) {
            const long end = std::min(at + strip, to);
            parts.push_back(columns ? RECT{at, place.top, end, place.bottom} : RECT{place.left, at, place.right, end});
        }
    return parts;
}

std::vector<RECT> Frames(int step, const RECT& place)
{
    const long x = (place.right - place.left) * step / (4 * reveal_steps);
    const long y = (place.bottom - place.top) * step / (4 * reveal_steps);
    return {{place.left, place.top, place.right, place.top + y},
            {place.left, place.bottom - y, place.right, place.bottom},
            {place.left, place.top, place.left + x, place.bottom},
            {place.right - x, place.top, place.right, place.bottom},
            Middle(place, step / 2, step / 2)};
}

} // namespace

std::vector<RECT> RevealedParts(long effect, int step, const RECT& place)
{
    if (step < reveal_steps)
        switch (effect) {
        case 1:
            return Dissolved(step, place);
        case 2:
            return {Middle(place, step, step)};
        case 3:
            return {Middle(place, step, reveal_steps)};
        case 4:
            return Blinds(step, place, true);
        case 5:
            return Blinds(step, place, false);
        case 6:
            return Frames(step, place);
        default:
            break;
        }
    return {place};
}

} // namespace vh::engine
