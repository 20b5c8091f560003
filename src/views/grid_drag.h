#pragma once

#include "views/grid_state.h"

// Dragging cells to another place of the same pane: in a grid among all cells, in groups inside the group.

namespace varnelo {

// Whether the press has moved far enough to be a drag and no click.
bool pressMovedFar(const GridPointer& pointer);

// Takes hold of cells: of all selected ones if the cursor is on the icon of one of them, otherwise of the
// pressed cell if it is on its icon. A press on a label takes hold of nothing.
void takeHold(GridState& grid);

// Puts the held cells under the cursor and gives them their place in the order; the others make room. True if
// cells changed their places in the vector, which they do outside of groups.
bool moveHeldCells(GridState& grid);

// Lets go of all cells.
void letGo(GridState& grid);

}  // namespace varnelo
