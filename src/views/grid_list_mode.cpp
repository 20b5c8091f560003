#include "views/grid_list_mode.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "platform/text.h"

namespace varnelo {
namespace {

using SortColumn = GridListMode::SortColumn;

std::uint64_t numericKey(const FileEntry& entry, SortColumn column) {
    const auto* info = dynamic_cast<const SearchFileInfo*>(entry.metaData);
    if (!info) return 0;
    return column == SortColumn::Size ? info->fileSize : info->lastWriteTime;
}

std::wstring textKey(FileEntry& entry, SortColumn column, const ShellNamespace& shell) {
    return lowered(column == SortColumn::Name ? entry.name(shell) : entry.path(shell));
}

// Keys are taken once per row: a path is asked of the shell. Cells are moved once, into their final order.
template <class Key, class KeyOf>
void sortByKey(std::vector<IconCell>& cells, bool descending, KeyOf keyOf) {
    std::vector<std::pair<Key, std::size_t>> order;
    order.reserve(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) order.emplace_back(keyOf(cells[i].entry), i);
    std::stable_sort(order.begin(), order.end(), [descending](const auto& a, const auto& b) {
        return descending ? b.first < a.first : a.first < b.first;
    });
    std::vector<IconCell> sorted;
    sorted.reserve(cells.size());
    for (const auto& entry : order) sorted.push_back(std::move(cells[entry.second]));
    cells = std::move(sorted);
}

}  // namespace

void GridListMode::layoutList(std::vector<IconCell>& cells, float viewX, float viewY, float marginX,
                              float marginY, std::uint64_t firstRow) const {
    for (IconCell& cell : cells) {
        cell.targetX = viewX + marginX;
        cell.targetY = static_cast<float>(firstRow++) * rowHeight + viewY + marginY + headerHeight;
    }
}

float GridListMode::contentHeight(std::uint64_t rows, float marginY) const {
    return static_cast<float>(rows) * rowHeight + headerHeight + marginY;
}

std::array<GridListMode::Column, 4> GridListMode::columns(const ViewRect& view, float marginX,
                                                          float scrollBarWidth) const {
    const float offset = marginX + kIconBand;
    const float width = view.w - offset - scrollBarWidth;
    float x = view.x + offset;
    const auto next = [&x, width](SortColumn column, float share) {
        const Column result{column, x, width * share};
        x += result.width;
        return result;
    };
    return {next(SortColumn::Name, 0.3f), next(SortColumn::Path, 0.35f), next(SortColumn::Size, 0.15f),
            next(SortColumn::Date, 0.2f)};
}

std::optional<SortColumn> GridListMode::columnAt(float x, const ViewRect& view, float marginX,
                                                 float scrollBarWidth) const {
    for (const Column& column : columns(view, marginX, scrollBarWidth)) {
        if (x >= column.x && x < column.x + column.width) return column.column;
    }
    return std::nullopt;
}

void GridListMode::clickColumn(SortColumn column, std::vector<IconCell>& cells, const ShellNamespace& shell) {
    if (column == SortColumn::None) return;
    if (column != sortColumn) {
        sortColumn = column;
        sortState = SortState::Ascending;
    } else if (sortState == SortState::Descending) {
        sortColumn = SortColumn::None;
        sortState = SortState::None;
    } else {
        sortState = sortState == SortState::None ? SortState::Ascending : SortState::Descending;
    }
    if (sortState == SortState::None) return;

    const bool descending = sortState == SortState::Descending;
    if (onSort) {
        onSort(column, descending);
    } else if (column == SortColumn::Name || column == SortColumn::Path) {
        sortByKey<std::wstring>(cells, descending, [&](FileEntry& e) { return textKey(e, column, shell); });
    } else if (column == SortColumn::Size || column == SortColumn::Date) {
        sortByKey<std::uint64_t>(cells, descending, [&](FileEntry& e) { return numericKey(e, column); });
    }
}

}  // namespace varnelo
