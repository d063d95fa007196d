// What stays where it was made: no copies, no moves.
#pragma once

namespace vh::test {

struct Pinned {
    Pinned() = default;
    Pinned(const Pinned&) = delete;
    Pinned& operator=(const Pinned&) = delete;
};

} // namespace vh::test
