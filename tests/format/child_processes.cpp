// Which process counts as the child.
#include "../../system/child_processes.h"
#include "../support/test.h"

namespace {

const std::vector<vh::ProcessEntry> family = {
    {40, 10, L"late.exe"},      {10, 4, L"setup.exe"},       {30, 20, L"grandchild.exe"}, {20, 10, L"c.exe"},
    {12, 10, L"x pstores.exe"}, {14, 10, L"old.exe"},        {50, 51, L"circle.exe"},     {51, 50, L"circle.exe"},
    {60, 999, L"orphan.exe"},   {70, 70, L"own parent.exe"}, {80, 60, L"of orphan.exe"}};

TEST(ChildProcesses, AreTheFirstThatQualify)
{
    const vh::ProcessTable table(family);
    const std::map<uint32_t, uint64_t> times = {{10, 100}, {14, 99}, {20, 100}, {30, 300}, {40, 400}, {80, 50}};
    std::vector<uint32_t> asked;
    const auto time_of = [&](uint32_t id) {
        asked.push_back(id);
        const auto found = times.find(id);
        return found == times.end() ? std::nullopt : std::optional<uint64_t>(found->second);
    };
    Table<uint32_t, bool, std::optional<uint64_t>, uint32_t, std::vector<uint32_t>> cases = {
        {10, false, 100, 20, {14, 20}}, // the older one has a number that came back
        {10, false, std::nullopt, 14, {}}, {10, false, 350, 40, {14, 20, 40}},
        {10, true, 250, 30, {14, 20, 30}}, {10, true, 500, 0, {14, 20, 30, 40}},
        {4, false, 1, 10, {10}},           {4, true, std::nullopt, 10, {}},
        {20, true, 1, 30, {30}},           {30, true, 1, 0, {}},
        {51, true, 1, 50, {50}},           {999, true, 7, 60, {60}}, // its time can't be read: accepted
        {60, false, 60, 0, {80}},          {123, true, 1, 0, {}}};
    for (const auto& [parent, descendants, parent_time, child, wanted_asked] : cases) {
        asked.clear();
        EXPECT_EQ(table.FindChild(parent, descendants, parent_time, time_of), child) << parent;
        EXPECT_EQ(asked, wanted_asked) << parent;
    }
    EXPECT_EQ(vh::ProcessTable({}).FindChild(1, true, 1, time_of), 0u);
}

} // namespace
