// What the grid does with keys, and what is selected.

#include <cstdint>
#include <vector>

#include "views/grid_scroll.h"
#include "views/grid_type_ahead.h"
#include "views/icon_grid_manager.h"

namespace varnelo {
namespace {

constexpr int kDeleteKey = 46;

int upperLetter(int key) { return key >= 'a' && key <= 'z' ? key - 'a' + 'A' : key; }

}  // namespace

void IconGridManager::onKeyDown(int virtualKey) {
    if (activeGrid != this) return;
    const bool mayChangeFiles = tabKind != TabKind::Overview;
    const int key = upperLetter(virtualKey);
    if (services.input.ctrlDown && services.input.altDown) return;
    if (services.input.ctrlDown) {
        if (key == 'C') copySelected(false);
        if (key == 'X' && mayChangeFiles) copySelected(true);
        if (key == 'V' && mayChangeFiles) pasteIntoFolder();
    } else if (key >= 'A' && key <= 'Z') {
        typeAhead(key);
    }
    if (key == kDeleteKey && mayChangeFiles) recycleSelected();
}

void IconGridManager::typeAhead(int letter) {
    const int match = findByLetter(*this, static_cast<wchar_t>(letter), services.shell);
    if (match < 0) return;
    selectOnly(match);
    selection.lastMatch = static_cast<std::int32_t>(absoluteRow(*this, static_cast<std::size_t>(match)));
    selection.lastCharacter = static_cast<std::uint32_t>(letter);
    if (layoutMode == LayoutMode::Grouped) openGroupOf(*this, match);
    if (scrollTo(*this, match)) showScrollBar(*this, services.clock.steadySeconds());
    clampScroll(*this);
}

void IconGridManager::copySelected(bool cut) {
    if (!services.actions) return;
    const std::vector<ItemIdList> items = selectedIds();
    if (!items.empty()) services.actions->copyItems(items, cut);
}

void IconGridManager::pasteIntoFolder() {
    if (!services.actions || folderIdList.empty()) return;
    const ItemIdList folder = folderIdList;
    services.actions->pasteInto(folder);
}

void IconGridManager::recycleSelected() {
    if (!services.actions) return;
    std::vector<FileEntry> entries;
    for (const IconCell& cell : cells) {
        if (cell.selected && !cell.entry.pidl.empty()) entries.push_back(cell.entry);
    }
    if (!entries.empty()) services.actions->recycle(entries);
}

std::vector<ItemIdList> IconGridManager::selectedIds() const {
    std::vector<ItemIdList> items;
    for (const IconCell& cell : cells) {
        if (cell.selected && !cell.entry.pidl.empty()) items.push_back(cell.entry.pidl);
    }
    return items;
}

// Of a virtual pane the rows outside the window change too.

void IconGridManager::deselectAll() {
    for (IconCell& cell : cells) cell.selected = false;
    selection.rows.clear();
}

void IconGridManager::selectOnly(int index) {
    deselectAll();
    setSelected(index, true);
}

void IconGridManager::toggleSelected(int index) {
    setSelected(index, !cells[static_cast<std::size_t>(index)].selected);
}

void IconGridManager::setSelected(int index, bool selected) {
    const auto cell = static_cast<std::size_t>(index);
    cells[cell].selected = selected;
    if (!virtualMode) return;
    if (selected) {
        selection.rows.insert(absoluteRow(*this, cell));
    } else {
        selection.rows.erase(absoluteRow(*this, cell));
    }
}

}  // namespace varnelo
