#include "platform/clock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace varnelo {
namespace {

TEST(SystemClock, TellsTheSameTimeInBothForms) {
    const auto before = systemClock().unixSeconds();
    const auto ticks = systemClock().fileTime();
    const auto after = systemClock().unixSeconds();
    const auto seconds = static_cast<std::int64_t>(ticks / 10'000'000) - 11'644'473'600;
    EXPECT_GE(seconds, before);
    EXPECT_LE(seconds, after);
    EXPECT_LE(std::abs(static_cast<long long>(std::time(nullptr) - after)), 1);
}

TEST(SystemClock, SteadySecondsDoNotGoBackwards) {
    double last = systemClock().steadySeconds();
    for (int i = 0; i < 1000; ++i) {
        const double now = systemClock().steadySeconds();
        EXPECT_GE(now, last);
        last = now;
    }
}

TEST(LocalTimeTest, AgreesWithTheCalendarOfTheCLibrary) {
    const std::time_t before = std::time(nullptr);
    const LocalTime now = localTime();
    std::tm parts{};
    parts.tm_year = now.year - 1900;
    parts.tm_mon = now.month - 1;
    parts.tm_mday = now.day;
    parts.tm_hour = now.hour;
    parts.tm_min = now.minute;
    parts.tm_sec = now.second;
    parts.tm_isdst = -1;
    const std::time_t seconds = std::mktime(&parts);
    EXPECT_GE(seconds, before - 1);
    EXPECT_LE(seconds, std::time(nullptr) + 1);
    EXPECT_GE(now.millisecond, 0);
    EXPECT_LE(now.millisecond, 999);
}

}  // namespace
}  // namespace varnelo
