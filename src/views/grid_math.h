#pragma once

#include <cmath>
#include <limits>

namespace varnelo {

// The share of its gap that a value covers in `seconds`: easing that does not depend on the frame rate.
inline float easeShare(float rate, float seconds) { return 1 - std::exp(-rate * seconds); }

// Towards zero; a value beyond the range of int gives its nearest end, no number gives 0.
inline int truncated(float value) {
    if (std::isnan(value)) return 0;
    if (value >= static_cast<float>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    if (value <= static_cast<float>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

}  // namespace varnelo
