#pragma once

#include <cstdint>

#include "views/grid_state.h"

// A virtual pane holds cells only for the rows in sight and a few more.

namespace varnelo {

struct RowRange {
    std::uint64_t first;
    std::uint64_t count;
};

// The rows that the pane should hold at its scroll position, cut to the rows of the source.
RowRange wantedWindow(const GridState& grid);

// Makes `cells` the rows of the wanted window, in place at once and with their selection. True if they
// changed, so that the icons are to be loaded. A source that gives fewer rows than asked shrinks
// `virtualCount`.
bool refreshVirtualWindow(GridState& grid);

// Writes the selection of the window's cells to `selection`; nothing in a pane that is not virtual.
void storeWindowSelection(GridState& grid);

// Makes the next refresh build the window anew.
void invalidateWindow(GridState& grid);

}  // namespace varnelo
