#include "views/grid_selection.h"

namespace varnelo {

void GridSelection::store(std::uint64_t first, const std::vector<IconCell>& cells) {
    for (const IconCell& cell : cells) {
        if (cell.selected) {
            rows.insert(first);
        } else {
            rows.erase(first);
        }
        ++first;
    }
}

void GridSelection::restore(std::uint64_t first, std::vector<IconCell>& cells) const {
    for (IconCell& cell : cells) cell.selected = rows.count(first++) != 0;
}

}  // namespace varnelo
