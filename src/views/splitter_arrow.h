#pragma once

#include <array>

#include "views/glass_constants.h"
#include "views/view_rect.h"

namespace varnelo {

inline constexpr Float4 kSplitterArrowColor{1, 1, 1, 0.7F};

// The corners of the triangle that stands for a hidden pane, around the origin, pixels: it points to the
// left.
inline constexpr std::array<Float2, 3> kSplitterArrow = {{{-4, 0}, {4, -7}, {4, 7}}};

// Where the arrow's origin lies on the splitter's bar.
constexpr Float2 splitterArrowCentre(const ViewRect& bar) { return {bar.x + bar.w / 2, bar.y + bar.h / 2}; }

}  // namespace varnelo
