#include "platform/clock.h"

#include <chrono>

namespace varnelo {

namespace {

constexpr auto kTicksPerSecond = static_cast<std::int64_t>(kFileTimeTicksPerSecond);

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
        using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, kTicksPerSecond>>;
        const auto now = std::chrono::floor<Ticks>(std::chrono::system_clock::now().time_since_epoch());
        return static_cast<std::uint64_t>(now.count() + kSecondsFrom1601To1970 * kTicksPerSecond);
    }
};

}  // namespace

const Clock& systemClock() {
    static const SystemClock clock;
    return clock;
}

}  // namespace varnelo
