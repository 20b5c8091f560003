#include "app/roof/frame_clock.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

constexpr std::int64_t kMillisecond = 1'000'000;

TEST(FrameClockTest, AFrameCountsTheSecondsSinceTheOneBefore) {
    FrameClock clock;
    clock.start(1000 * kMillisecond);
    EXPECT_FLOAT_EQ(clock.advance(1016 * kMillisecond), 0.016f);
    EXPECT_FLOAT_EQ(clock.advance(1066 * kMillisecond), 0.050f);
}

TEST(FrameClockTest, AFrameAfterALongSleepCountsATenthOfASecond) {
    FrameClock clock;
    clock.start(0);
    EXPECT_FLOAT_EQ(clock.advance(3'600'000 * kMillisecond), 0.1f);
    EXPECT_FLOAT_EQ(clock.advance(3'600'010 * kMillisecond), 0.010f);
}

}  // namespace
}  // namespace varnelo
