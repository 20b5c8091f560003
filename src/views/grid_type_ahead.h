#pragma once

#include <vector>

#include "model/shell_namespace.h"
#include "views/grid_state.h"

// A letter key finds the next item whose name starts with it.

namespace varnelo {

// Cells in the order that the user sees: group by group, otherwise by index.
std::vector<int> visibleOrder(const GridState& grid);

// The first cell behind the last selected one, in that order and around its end, whose display name starts
// with `letter` (upper case) in either case; -1 for none.
int findByLetter(GridState& grid, wchar_t letter, const ShellNamespace& shell);

// Closes the groups that type-ahead has opened, but for the cell's own, and opens that one if it hides the
// cell.
void openGroupOf(GridState& grid, int cell);

// Scrolls until the cell is in view, with a whole cell of headroom above it. True if it had to.
bool scrollTo(GridState& grid, int cell);

}  // namespace varnelo
