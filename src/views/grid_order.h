#pragma once

#include <cstdint>

#include "model/file_metadata.h"
#include "views/grid_state.h"

// The order of the cells in their groups and of the groups in the pane.
//
// The grid remembers where the user put things, and the memory fades: a stored place (`slot`) holds exactly
// for `timeoutDays`, then pulls less and less against the natural order, newest first, and is erased after
// six times as long. Times are Unix seconds.

namespace varnelo {

// How strongly a place that was stored `ageDays` ago is kept, 1 at most. Beyond the time-out it halves every
// two time-outs. Not asked for a place old enough to be erased.
double slotWeight(double ageDays, double timeoutDays);

// Orders the cells of every group of two or more. Places that are too old are erased from the metadata.
void reorderGroupCells(GridState& grid, std::int64_t now, double timeoutDays);

// The sum over the group's cells of a use that fades with a time constant of 30 days. A cell that was never
// used, `timestamp` 0, adds nothing.
double usageScore(const IconGroup& group, const std::vector<IconCell>& cells, std::int64_t now);

// By rank on the desktop, and among the groups without a rank of their own the more used first.
void sortGroups(GridState& grid, std::int64_t now);

// A drop: every cell of a group that holds a dragged one remembers its place from now on.
void stampSlotsOfDragged(GridState& grid, std::int64_t now);

}  // namespace varnelo
