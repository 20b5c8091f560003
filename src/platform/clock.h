#pragma once

#include <cstdint>

namespace varnelo {

// A FILETIME counts 100-nanosecond ticks since 1601-01-01 00:00 UTC.
inline constexpr std::uint64_t kFileTimeTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;

// Whole seconds since 1601, cut.
constexpr std::uint64_t fileTimeSeconds(std::uint64_t fileTime) { return fileTime / kFileTimeTicksPerSecond; }

// Time, passed in wherever logic needs it, so that tests can set it. Safe to read from any thread.
class Clock {
public:
    virtual ~Clock() = default;
    // Never goes backwards; only differences mean something.
    virtual double steadySeconds() const = 0;
    // Since 1970-01-01 00:00 UTC.
    virtual std::int64_t unixSeconds() const = 0;
    // As a FILETIME.
    virtual std::uint64_t fileTime() const = 0;
};

const Clock& systemClock();

// The wall clock on the user's wall: local time, as log lines and file names show it.
struct LocalTime {
    int year;
    int month;  // 1 to 12
    int day;
    int hour;
    int minute;
    int second;
    int millisecond;
};

// Allocates nothing in the Windows build: it is used in the middle of a crash.
LocalTime localTime();

}  // namespace varnelo
