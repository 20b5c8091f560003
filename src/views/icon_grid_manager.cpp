#include "views/icon_grid_manager.h"

#include <algorithm>
#include <cmath>

#include "app/language_table.h"
#include "app/settings.h"
#include "views/grid_animation.h"
#include "views/grid_groups.h"
#include "views/grid_hit_test.h"
#include "views/grid_layout.h"
#include "views/grid_order.h"
#include "views/grid_scroll.h"
#include "views/grid_virtual_window.h"

namespace varnelo {
namespace {

constexpr float kScaleTolerance = 0.01f;

}  // namespace

IconGridManager* IconGridManager::activeGrid = nullptr;

IconGridManager::IconGridManager(GridServices given, TabKind kind) : services(given) {
    tabKind = kind;
    lastScrollActivity = lastWheelActivity = services.clock.steadySeconds();
}

IconGridManager::~IconGridManager() {
    stopIconWorker();
    if (activeGrid == this) activeGrid = nullptr;
}

void IconGridManager::setViewRect(ViewRect& rect, bool snapToColumns, int anchor) {
    placePane(rect, snapToColumns, anchor);
    layOut(*this);
}

void IconGridManager::setViewRect(const ViewRect& rect, bool snapToColumns, int anchor, ViewRect& result) {
    result = rect;
    placePane(result, snapToColumns, anchor);
    if (virtualMode && (layoutMode == LayoutMode::Flat || layoutMode == LayoutMode::List)) {
        invalidateWindow(*this);
        loads.cellsShifted();
    } else {
        layOut(*this);
    }
}

void IconGridManager::placePane(ViewRect& rect, bool snapToColumns, int anchor) {
    takeIconSize(*this, iconSize);
    if (snapToColumns) rect = snappedToColumns(rect, anchor, *this);
    viewRect = rect;
}

bool IconGridManager::update() {
    const float seconds = services.input.deltaTime;
    if (loads.deliver(cells) == IconLoadQueue::Delivery::Misplaced) reloadAllIcons();
    readCursor();
    takeIconScale();
    advanceScroll(*this, seconds);
    bool moving = fadeScrollBar(*this, services.clock.steadySeconds(), seconds);

    hoverGroup = kNoGroup;
    if (layoutMode == LayoutMode::Flat || layoutMode == LayoutMode::List) {
        moving |= updateFlat();
    } else if (layoutMode == LayoutMode::Grouped) {
        hoverGroup = headerUnderCursor(*this);
        markVisible(*this);
        moving |= animateGroups(*this, seconds);
        layoutGroups(*this);
    }
    moving |= animateCells(*this, services.settings.hoverMode, seconds);
    return moving;
}

void IconGridManager::readCursor() {
    mouseX = services.input.cursorX;
    mouseY = services.input.cursorY + scrollY;
}

// The tolerance is one of the scale, so it is the same for every size of the system's icons.
void IconGridManager::takeIconScale() {
    const float wanted = services.settings.iconScaleForLayout() * baseIconSize;
    if (!(std::abs(wanted - iconSize) > kScaleTolerance * baseIconSize)) return;
    takeIconSize(*this, wanted);
    layOut(*this);
}

// True if the source turned out to be shorter: the scroll range shrinks with the next frame.
bool IconGridManager::updateFlat() {
    const std::uint64_t rowsBefore = virtualCount;
    if (virtualMode) {
        refreshWindow();
        contentHeight = layoutMode == LayoutMode::List ? listMode.contentHeight(virtualCount, marginY)
                                                       : flatContentHeight(virtualCount, columns, *this);
    } else {
        layOut(*this);
    }
    markVisible(*this);
    clampScroll(*this);
    return virtualCount != rowsBefore;
}

void IconGridManager::refreshWindow() {
    if (!refreshVirtualWindow(*this)) return;
    loads.cellsShifted();
    reloadAllIcons();
}

IconCell* IconGridManager::hoverCell() {
    if (hoverIndex < 0 || static_cast<std::size_t>(hoverIndex) >= cells.size()) return nullptr;
    return &cells[static_cast<std::size_t>(hoverIndex)];
}

void IconGridManager::clearHover() { hoverIndex = kNoCell; }

}  // namespace varnelo
