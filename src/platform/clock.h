#pragma once

#include <cstdint>

namespace varnelo {

// Time, passed in wherever logic needs it, so that tests can set it. Safe to read from any thread.
class Clock {
public:
    virtual ~Clock() = default;
    // Never goes backwards; only differences mean something.
    virtual double steadySeconds() const = 0;
    // Since 1970-01-01 00:00 UTC.
    virtual std::int64_t unixSeconds() const = 0;
    // FILETIME: 100 nanoseconds since 1601-01-01 00:00 UTC.
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
