// What the grid shows: whole lists, virtual sources, and single items that come, go and change.

#include <algorithm>

#include "app/language_table.h"
#include "app/settings.h"
#include "views/grid_groups.h"
#include "views/grid_hit_test.h"
#include "views/grid_layout.h"
#include "views/grid_order.h"
#include "views/grid_virtual_window.h"
#include "views/icon_grid_manager.h"

namespace varnelo {
namespace {

bool sameGroup(const std::optional<GroupKey>& a, const std::optional<GroupKey>& b) {
    if (!a || !b) return !a && !b;
    return groupKeyName(*a) == groupKeyName(*b);
}

}  // namespace

void IconGridManager::resetContent() {
    cells.clear();
    groups.clear();
    lasso.end();
    cellDragActive = false;
    pressedIndex = kNoCell;
    hoverGroup = kNoGroup;
    clearHover();
    loads.cellsShifted();
}

void IconGridManager::setEntries(EntryList list, TabKind kind) {
    resetContent();
    virtualMode = false;
    virtualCount = windowFirst = windowCount = 0;
    entryProvider = nullptr;
    selection = {};
    tabKind = kind;
    folderIdList = std::move(list.folder);

    cells.reserve(list.entries.size());
    for (FileEntry& entry : list.entries) cells.emplace_back(std::move(entry));
    buildGroups(*this, services.language);
    layoutMode = groups.empty() ? LayoutMode::Flat : LayoutMode::Grouped;
    orderCells();
    orderGroups();
    layOut(*this);  // gives the groups the heights that they start with
    for (IconGroup& group : groups) group.height = group.targetHeight;
    layOut(*this);
    jumpToTargets(cells);
    reloadAllIcons();
}

void IconGridManager::setVirtualSource(std::uint64_t count, EntryProvider provider) {
    storeWindowSelection(*this);
    resetContent();
    layoutMode = listMode.listEnabled ? LayoutMode::List : LayoutMode::Flat;
    tabKind = TabKind::Search;
    folderIdList = {};
    virtualMode = true;
    virtualCount = count;
    entryProvider = std::move(provider);
    windowFirst = windowCount = 0;
    if (count == 0) selection = {};
    layOut(*this);
    refreshWindow();
}

void IconGridManager::addEntry(const FileEntry& entry) {
    if (virtualMode) return;
    if (isShown(entry)) return updateEntry(entry);
    const int index = static_cast<int>(cells.size());
    cells.emplace_back(entry);
    if (lasso.active) lasso.wasSelected.push_back(false);
    joinGroup(*this, index, services.language);
    contentChanged();
    cells.back().x = cells.back().targetX;
    cells.back().y = cells.back().targetY;
    loadIcon(index);
}

void IconGridManager::removeEntry(const FileEntry& entry) {
    if (virtualMode) return;
    const int index = findCell(entry);
    if (index == kNoCell) return;
    eraseCell(*this, index);
    loads.cellsShifted();
    hoverGroup = kNoGroup;
    chooseMode();
    layOut(*this);
}

void IconGridManager::updateEntry(const FileEntry& entry) {
    if (virtualMode) return;
    const int index = findCell(entry);
    if (index == kNoCell) return;
    FileEntry& shown = cells[static_cast<std::size_t>(index)].entry;
    const bool stays = sameGroup(shown.group, entry.group);
    shown = entry;
    if (!stays) {
        leaveGroup(*this, index);
        joinGroup(*this, index, services.language);
    }
    contentChanged();
    loadIcon(index);
}

void IconGridManager::renameEntry(const FileEntry& entry) {
    if (virtualMode || !entry.metaData) return;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        FileEntry& shown = cells[i].entry;
        if (shown.metaData != entry.metaData) continue;
        std::optional<GroupKey> group = std::move(shown.group);
        shown = entry;
        shown.group = std::move(group);
        orderCells();
        layOut(*this);
        dirty = true;
        loadIcon(static_cast<int>(i));  // another name can mean another icon
        return;
    }
}

void IconGridManager::reloadIcon(const ItemIdList& id) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!services.shell.equal(cells[i].entry.pidl, id)) continue;
        loadIcon(static_cast<int>(i));
        return;
    }
}

void IconGridManager::reloadAllIcons() {
    for (std::size_t i = 0; i < cells.size(); ++i) loadIcon(static_cast<int>(i));
}

void IconGridManager::refreshGroupNames() {
    for (IconGroup& group : groups) {
        if (group.id) group.name = groupName(*group.id, services.language);
    }
}

int IconGridManager::findCell(const FileEntry& entry) const {
    const auto indexOf = [this](auto matches) {
        const auto found = std::find_if(cells.begin(), cells.end(), matches);
        return found == cells.end() ? kNoCell : static_cast<int>(found - cells.begin());
    };
    int index = kNoCell;
    if (entry.metaData) {
        index = indexOf([&](const IconCell& cell) { return cell.entry.metaData == entry.metaData; });
    }
    if (index == kNoCell && !entry.pidl.empty()) {
        index =
            indexOf([&](const IconCell& cell) { return services.shell.equal(cell.entry.pidl, entry.pidl); });
    }
    return index;
}

// The shell is not asked here: of many items that come at once each would be compared with all others.
bool IconGridManager::isShown(const FileEntry& entry) const {
    return std::any_of(cells.begin(), cells.end(), [&](const IconCell& cell) {
        return (entry.metaData && cell.entry.metaData == entry.metaData) ||
               (!entry.pidl.empty() && cell.entry.pidl == entry.pidl);
    });
}

void IconGridManager::orderCells() {
    reorderGroupCells(*this, services.clock.unixSeconds(), services.settings.sortTimeoutDays);
}

void IconGridManager::orderGroups() {
    sortGroups(*this, services.clock.unixSeconds());
    hoverGroup = kNoGroup;
}

void IconGridManager::chooseMode() {
    if (layoutMode != LayoutMode::List) layoutMode = groups.empty() ? LayoutMode::Flat : LayoutMode::Grouped;
}

void IconGridManager::contentChanged() {
    orderCells();
    orderGroups();
    chooseMode();
    layOut(*this);
}

}  // namespace varnelo
