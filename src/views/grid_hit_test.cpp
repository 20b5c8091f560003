#include "views/grid_hit_test.h"

#include "views/grid_groups.h"
#include "views/grid_math.h"

namespace varnelo {
namespace {

bool between(float value, float low, float high) { return value >= low && value <= high; }

// The icon stands in the middle of its cell, about half an icon to the right of `x`. That the margin on both
// sides is a whole icon keeps a cell alive that is just coming in or shakes.
bool inView(const IconCell& cell, const GridState& grid, float top) {
    const float s = grid.iconSize;
    const float centre = cell.x + s / 2;
    return grid.viewRect.x <= centre + s && centre <= grid.viewRect.right() && top <= cell.y + s &&
           cell.y <= top + grid.viewRect.h;
}

bool inBox(const IconCell& cell, const GridState& grid) {
    if (grid.layoutMode == LayoutMode::List) {
        return between(grid.mouseX, grid.viewRect.x, grid.viewRect.right() - grid.scrollBarWidth) &&
               between(grid.mouseY, cell.targetY, cell.targetY + grid.listMode.rowHeight);
    }
    return between(grid.mouseX, cell.x, cell.x + grid.cellWidth) &&
           between(grid.mouseY, cell.y, cell.y + hitBoxHeight(grid));
}

void markVisibleInGroups(GridState& grid, float top) {
    for (IconCell& cell : grid.cells) cell.visible = false;
    for (const IconGroup& group : grid.groups) {
        const float areaTop = group.y + grid.groupHeaderHeight;
        for (const std::int32_t index : group.cells) {
            IconCell& cell = grid.cells[static_cast<std::size_t>(index)];
            cell.visible = inView(cell, grid, top) && cell.targetY + grid.cellHeight >= areaTop &&
                           cell.targetY <= areaTop + group.height;
        }
    }
}

}  // namespace

void markVisible(GridState& grid) {
    const float top = grid.viewRect.y + grid.scrollY;
    if (grid.layoutMode == LayoutMode::Grouped) return markVisibleInGroups(grid, top);
    for (IconCell& cell : grid.cells) cell.visible = inView(cell, grid, top);
}

int cellUnderCursor(const GridState& grid) {
    for (std::size_t i = 0; i < grid.cells.size(); ++i) {
        if (grid.cells[i].visible && inBox(grid.cells[i], grid)) return static_cast<int>(i);
    }
    return kNoCell;
}

int headerUnderCursor(const GridState& grid) {
    if (!between(grid.mouseX, grid.viewRect.x + grid.marginX, grid.viewRect.x + grid.groupHeaderHitWidth)) {
        return kNoGroup;
    }
    for (std::size_t i = 0; i < grid.groups.size(); ++i) {
        const float y = grid.groups[i].y;
        if (between(grid.mouseY, y, y + grid.groupHeaderHeight)) return static_cast<int>(i);
    }
    return kNoGroup;
}

bool cursorOnIcon(const GridState& grid, const IconCell& cell) {
    const float s = grid.iconSize;
    const auto whole = [](float value) { return static_cast<float>(truncated(value)); };
    return between(grid.mouseX, whole(cell.targetX + s / 2), whole(cell.targetX + s / 2 + s)) &&
           between(grid.mouseY, whole(cell.targetY), whole(cell.targetY + s));
}

}  // namespace varnelo
