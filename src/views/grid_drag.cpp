#include "views/grid_drag.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "views/grid_hit_test.h"
#include "views/grid_layout.h"
#include "views/grid_math.h"

namespace varnelo {
namespace {

constexpr float kDragThreshold = 5;  // pixels

IconCell& cellAt(GridState& grid, std::int32_t index) { return grid.cells[static_cast<std::size_t>(index)]; }

void grab(GridState& grid, IconCell& cell) {
    cell.dragged = true;
    cell.grabX = grid.mouseX - cell.x;
    cell.grabY = grid.mouseY - cell.y;
    grid.cellDragActive = true;
}

// The place of an index after the cell at `from` was moved to `to`.
int afterMove(int index, int from, int to) {
    if (index == from) return to;
    if (from < index && index <= to) return index - 1;
    if (to <= index && index < from) return index + 1;
    return index;
}

void moveCell(GridState& grid, int from, int to) {
    const auto begin = grid.cells.begin();
    if (from < to) {
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    } else {
        std::rotate(begin + to, begin + from, begin + from + 1);
    }
    if (grid.pressedIndex >= 0) grid.pressedIndex = afterMove(grid.pressedIndex, from, to);
    if (grid.hoverIndex >= 0) grid.hoverIndex = afterMove(grid.hoverIndex, from, to);
}

// The cursor is measured from the client area's corner here, not from the pane's, and a column beyond the
// last one runs on into the next row. Both are kept as users know them.
bool moveInFlat(GridState& grid) {
    const auto target =
        static_cast<std::int64_t>(truncated((grid.mouseY - grid.marginY) / grid.cellHeight)) * grid.columns +
        truncated((grid.mouseX - grid.marginX) / grid.cellWidth);
    if (target < 0 || target >= static_cast<std::int64_t>(grid.cells.size())) return false;
    const int to = static_cast<int>(target);

    std::vector<int> held;
    for (std::size_t i = 0; i < grid.cells.size(); ++i) {
        if (grid.cells[i].dragged) held.push_back(static_cast<int>(i));
    }
    bool moved = false;
    for (std::size_t i = 0; i < held.size(); ++i) {
        const int from = held[i];
        if (from == to) continue;
        moveCell(grid, from, to);
        for (int& other : held) other = afterMove(other, from, to);
        moved = true;
    }
    if (moved) layOut(grid);
    return moved;
}

int slotUnderCursor(const GridState& grid, const IconGroup& group) {
    const int column = std::clamp(
        truncated((grid.mouseX - (grid.viewRect.x + grid.marginX)) / grid.cellWidth), 0, grid.columns - 1);
    const float areaTop = group.y + grid.groupHeaderHeight + grid.groupHeaderGap;
    const int row = std::max(truncated((grid.mouseY - areaTop) / grid.cellHeight), 0);
    const std::int64_t slot = column + static_cast<std::int64_t>(grid.columns) * row;
    return static_cast<int>(std::min(slot, static_cast<std::int64_t>(group.cells.size()) - 1));
}

// The group's cells with the held ones, in their order, at the slot under the cursor.
std::vector<std::int32_t> orderUnderCursor(GridState& grid, const IconGroup& group) {
    std::vector<std::int32_t> others;
    std::vector<std::int32_t> held;
    for (const std::int32_t index : group.cells)
        (cellAt(grid, index).dragged ? held : others).push_back(index);
    const auto slot = std::min(static_cast<std::size_t>(slotUnderCursor(grid, group)), others.size());
    others.insert(others.begin() + static_cast<std::ptrdiff_t>(slot), held.begin(), held.end());
    return others;
}

void moveInGroups(GridState& grid) {
    for (IconGroup& group : grid.groups) {
        const bool holdsHeld = std::any_of(group.cells.begin(), group.cells.end(),
                                           [&](std::int32_t index) { return cellAt(grid, index).dragged; });
        if (!holdsHeld) continue;
        std::vector<std::int32_t> order = orderUnderCursor(grid, group);
        if (order == group.cells) continue;
        group.cells = std::move(order);
        layoutGroups(grid);
    }
}

}  // namespace

bool pressMovedFar(const GridPointer& pointer) {
    return std::hypot(pointer.mouseX - pointer.pressX, pointer.mouseY - pointer.pressY) > kDragThreshold;
}

void takeHold(GridState& grid) {
    const bool onSelected = std::any_of(grid.cells.begin(), grid.cells.end(), [&](const IconCell& cell) {
        return cell.selected && cursorOnIcon(grid, cell);
    });
    if (onSelected) {
        for (IconCell& cell : grid.cells) {
            if (cell.selected) grab(grid, cell);
        }
        return;
    }
    if (grid.pressedIndex == kNoCell) return;
    IconCell& pressed = cellAt(grid, grid.pressedIndex);
    if (cursorOnIcon(grid, pressed)) grab(grid, pressed);
}

bool moveHeldCells(GridState& grid) {
    for (IconCell& cell : grid.cells) {
        if (!cell.dragged) continue;
        cell.x = grid.mouseX - cell.grabX;
        cell.y = grid.mouseY - cell.grabY;
    }
    if (grid.layoutMode != LayoutMode::Grouped) return moveInFlat(grid);
    moveInGroups(grid);
    return false;
}

void letGo(GridState& grid) {
    for (IconCell& cell : grid.cells) cell.dragged = false;
    grid.cellDragActive = false;
}

}  // namespace varnelo
