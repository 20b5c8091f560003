#pragma once

// What makes two items alike, once their words have been compared. The one place of the weights: the public
// comparison of two items and the pass over all pairs both end here.

#include <cstddef>
#include <cstdint>

namespace varnelo {

struct ClusterScore {
    std::size_t sharedTokens = 0;  // tokens of a that occur in b, each repetition counted: at most tokensOfA
    std::size_t tokensOfA = 0;
    std::size_t tokensOfB = 0;
    bool sameFirstToken = false;
    bool closeInTime = false;
    bool sameFolder = false;

    // The terms are added in this order and no other: the sum is compared with thresholds, and a different
    // order of the same terms can round to the other side of one.
    double value() const {
        const std::size_t either = tokensOfA + tokensOfB - sharedTokens;
        const double jaccard =
            either == 0 ? 0.0 : static_cast<double>(sharedTokens) / static_cast<double>(either);
        double sum = 0.55 * jaccard;
        sum += sameFirstToken ? 0.25 : 0.0;
        sum += closeInTime ? 0.1 : 0.0;
        sum += sameFolder ? 0.2 : 0.0;
        return sum;
    }
};

constexpr bool withinSeconds(std::uint64_t a, std::uint64_t b, std::uint64_t seconds) {
    return (a > b ? a - b : b - a) <= seconds;
}

}  // namespace varnelo
