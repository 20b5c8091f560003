#include "views/grid_animation.h"

#include <algorithm>
#include <cmath>

#include "views/glass_constants.h"
#include "views/grid_layout.h"
#include "views/grid_math.h"

namespace varnelo {
namespace {

constexpr float kScaleTolerance = 0.001f;
constexpr float kPlaceTolerance = 0.5f;  // pixels
constexpr float kGroupRate = 8;
constexpr float kDragBoost = 5;  // added to the rate of a cell beside a dragged one
constexpr float kShakeSeconds = 0.5f;
constexpr float kShakePixels = 5;
constexpr float kShakeRateX = 20;  // two rates, so that the icon walks a figure and not a line
constexpr float kShakeRateY = 22;

bool ease(IconCell& cell, float share) {
    cell.x += share * (cell.targetX - cell.x);
    cell.y += share * (cell.targetY - cell.y);
    return std::abs(cell.targetX - cell.x) > kPlaceTolerance ||
           std::abs(cell.targetY - cell.y) > kPlaceTolerance;
}

// The scale takes its steps when the cell is drawn, so a cell that is not drawn asks for no frame.
bool enlarge(IconCell& cell, bool hovered) {
    cell.hovered = hovered;
    cell.shakeX = 0;
    cell.shakeY = 0;
    if (!cell.visible || !cell.texture) return false;
    return std::abs(cell.scale - scaleTarget(false, hovered, kHoverEnlarges)) > kScaleTolerance;
}

bool shake(IconCell& cell, bool hovered, float seconds) {
    if (hovered && !cell.hovered) cell.shakeTime = 0;
    cell.hovered = hovered;
    cell.shakeTime += seconds;
    if (!(cell.shakeTime < kShakeSeconds)) {
        cell.shakeX = 0;
        cell.shakeY = 0;
        return false;
    }
    const float amplitude = (1 - cell.shakeTime / kShakeSeconds) * kShakePixels;
    cell.shakeX = std::sin(kShakeRateX * cell.shakeTime) * amplitude;
    cell.shakeY = std::sin(kShakeRateY * cell.shakeTime) * amplitude;
    return true;
}

// A dropped cell keeps the shake time of 0 and so shakes once where it lands.
void holdStill(IconCell& cell) {
    cell.hovered = false;
    cell.shakeTime = 0;
    cell.shakeX = 0;
    cell.shakeY = 0;
}

// Cells make room faster the nearer they are to a dragged one. The distance is a running minimum over the
// cells in their order, on purpose: it shrinks towards the first dragged cell and stays 0 behind it, so that
// the cells there, which move up to close or open the gap, keep the whole boost.
class EaseShares {
public:
    EaseShares(const GridState& grid, float seconds) : baseRate(grid.cellEaseRate), dt(seconds) {
        const auto first =
            std::find_if(grid.cells.begin(), grid.cells.end(), [](const IconCell& c) { return c.dragged; });
        dragging = first != grid.cells.end();
        firstDragged = static_cast<std::size_t>(first - grid.cells.begin());
        common = easeShare(dragging ? kDragBoost + baseRate : baseRate, dt);
    }

    float of(std::size_t index) const {
        if (!dragging || index >= firstDragged) return common;
        return easeShare(kDragBoost / (static_cast<float>(firstDragged - index) + 1) + baseRate, dt);
    }

private:
    float baseRate;
    float dt;
    bool dragging;
    std::size_t firstDragged;
    float common;  // of all cells without a drag, and of those behind the first dragged one
};

}  // namespace

bool animateCells(GridState& grid, int hoverMode, float seconds) {
    const EaseShares shares(grid, seconds);
    const bool hoverCounts = grid.layoutMode != LayoutMode::List;
    bool moving = false;
    for (std::size_t i = 0; i < grid.cells.size(); ++i) {
        IconCell& cell = grid.cells[i];
        if (cell.dragged) {
            holdStill(cell);
            continue;
        }
        moving |= ease(cell, shares.of(i));
        const bool hovered = hoverCounts && static_cast<int>(i) == grid.hoverIndex;
        moving |= hoverMode == kHoverEnlarges ? enlarge(cell, hovered) : shake(cell, hovered, seconds);
    }
    return moving;
}

bool animateGroups(GridState& grid, float seconds) {
    const float share = easeShare(kGroupRate, seconds);
    bool moving = false;
    for (IconGroup& group : grid.groups) {
        group.targetHeight = groupTargetHeight(group, grid);
        group.height += share * (group.targetHeight - group.height);
        moving |= std::abs(group.targetHeight - group.height) > kPlaceTolerance;
    }
    return moving;
}

}  // namespace varnelo
