// What the grid does with the mouse.

#include <vector>

#include "app/settings.h"
#include "views/grid_drag.h"
#include "views/grid_groups.h"
#include "views/grid_hit_test.h"
#include "views/grid_layout.h"
#include "views/grid_order.h"
#include "views/grid_scroll.h"
#include "views/grid_virtual_window.h"
#include "views/icon_grid_manager.h"

namespace varnelo {

void IconGridManager::onMouseDown() {
    readCursor();
    if (!cursorInside()) {
        pressedIndex = kNoCell;
        return;
    }
    activeGrid = this;
    if (onScrollBar(*this, services.input.cursorX, services.input.cursorY)) {
        pressScrollBar(*this, services.input.cursorY);
        return;
    }
    if (layoutMode == LayoutMode::List && services.input.cursorY <= viewRect.y + listMode.headerHeight) {
        pressListHeader();
        return;
    }
    if (!selectable) deselectAll();
    pressX = mouseX;
    pressY = mouseY;
    mouseDragging = false;
    pressedIndex = cellUnderCursor(*this);
    if (selectable) selectAtPress();
    // A press may come before the frame that would have seen its cursor.
    if (layoutMode == LayoutMode::Grouped) hoverGroup = headerUnderCursor(*this);
    if (hoverGroup != kNoGroup) toggleGroup(*this, hoverGroup);
}

void IconGridManager::pressListHeader() {
    const auto column = listMode.columnAt(services.input.cursorX, viewRect, marginX, scrollBarWidth);
    if (!column) return;
    listMode.clickColumn(*column, cells, services.shell);
    scrollY = 0;
    layoutRows(*this);
    pressedIndex = kNoCell;
    clearHover();
    loads.cellsShifted();
}

// A press on a selected cell keeps the others selected: it may be the start of a drag of all of them.
void IconGridManager::selectAtPress() {
    const bool ctrl = services.input.ctrlDown;
    if (pressedIndex != kNoCell) {
        if (!ctrl && !cells[static_cast<std::size_t>(pressedIndex)].selected) selectOnly(pressedIndex);
        return;
    }
    if (!ctrl) deselectAll();
    lasso.begin(mouseX, mouseY, cells);
}

void IconGridManager::onMouseMove(bool leftButtonDown) {
    readCursor();
    // With the button up the release went to somebody else: what was held is let go where it is.
    if (!leftButtonDown && (scrollBarDragging || lasso.active || cellDragActive)) onMouseUp();
    if (leftButtonDown && scrollBarDragging) {
        dragThumb(*this, services.input.cursorY);
        return;
    }
    scrollBarHovered = onScrollBar(*this, services.input.cursorX, services.input.cursorY);
    if (scrollBarHovered) showScrollBar(*this, services.clock.steadySeconds());
    if (!cellDragActive) hoverIndex = cursorInside() ? cellUnderCursor(*this) : kNoCell;
    if (!leftButtonDown) return;
    if (lasso.active) {
        lasso.update(mouseX, mouseY, services.input.ctrlDown, cellWidth, hitBoxHeight(*this), cells);
        return;
    }
    if (!mouseDragging) {
        if (!pressMovedFar(*this)) return;
        mouseDragging = true;
        if (tabKind == TabKind::Overview) return;
        takeHold(*this);
    }
    if (cellDragActive && moveHeldCells(*this)) loads.cellsShifted();
}

void IconGridManager::onMouseUp() {
    scrollBarDragging = false;
    if (lasso.active) {
        storeWindowSelection(*this);
        lasso.end();
        return;
    }
    if (cellDragActive) {
        dropCells();
        return;
    }
    if (selectable) clickAtRelease();
}

void IconGridManager::dropCells() {
    if (layoutMode == LayoutMode::Grouped) stampSlotsOfDragged(*this, services.clock.unixSeconds());
    letGo(*this);
    dirty = true;
    orderCells();
    layOut(*this);
    pressedIndex = kNoCell;
}

void IconGridManager::clickAtRelease() {
    if (pressedIndex == kNoCell) return deselectAll();
    if (mouseDragging) return;
    if (services.input.ctrlDown) {
        toggleSelected(pressedIndex);
    } else {
        selectOnly(pressedIndex);
    }
}

void IconGridManager::onMouseWheel(float delta) {
    if (cursorInside()) turnWheel(*this, delta, services.clock.steadySeconds());
}

void IconGridManager::onDoubleClick() {
    const IconCell* hovered = hoverCell();
    if (!hovered || !services.actions) return;
    const FileEntry entry = hovered->entry;
    services.actions->launch(entry);
    const int index = findCell(entry);  // the content may have changed meanwhile
    if (index == kNoCell) return;
    if (FileMetaData* data = cells[static_cast<std::size_t>(index)].entry.metaData) {
        data->timestamp = services.clock.unixSeconds();
    }
    if (groupOfCell(*this, index) == kNoGroup) return;
    orderCells();
    orderGroups();
    layOut(*this);
    dirty = true;
}

void IconGridManager::onRightClick() {
    if (!cursorInside()) return;
    const IconCell* hovered = hoverCell();
    if (!hovered) {
        if (tabKind == TabKind::Desktop) forwardShellMenu();
        return;
    }
    const FileEntry entry = hovered->entry;
    const bool ofSelection = hovered->selected;
    if (services.actions && tabKind == TabKind::Software) {
        services.actions->showItemMenu(entry);
    } else if (services.actions && tabKind != TabKind::System) {
        std::vector<ItemIdList> items;
        if (ofSelection) {
            items = selectedIds();
        } else if (!entry.pidl.empty()) {
            items.push_back(entry.pidl);
        }
        if (!items.empty()) services.actions->showShellMenu(items);
    }
    clearHover();
}

}  // namespace varnelo
