#include "platform/clock.h"

#include <chrono>

namespace varnelo {

namespace {

// Seconds from 1601-01-01 to 1970-01-01.
constexpr std::int64_t kFileTimeEpochSeconds = 11644473600;

class SystemClock final : public Clock {
public:
    double steadySeconds() const override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
    std::int64_t unixSeconds() const override {
        return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now())
            .time_since_epoch()
            .count();
    }
    std::uint64_t fileTime() const override {
        using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
        const auto now = std::chrono::floor<Ticks>(std::chrono::system_clock::now().time_since_epoch());
        return static_cast<std::uint64_t>(now.count() + kFileTimeEpochSeconds * 10'000'000);
    }
};

}  // namespace

const Clock& systemClock() {
    static const SystemClock clock;
    return clock;
}

}  // namespace varnelo
