#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "index/name_pool.h"

namespace varnelo {

// A text of two units or more that is looked for inside of names, letters folded, eight places at a time.
class NameNeedle {
public:
    explicit NameNeedle(std::span<const std::uint16_t> loweredText);

    // The name begins at `name`, which may be read NamePool::kReadableBeyond units behind `limit`, and ends
    // at a NUL or after `limit` units.
    bool isIn(const std::uint16_t* name, std::size_t limit) const;

private:
    std::vector<std::uint16_t> text;
    bool possible;  // no name holds a NUL
};

}  // namespace varnelo
