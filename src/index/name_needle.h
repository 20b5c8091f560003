#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "index/name_pool.h"

namespace varnelo {

// A text of two units or more that is looked for inside of names, letters folded, eight places at a time.
class NameNeedle {
public:
    explicit NameNeedle(std::span<const std::uint16_t> loweredText)
        : text(loweredText.begin(), loweredText.end()) {}

    // The name lies in a pool: up to NamePool::kReadableBeyond units behind it are read.
    bool isIn(NameUnits name) const;

private:
    std::vector<std::uint16_t> text;
};

}  // namespace varnelo
