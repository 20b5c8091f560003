#pragma once

#include "views/grid_state.h"

// How cells move. All easing is closed-form, so it can take a long frame and does not depend on the frame
// rate. The scale of an icon is no part of it: that takes its step when the icon is drawn.

namespace varnelo {

// One frame for all cells: easing to the targets and the hover behaviour. `hoverMode` is the setting. True
// while something still moves.
bool animateCells(GridState& grid, int hoverMode, float seconds);

// One frame for the heights of the groups. True while one still moves.
bool animateGroups(GridState& grid, float seconds);

}  // namespace varnelo
