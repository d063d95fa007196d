// Versions of the common language runtime, each pair in both orders.
#include "../../diagnostics/clr_version.h"
#include "../support/test.h"

namespace {

TEST(RuntimeVersions, CompareFieldByField)
{
    const vh::test::Table<std::u16string, std::u16string, int> cases = {
        {u"v4.0", u"v4.0.0", 0}, {u"v4.0", u"v4.0", 0},  {u"", u"", 0},    {u"v4.0.30319", u"v2.0.50727", -1},
        {u"v4.0", u"v4.0.1", 1}, {u"v4..5", u"v4.5", 0}, {u"", u"v1", 1},  {u"v4.0", u"v4.0.0.1", 0},
        {u"v10.0", u"v9.9", -1}, {u"v4.5.", u"v4.6", 1}, {u"v", u"v0", 0}, {u"v4294967296", u"v4294967295", 0},
        {u"v4.5b7", u"v4.5", 0}, {u"x4.5", u"v4.5", 0},  {u"v", u"v1", 1}, {u"v1", u"v99999999999999999999999", 1}};
    for (const auto& [a, b, newer] : cases) {
        EXPECT_EQ(vh::CompareRuntimeVersions<char16_t>(a, b), newer);
        EXPECT_EQ(vh::CompareRuntimeVersions<char16_t>(b, a), -newer);
    }
}

} // namespace
