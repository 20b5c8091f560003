#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "views/icon_cell.h"

namespace varnelo {

// What is selected in a virtual pane, which holds only a window of its rows as cells: a set of absolute row
// indexes. The flags of the window are written back to it before the window moves. Beside it, what type-ahead
// found last.
struct GridSelection {
    std::unordered_set<std::uint64_t> rows;
    std::int32_t lastMatch = -1;      // absolute row
    std::uint32_t lastCharacter = 0;  // upper case

    // Makes the set agree with the flags of the cells, the first of which is row `first`.
    void store(std::uint64_t first, const std::vector<IconCell>& cells);
    // Makes the flags of the cells agree with the set.
    void restore(std::uint64_t first, std::vector<IconCell>& cells) const;
};

}  // namespace varnelo
