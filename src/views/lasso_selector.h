#pragma once

#include <vector>

#include "views/icon_cell.h"

namespace varnelo {

// The rubber band that selects cells, in content coordinates.
struct LassoSelector {
    struct Colour {
        float red, green, blue, alpha;
    };
    static constexpr Colour kFill{0, 0.470588f, 0.843137f, 0.25f};
    static constexpr Colour kOutline{0, 0.470588f, 0.843137f, 0.85f};
    static constexpr float kOutlineWidth = 1;

    bool active = false;
    float startX = 0;
    float startY = 0;
    float endX = 0;
    float endY = 0;
    std::vector<bool> wasSelected;  // one bit a cell: `selected` when the band was begun

    void begin(float x, float y, const std::vector<IconCell>& cells);
    // Moves the free corner and selects the visible cells under the band; `invert` turns over what was
    // selected at the start instead. A cell's box is `boxWidth` by `boxHeight` from its animated position,
    // edges excluded.
    void update(float x, float y, bool invert, float boxWidth, float boxHeight, std::vector<IconCell>& cells);
    // The cells were replaced under a running band: what is selected now counts as selected at the start.
    void restart(const std::vector<IconCell>& cells);
    void end();
};

}  // namespace varnelo
