// How a picture comes into view: the parts of its place that show at each step.
#pragma once

#include <vector>
#include <windows.h>

namespace vh::engine {

constexpr int reveal_steps = 20;

// Effects: 1 dissolve, 2 from the centre, 3 from the centre to both sides, 4 columns and 5 rows from both sides, 6
// frames from the edge and from the middle. Others, and the last step, show all.
std::vector<RECT> RevealedParts(long effect, int step, const RECT& place);

} // namespace vh::engine
