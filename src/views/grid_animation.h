#pragma once

#include "views/grid_state.h"

// How cells move. All easing is closed-form, so it can take a long frame and does not depend on the frame
// rate, but for the scale of an icon, which takes its step when it is drawn.

namespace varnelo {

// The value of the setting; any other means the shake.
constexpr int kHoverEnlarges = 1;

// One frame for all cells: easing to the targets and the hover behaviour. True while something still moves.
bool animateCells(GridState& grid, int hoverMode, float seconds);

// One frame for the heights of the groups. True while one still moves.
bool animateGroups(GridState& grid, float seconds);

// The scale that an icon is drawn at next; to be called once each time it is drawn.
float stepScale(IconCell& cell, int hoverMode);

}  // namespace varnelo
