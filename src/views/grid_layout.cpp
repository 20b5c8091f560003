#include "views/grid_layout.h"

#include <algorithm>

#include "views/grid_math.h"

namespace varnelo {

void takeIconSize(GridMetrics& metrics, float iconSize) {
    metrics.iconSize = iconSize;
    metrics.cellWidth = iconSize + metrics.extraWidth;
    metrics.cellHeight = iconSize + metrics.extraHeight;
}

int columnsIn(float width, const GridMetrics& metrics) {
    return std::max(truncated((width - metrics.marginX) / metrics.cellWidth), 1);
}

ViewRect snappedToColumns(const ViewRect& rect, int anchor, const GridMetrics& metrics) {
    ViewRect snapped = rect;
    snapped.w = static_cast<float>(columnsIn(rect.w, metrics)) * metrics.cellWidth + metrics.marginX;
    if (anchor == 1) snapped.x = rect.x + rect.w - snapped.w;
    return snapped;
}

CellPosition flatCell(std::uint64_t index, int columns, const GridMetrics& metrics) {
    const auto perRow = static_cast<std::uint64_t>(columns);
    const std::uint64_t column = index % perRow;
    const std::uint64_t row = index / perRow;
    return {static_cast<float>(column) * metrics.cellWidth + metrics.viewRect.x + metrics.marginX,
            static_cast<float>(row) * metrics.cellHeight + metrics.viewRect.y + metrics.marginY};
}

float flatContentHeight(std::uint64_t count, int columns, const GridMetrics& metrics) {
    const auto perRow = static_cast<std::uint64_t>(columns);
    const std::uint64_t rows = count / perRow + (count % perRow != 0);
    return static_cast<float>(rows) * metrics.cellHeight + metrics.marginY;
}

float groupTargetHeight(const IconGroup& group, const GridMetrics& metrics) {
    const int count = static_cast<int>(group.cells.size());
    const int shown = group.collapsed ? std::min(count, metrics.columns) : count;
    const int rows = (shown + metrics.columns - 1) / metrics.columns;
    return static_cast<float>(rows) * metrics.cellHeight;
}

void layoutFlat(GridState& grid) {
    grid.columns = columnsIn(grid.viewRect.w, grid);
    std::uint64_t row = absoluteRow(grid, 0);
    for (IconCell& cell : grid.cells) {
        const CellPosition place = flatCell(row++, grid.columns, grid);
        cell.targetX = place.x;
        cell.targetY = place.y;
    }
    grid.contentHeight = flatContentHeight(rowCount(grid), grid.columns, grid);
}

void layoutGroups(GridState& grid) {
    grid.columns = columnsIn(grid.viewRect.w, grid);
    float y = grid.viewRect.y + grid.marginY;
    for (IconGroup& group : grid.groups) {
        group.y = y;
        y += grid.groupHeaderHeight;
        group.targetHeight = groupTargetHeight(group, grid);
        int column = 0;
        int row = 0;
        for (const std::int32_t index : group.cells) {
            IconCell& cell = grid.cells[static_cast<std::size_t>(index)];
            cell.targetX = static_cast<float>(column) * grid.cellWidth + grid.marginX + grid.viewRect.x;
            cell.targetY = static_cast<float>(row) * grid.cellHeight + y + grid.groupHeaderGap;
            if (++column == grid.columns) {
                column = 0;
                ++row;
            }
        }
        y += group.height;
    }
    grid.contentHeight = y - grid.viewRect.y;
}

void layoutRows(GridState& grid) {
    grid.columns = columnsIn(grid.viewRect.w, grid);
    grid.listMode.layoutList(grid.cells, grid.viewRect.x, grid.viewRect.y, grid.marginX, grid.marginY,
                             absoluteRow(grid, 0));
    grid.contentHeight = grid.listMode.contentHeight(rowCount(grid), grid.marginY);
}

void layOut(GridState& grid) {
    switch (grid.layoutMode) {
        case LayoutMode::None:
            return;
        case LayoutMode::Grouped:
            return layoutGroups(grid);
        case LayoutMode::Flat:
            return layoutFlat(grid);
        case LayoutMode::List:
            return layoutRows(grid);
    }
}

void jumpToTargets(std::vector<IconCell>& cells) {
    for (IconCell& cell : cells) {
        cell.x = cell.targetX;
        cell.y = cell.targetY;
    }
}

}  // namespace varnelo
