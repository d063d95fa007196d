// How much a reader asks for at a time, from what has come before.
#include "../../diagnostics/transfer_rate.h"
#include "../support/test.h"

namespace {

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

} // namespace
