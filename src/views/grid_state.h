#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/item_id_list.h"
#include "views/grid_list_mode.h"
#include "views/grid_selection.h"
#include "views/icon_cell.h"
#include "views/icon_group.h"
#include "views/lasso_selector.h"
#include "views/view_rect.h"

// The plain data of one pane of icons, in slices: a function that computes something takes the slice it
// needs. Content coordinates are pixels of the client area with the pane scrolled to its top.

namespace varnelo {

enum class LayoutMode : std::uint32_t { None = 0, Grouped = 1, Flat = 2, List = 3 };

// What a pane shows; decides which actions are allowed.
enum class TabKind : std::uint32_t {
    System = 0,
    Software = 1,
    Desktop = 2,
    Unassigned = 3,
    Search = 4,
    Overview = 5
};

// Where the pane is and how large its parts are, in pixels.
struct GridMetrics {
    ViewRect viewRect;
    float marginX = 10;
    float marginY = 10;
    float cellWidth = 60;  // this and the next follow `iconSize` from the first layout on
    float cellHeight = 60;
    float extraWidth = 46;  // cell size minus icon size
    float extraHeight = 62;
    float baseIconSize = 48;  // what the system's image list reports
    float iconSize = 48;      // the setting `iconScale` times `baseIconSize`
    float groupHeaderHeight = 24;
    float groupHeaderGap = 10;        // from the bottom of a header to the first row
    float groupHeaderHitWidth = 150;  // the part of a header that can be clicked ends here
    int columns = 15;                 // rewritten by every layout, at least 1
};

// Scrolling and the scroll bar. Seconds are those of the steady clock.
struct GridScroll {
    float contentHeight = 0;
    float scrollY = 0;
    float scrollVelocity = 0;  // pixels per second, positive towards the top
    float scrollBarWidth = 10;
    bool scrollBarHovered = false;
    bool scrollBarDragging = false;
    float scrollBarGrabY = 0;  // cursor inside the thumb at the grab
    double lastScrollActivity = 0;
    double lastWheelActivity = 0;
    float scrollBarHoldSeconds = 1;
    float scrollBarAlpha = 0;
    float scrollBarAlphaTarget = 0;
    float scrollBarFadeRate = 18;
};

// The cursor and what it does. Indexes are -1 for none.
struct GridPointer {
    float mouseX = 0;  // content coordinates: y includes the scroll offset
    float mouseY = 0;
    float pressX = 0;  // of the last press
    float pressY = 0;
    int pressedIndex = -1;
    int hoverIndex = -1;
    int hoverGroup = -1;          // the group whose header is under the cursor
    bool mouseDragging = false;   // the press moved over 5 pixels
    bool cellDragActive = false;  // at least one cell has `dragged` set
};

// Rows asked from a source: (first index, count). May return fewer than asked. The arguments are the caller's
// own copies.
using EntryProvider = std::function<std::vector<FileEntry>(std::uint64_t& first, std::uint64_t& count)>;

// A pane over a source of many rows, of which `cells` holds only those in sight.
struct GridVirtualSource {
    bool virtualMode = false;
    std::uint64_t virtualCount = 0;  // rows of the source
    EntryProvider entryProvider;
    std::uint64_t windowFirst = 0;  // the rows now held in `cells`
    std::uint64_t windowCount = 0;
};

struct GridState : GridMetrics, GridScroll, GridPointer, GridVirtualSource {
    TabKind tabKind = TabKind::System;
    LayoutMode layoutMode = LayoutMode::None;
    std::vector<IconCell> cells;
    std::vector<IconGroup> groups;
    GridListMode listMode;
    GridSelection selection;  // of a virtual pane; otherwise the cells hold it
    LassoSelector lasso;
    float cellEaseRate = 18;
    ItemIdList folderIdList;  // the folder that Ctrl+V pastes into, may be empty
    bool dirty = false;       // the order of cells changed; the main view saves it on the next frame
    bool selectable = true;   // otherwise a press clears every selection
};

// The virtual source's row of the cell, or the cell's own index.
inline std::uint64_t absoluteRow(const GridState& grid, std::size_t cell) {
    return (grid.virtualMode ? grid.windowFirst : 0) + cell;
}

// Rows of the whole content.
inline std::uint64_t rowCount(const GridState& grid) {
    return grid.virtualMode ? grid.virtualCount : grid.cells.size();
}

// The height that content scrolls through: without the list's header in List mode.
inline float visibleHeight(const GridState& grid) {
    return grid.viewRect.h - (grid.layoutMode == LayoutMode::List ? grid.listMode.headerHeight : 0);
}

}  // namespace varnelo
