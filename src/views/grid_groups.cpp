#include "views/grid_groups.h"

#include <algorithm>
#include <unordered_map>

namespace varnelo {
namespace {

constexpr wchar_t kCollapsedArrow[] = L"\x25B6 ";
constexpr wchar_t kOpenArrow[] = L"\x25BC ";

IconGroup newGroup(const GroupKey& key, const LanguageTable& language) {
    IconGroup group;
    group.id = key;
    group.name = groupName(key, language);
    return group;
}

// An index stays on its cell when the cell `erased` goes.
void followErase(int& index, int erased) {
    if (index == erased) index = -1;
    if (index > erased) --index;
}

}  // namespace

void buildGroups(GridState& grid, const LanguageTable& language) {
    grid.groups.clear();
    std::unordered_map<std::wstring, std::size_t> byKey;
    for (std::size_t i = 0; i < grid.cells.size(); ++i) {
        const std::optional<GroupKey>& key = grid.cells[i].entry.group;
        if (!key) continue;
        const auto [found, isNew] = byKey.try_emplace(groupKeyName(*key), grid.groups.size());
        if (isNew) grid.groups.push_back(newGroup(*key, language));
        grid.groups[found->second].cells.push_back(static_cast<std::int32_t>(i));
    }
}

void joinGroup(GridState& grid, int cell, const LanguageTable& language) {
    const std::optional<GroupKey>& key = grid.cells[static_cast<std::size_t>(cell)].entry.group;
    if (!key) return;
    // Two different keys can have the same key name, and are one group then.
    const std::wstring keyName = groupKeyName(*key);
    auto group = std::find_if(grid.groups.begin(), grid.groups.end(), [&](const IconGroup& other) {
        return other.id && groupKeyName(*other.id) == keyName;
    });
    if (group == grid.groups.end()) group = grid.groups.insert(group, newGroup(*key, language));
    group->cells.push_back(cell);
}

void leaveGroup(GridState& grid, int cell) {
    const int index = groupOfCell(grid, cell);
    if (index == kNoGroup) return;
    const auto group = grid.groups.begin() + index;
    group->cells.erase(std::find(group->cells.begin(), group->cells.end(), cell));
    if (group->cells.empty()) grid.groups.erase(group);
}

void eraseCell(GridState& grid, int cell) {
    leaveGroup(grid, cell);
    for (IconGroup& group : grid.groups) {
        for (std::int32_t& index : group.cells) {
            if (index > cell) --index;
        }
    }
    grid.cells.erase(grid.cells.begin() + cell);
    followErase(grid.pressedIndex, cell);
    followErase(grid.hoverIndex, cell);
    if (static_cast<std::size_t>(cell) < grid.lasso.wasSelected.size()) {
        grid.lasso.wasSelected.erase(grid.lasso.wasSelected.begin() + cell);
    }
    grid.cellDragActive =
        std::any_of(grid.cells.begin(), grid.cells.end(), [](const IconCell& c) { return c.dragged; });
}

int groupOfCell(const GridState& grid, int cell) {
    for (std::size_t i = 0; i < grid.groups.size(); ++i) {
        const std::vector<std::int32_t>& cells = grid.groups[i].cells;
        if (std::find(cells.begin(), cells.end(), cell) != cells.end()) return static_cast<int>(i);
    }
    return kNoGroup;
}

std::wstring groupName(const GroupKey& key, const LanguageTable& language) {
    return language.translate(groupLanguageKey(key));
}

void writeGroupHeader(const IconGroup& group, int columns, std::wstring& text) {
    text.clear();
    if (group.cells.size() > static_cast<std::size_t>(columns))
        text = group.collapsed ? kCollapsedArrow : kOpenArrow;
    text += group.name;
}

void toggleGroup(GridState& grid, int group) {
    for (std::size_t i = 0; i < grid.groups.size(); ++i) {
        IconGroup& each = grid.groups[i];
        if (static_cast<int>(i) == group) {
            each.collapsed = !each.collapsed;
        } else {
            each.collapsed = true;
            each.expandedByTypeAhead = false;
        }
    }
}

}  // namespace varnelo
