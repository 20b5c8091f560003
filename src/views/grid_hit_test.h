#pragma once

#include "views/grid_state.h"

// What can be seen, and what is under the cursor. All intervals are closed at both ends.

namespace varnelo {

constexpr int kNoCell = -1;
constexpr float kLabelGap = 8;      // from the icon to its label
constexpr float kLabelHeight = 40;  // of the part of the label that can be hit

// The height of the box in which a cell of a Flat or Grouped pane is hit.
inline float hitBoxHeight(const GridMetrics& metrics) { return metrics.iconSize + kLabelGap + kLabelHeight; }

// Sets `visible` of every cell. In Grouped mode a cell must also lie in the area of its group; a cell of no
// group is not visible.
void markVisible(GridState& grid);

// The first visible cell, in the order of the vector, whose box the cursor is in.
int cellUnderCursor(const GridState& grid);
// The first group whose header's left part the cursor is in.
int headerUnderCursor(const GridState& grid);
// Whether the cursor is on the icon of the cell where the layout wants it, in whole pixels: what a drag can
// take hold of.
bool cursorOnIcon(const GridState& grid, const IconCell& cell);

}  // namespace varnelo
