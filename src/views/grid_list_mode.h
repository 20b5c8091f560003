#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "views/icon_cell.h"
#include "views/view_rect.h"

namespace varnelo {

// The table layout of a pane: one row an item, with name, path, size and date under a clickable header.
struct GridListMode {
    enum class SortColumn : std::uint32_t { None = 0, Name = 1, Path = 2, Size = 3, Date = 4 };
    enum class SortState : std::int32_t { None = 0, Ascending = 1, Descending = 2 };

    static constexpr float kIconBand = 24;  // left of the columns, beside the margin; holds the row's icon
    static constexpr float kTextInset = 4;  // from a column's edge to its text
    static constexpr float kStatusLineHeight = 24;

    struct Column {
        SortColumn column;
        float x;  // left edge, pixels of the client area
        float width;
    };

    bool active = false;
    bool listEnabled = false;  // a virtual source opens in List mode
    float rowHeight = 24;
    float rowIconSize = 16;
    float headerHeight = 26;
    SortColumn sortColumn = SortColumn::None;
    SortState sortState = SortState::None;
    std::function<void(SortColumn, bool descending)> onSort;  // set: sorts in place of the cells' own sort

    // Targets of the rows, the first of which is row `firstRow` of the list.
    void layoutList(std::vector<IconCell>& cells, float viewX, float viewY, float marginX, float marginY,
                    std::uint64_t firstRow = 0) const;
    float contentHeight(std::uint64_t rows, float marginY) const;

    // Name, path, size, date.
    std::array<Column, 4> columns(const ViewRect& view, float marginX, float scrollBarWidth) const;
    // The column under `x`; none in the icon band and beside the columns.
    std::optional<SortColumn> columnAt(float x, const ViewRect& view, float marginX,
                                       float scrollBarWidth) const;

    // A click on a header: ascending, then descending, then no column, which leaves the order as it stands.
    // Without `onSort` the cells are sorted by the key of the column; equal ones keep their order.
    void clickColumn(SortColumn column, std::vector<IconCell>& cells, const ShellNamespace& shell);
};

}  // namespace varnelo
