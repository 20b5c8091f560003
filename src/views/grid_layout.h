#pragma once

#include <cstdint>
#include <vector>

#include "views/grid_state.h"

// Where every cell belongs. Drawing and hit testing ask what is computed here.

namespace varnelo {

struct CellPosition {
    float x;
    float y;
};

void takeIconSize(GridMetrics& metrics, float iconSize);

// Whole columns in a pane of this width, at least 1.
int columnsIn(float width, const GridMetrics& metrics);
// `rect` with the width of its whole columns; with an `anchor` of 1 its right edge stays.
ViewRect snappedToColumns(const ViewRect& rect, int anchor, const GridMetrics& metrics);

// The place of the cell at `index` of a plain grid. `columns` is at least 1.
CellPosition flatCell(std::uint64_t index, int columns, const GridMetrics& metrics);
// The heights of the whole content, for scrolling.
float flatContentHeight(std::uint64_t count, int columns, const GridMetrics& metrics);
// The height that the area of the group's cells goes to: one row, or all of them when it is open.
float groupTargetHeight(const IconGroup& group, const GridMetrics& metrics);

// Each sets the targets of all cells, `columns` and `contentHeight`, and allocates nothing. In a virtual pane
// the cells are the rows from `windowFirst` on.
void layoutFlat(GridState& grid);
// The group below starts at the animated height of the one above, so that it slides. Its header overlaps the
// last pixels of that one, `groupHeaderGap` of them, on purpose. Cells beyond the first row of a collapsed
// group keep their place behind the clip. Cells of no group are left alone.
void layoutGroups(GridState& grid);
void layoutRows(GridState& grid);  // List mode
// The one of these that the mode asks for.
void layOut(GridState& grid);

// Every cell stands at its target at once.
void jumpToTargets(std::vector<IconCell>& cells);

}  // namespace varnelo
