// How a list of rows answers picks and keys: which row becomes current, what flips, what can be seen. Platform-free.
#pragma once

#include <algorithm>
#include <cstdint>

namespace vh {

// Where a pick comes from: no point at all (keys, double clicks, messages), the check picture, the rest of the row.
enum class pick_point { none, check, row };

struct pick_result {
    bool moves;
    bool flips;
};

// A point decides about the row that it hits; without one only the current row flips.
constexpr pick_result DecidePick(bool is_current, bool by_user, bool disabled, pick_point point)
{
    const bool hits = point == pick_point::check || (is_current && point == pick_point::none);
    return {!is_current, by_user && !disabled && hits};
}

enum class list_move { up, down, page_up, page_down, home, end };

// The current row and the first of those that can be seen.
struct list_place {
    int32_t current = 0;
    int32_t first = 0;

    bool operator==(const list_place&) const = default;
};

constexpr int32_t LastFirst(int32_t count, int32_t visible) { return std::max(count - visible, 0); }

// The nearest place at which the current row can be seen.
constexpr list_place ScrolledTo(list_place place, int32_t count, int32_t visible)
{
    const int32_t rows = std::max(visible, 1);
    place.first = std::clamp(place.first, place.current - rows + 1, std::max(place.current, 0));
    place.first = std::clamp(place.first, 0, LastFirst(count, rows));
    return place;
}

constexpr list_place Moved(list_place place, list_move move, int32_t count, int32_t visible)
{
    const int32_t rows = std::max(visible, 1);
    switch (move) {
    case list_move::up:
        place.current -= 1;
        break;
    case list_move::down:
        place.current += 1;
        break;
    case list_move::page_up:
        place.current -= rows;
        place.first -= rows;
        break;
    case list_move::page_down:
        place.current += rows;
        place.first += rows;
        break;
    case list_move::home:
        place.current = 0;
        break;
    case list_move::end:
        place.current = count - 1;
        break;
    }
    place.current = std::clamp(place.current, 0, std::max(count - 1, 0));
    place.first = std::clamp(place.first, 0, LastFirst(count, rows));
    return ScrolledTo(place, count, visible);
}

} // namespace vh
