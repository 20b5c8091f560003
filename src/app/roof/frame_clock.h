// Time between two frames.
#pragma once

#include <algorithm>
#include <cstdint>

namespace varnelo {

// Turns readings of a steady clock (nanoseconds) into the seconds that animations advance. A frame after a
// long sleep counts at most kLongestStep, so that nothing jumps.
class FrameClock {
public:
    static constexpr float kLongestStep = 0.1f;

    void start(std::int64_t now) { lastFrameTime = now; }

    float advance(std::int64_t now) {
        const float elapsed = static_cast<float>(static_cast<double>(now - lastFrameTime) / 1e9);
        lastFrameTime = now;
        return std::min(elapsed, kLongestStep);
    }

private:
    std::int64_t lastFrameTime = 0;
};

}  // namespace varnelo
