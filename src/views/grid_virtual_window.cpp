#include "views/grid_virtual_window.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "views/grid_layout.h"
#include "views/grid_math.h"

namespace varnelo {
namespace {

constexpr int kMoreRows = 3;  // held beyond those that fit: one above, a cut one, one below

std::uint64_t rowBefore(float rows) { return static_cast<std::uint64_t>(std::max(truncated(rows) - 1, 0)); }
std::uint64_t rowsIn(float rows) {
    return static_cast<std::uint64_t>(std::max(truncated(rows), 0)) + kMoreRows;
}

// Before the cells go: nothing may point to one any more, but for the pressed row, which is followed by its
// number.
void forgetCells(GridState& grid, std::uint64_t newFirst) {
    if (grid.pressedIndex >= 0) {
        const std::uint64_t row = grid.windowFirst + static_cast<std::uint64_t>(grid.pressedIndex);
        const std::uint64_t index = row - newFirst;  // huge for a row before the window
        grid.pressedIndex = index <= std::numeric_limits<int>::max() ? static_cast<int>(index) : -1;
    }
    grid.hoverIndex = -1;
    grid.cellDragActive = false;
    grid.cells.clear();
    if (grid.lasso.active) grid.lasso.restart(grid.cells);
}

// The provider may write to its arguments, so it gets copies.
void fillWindow(GridState& grid, RowRange wanted) {
    RowRange asked = wanted;
    std::vector<FileEntry> entries = grid.entryProvider(asked.first, asked.count);
    if (entries.size() > wanted.count) entries.resize(wanted.count);
    const std::uint64_t missing = wanted.count - entries.size();
    if (missing <= grid.virtualCount) grid.virtualCount -= missing;

    grid.cells.reserve(entries.size());
    for (FileEntry& entry : entries) grid.cells.emplace_back(std::move(entry));
    layOut(grid);
    jumpToTargets(grid.cells);
    grid.selection.restore(grid.windowFirst, grid.cells);
}

}  // namespace

RowRange wantedWindow(const GridState& grid) {
    const float top = grid.scrollY - grid.marginY;
    RowRange range{};
    if (grid.layoutMode == LayoutMode::List) {
        const GridListMode& list = grid.listMode;
        range.first = rowBefore((top - list.headerHeight) / list.rowHeight);
        range.count = rowsIn(grid.viewRect.h / list.rowHeight);
    } else {
        const auto columns = static_cast<std::uint64_t>(columnsIn(grid.viewRect.w, grid));
        range.first = rowBefore(top / grid.cellHeight) * columns;
        range.count = rowsIn(grid.viewRect.h / grid.cellHeight) * columns;
    }
    if (range.first >= grid.virtualCount) return {grid.virtualCount - 1, 0};
    range.count = std::min(range.count, grid.virtualCount - range.first);
    return range;
}

bool refreshVirtualWindow(GridState& grid) {
    if (!grid.virtualMode || !grid.entryProvider || grid.virtualCount == 0) return false;
    grid.columns = columnsIn(grid.viewRect.w, grid);
    const RowRange wanted = wantedWindow(grid);
    if (wanted.first == grid.windowFirst && wanted.count == grid.windowCount && !grid.cells.empty())
        return false;

    storeWindowSelection(grid);
    forgetCells(grid, wanted.first);
    grid.windowFirst = wanted.first;
    grid.windowCount = wanted.count;
    if (wanted.count > 0) fillWindow(grid, wanted);
    if (grid.pressedIndex >= static_cast<int>(grid.cells.size())) grid.pressedIndex = -1;
    if (grid.lasso.active) grid.lasso.restart(grid.cells);
    return true;
}

void storeWindowSelection(GridState& grid) {
    if (grid.virtualMode) grid.selection.store(grid.windowFirst, grid.cells);
}

void invalidateWindow(GridState& grid) {
    storeWindowSelection(grid);
    grid.pressedIndex = -1;
    forgetCells(grid, 0);
    grid.windowFirst = std::numeric_limits<std::uint64_t>::max();
    grid.windowCount = 0;
}

}  // namespace varnelo
