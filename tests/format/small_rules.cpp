// Rules without Windows in them: run-time versions, child processes, paths that wait, transfer rates, file patterns.
#include "../../diagnostics/clr_version.h"
#include "../../diagnostics/transfer_rate.h"
#include "../../media/file_pattern.h"
#include "../../system/child_processes.h"
#include "../../system/pending_path.h"
#include "../support/test.h"

namespace {

TEST(RuntimeVersions, CompareFieldByField)
{
    const Table<std::u16string, std::u16string, int> cases = {
        {u"v4.0", u"v4.0.0", 0}, {u"v4.0", u"v4.0", 0},  {u"", u"", 0},    {u"v4.0.30319", u"v2.0.50727", -1},
        {u"v4.0", u"v4.0.1", 1}, {u"v4..5", u"v4.5", 0}, {u"", u"v1", 1},  {u"v4.0", u"v4.0.0.1", 0},
        {u"v10.0", u"v9.9", -1}, {u"v4.5.", u"v4.6", 1}, {u"v", u"v0", 0}, {u"v4294967296", u"v4294967295", 0},
        {u"v4.5b7", u"v4.5", 0}, {u"x4.5", u"v4.5", 0},  {u"v", u"v1", 1}, {u"v1", u"v99999999999999999999999", 1}};
    for (const auto& [a, b, newer] : cases) {
        EXPECT_EQ(vh::CompareRuntimeVersions<char16_t>(a, b), newer);
        EXPECT_EQ(vh::CompareRuntimeVersions<char16_t>(b, a), -newer);
    }
}

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

TEST(PendingPath, LosesItsSteps)
{
    // A root has nothing above it, or two drives would be one; names may begin with dots.
    Table<const char*, const char*> cases = {
        {"C:\\a\\b", "C:\\a\\b"},     {"a\\..\\b", "\\b"},   {"", ""},
        {"C:\\a\\..\\b", "C:\\b"},    {"a\\b\\..", "a"},     {"C:\\a\\.\\b\\.", "C:\\a\\b"},
        {"C:\\a\\.\\..\\b", "C:\\b"}, {"\\..\\..", ""},      {"C:\\a\\b\\..\\..\\c", "C:\\c"},
        {"C:\\..\\b", "C:\\b"},       {"C:\\a\\...", "C:."}, {"\\\\server\\share\\..\\..\\b", "\\\\server\\share\\b"},
        {"C:\\a\\.b", "C:\\ab"},      {"..\\a", "..\\a"}};
    for (const auto& [path, plain] : cases) {
        const std::string narrow(path);
        const std::u16string wide(narrow.begin(), narrow.end());
        EXPECT_EQ(vh::PlainPath(std::string_view(narrow)), plain) << path;
        EXPECT_EQ(vh::PlainPath(std::u16string_view(wide)), std::u16string(plain, plain + std::strlen(plain))) << path;
    }
}

constexpr uint64_t frequency = 10'000'000;
constexpr uint32_t start_ms = 1'000'000;

TEST(TransferRate, AsksForLittleUntilTenSecondsAreMeasured)
{
    vh::transfer_rate rate;
    EXPECT_EQ(rate.chunk(start_ms), 1500u);
    rate.add(50000, 10 * frequency, frequency);
    EXPECT_EQ(rate.chunk(start_ms), 1500u) << "10 seconds exactly";
    rate.add(5, frequency / 1000, frequency);
    EXPECT_EQ(rate.chunk(start_ms), 15u * 5000);
    rate.clear();
    EXPECT_EQ(rate.chunk(start_ms), 1500u);
    rate.add(0, 60 * frequency, frequency);
    EXPECT_EQ(rate.chunk(start_ms), 1500u) << "no bytes, no rate";
    rate.clear();
    // A hundred thousand passes of 110 microseconds are 11 seconds.
    for (int i = 0; i < 100000; ++i)
        rate.add(1500, 1100, frequency);
    const uint64_t a_second = 1500ull * 100000 / 11;
    EXPECT_NEAR(static_cast<double>(rate.bytes_per_second(start_ms)), static_cast<double>(a_second), a_second * 0.01);
}

TEST(TransferRate, ForgetsWhatIsOlderThanAMinute)
{
    vh::transfer_rate rate;
    rate.add(1'000'000, 10 * frequency, frequency);
    EXPECT_EQ(rate.bytes_per_second(start_ms), 100'000u);
    rate.add(1'000, 10 * frequency, frequency);
    EXPECT_EQ(rate.bytes_per_second(start_ms + 30000), 50'000u) << "both, up to 30 seconds after the last change";
    EXPECT_EQ(rate.bytes_per_second(start_ms + 30001), 100u) << "only what came since";
}

TEST(TransferRate, CountsSlowAndFastLines)
{
    Table<uint32_t, uint32_t, uint64_t> cases = {
        {1, 100, 0}, {15, 100, 0}, {150, 100, 1}, {1'000'000'000, 20, 50'000'000}, {4'294'967'295, 100, 42'949'600}};
    for (const auto& [bytes, seconds, expected] : cases) {
        vh::transfer_rate rate;
        rate.add(bytes, seconds * frequency, frequency);
        EXPECT_EQ(rate.chunk(start_ms), expected ? 15 * expected : 1) << bytes;
        EXPECT_EQ(rate.bytes_per_second(start_ms), expected) << bytes;
    }
    vh::transfer_rate instant;
    instant.add(700, 0, frequency);
    EXPECT_EQ(instant.bytes_per_second(start_ms), 700u) << "no time, no division";
}

bool Same(char16_t a, char16_t b) { return (a | 32) == (b | 32); }

bool Fits(std::u16string_view name, std::u16string_view pattern) { return vh::MatchesFilePattern(name, pattern, Same); }

bool Plain(std::u16string_view text, std::u16string_view pattern)
{
    if (pattern.empty())
        return text.empty();
    if (pattern[0] == u'*')
        return Plain(text, pattern.substr(1)) || (!text.empty() && Plain(text.substr(1), pattern));
    return !text.empty() && (pattern[0] == u'?' || Same(pattern[0], text[0])) &&
           Plain(text.substr(1), pattern.substr(1));
}

TEST(FilePattern, AgreesWithAPlainMatcher)
{
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round) {
        std::u16string text(random() % 9, u'a');
        std::u16string pattern(random() % 7, u'a');
        for (char16_t& c : text)
            c = u"abA"[random() % 3];
        for (char16_t& c : pattern)
            c = u"ab*?B"[random() % 5];
        ASSERT_EQ(vh::MatchesWildcards<char16_t>(text, pattern, Same), Plain(text, pattern)) << round;
    }
}

TEST(FilePattern, KnowsTheRulesForNames)
{
    Table<std::u16string_view, std::u16string_view, bool> cases = {
        {u"readme", u"*.*", true},   {u"", u"*.*", true},        {u"readme", u"r*.*", true}, {u"readme", u"r*.?", true},
        {u"readme", u"*.t*", false}, {u"a.txt", u"*.TXT", true}, {u"a.txt", u"a.???", true}, {u"a.txt", u"a.??", false},
        {u"a.b.c", u"*.c", true},    {u"a", u"a.", true},        {u"a", u"", false},         {u"", u"", true},
        {u"a.b", u"a", false},       {u"a", u"b.*", false}};
    for (const auto& [name, pattern, fits] : cases)
        EXPECT_EQ(Fits(name, pattern), fits)
            << std::string(name.begin(), name.end()) << " " << std::string(pattern.begin(), pattern.end());
}

TEST(FilePattern, DoesNotExplodeOnManyStars)
{
    const std::u16string text(4000, u'a');
    std::u16string pattern;
    for (int i = 0; i < 200; ++i)
        pattern += u"a*";
    EXPECT_FALSE(Fits(text, pattern + u"b"));
}

} // namespace
