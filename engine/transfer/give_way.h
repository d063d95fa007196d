// An upgrade whose files stand where the earlier version has folders, or the other way round.
#pragma once

#include <set>
#include <string>

#include "file_writer.h"

namespace vh::engine {

class WayGiver {
public:
    explicit WayGiver(Core& core) : m_core(core) {}

    // What the earlier version has in the file's way goes aside, as far as all of it is its own and as it was placed;
    // the rest stays, and refuses the file later. Throws engine_error.
    void GiveWayTo(const FileToWrite& file);

private:
    Core& m_core;
    std::set<std::wstring> m_met; // folders above the files so far
};

} // namespace vh::engine
