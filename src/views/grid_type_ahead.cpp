#include "views/grid_type_ahead.h"

#include <numeric>
#include <string>

#include "platform/text.h"
#include "views/grid_groups.h"
#include "views/grid_hit_test.h"
#include "views/grid_layout.h"

namespace varnelo {
namespace {

constexpr float kRevealMargin = 10;

}  // namespace

std::vector<int> visibleOrder(const GridState& grid) {
    std::vector<int> order;
    order.reserve(grid.cells.size());
    if (grid.layoutMode == LayoutMode::Grouped) {
        for (const IconGroup& group : grid.groups)
            order.insert(order.end(), group.cells.begin(), group.cells.end());
    } else {
        order.resize(grid.cells.size());
        std::iota(order.begin(), order.end(), 0);
    }
    return order;
}

int findByLetter(GridState& grid, wchar_t letter, const ShellNamespace& shell) {
    const std::vector<int> order = visibleOrder(grid);
    std::size_t start = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (grid.cells[static_cast<std::size_t>(order[i])].selected) start = i + 1;
    }
    for (std::size_t i = 0; i < order.size(); ++i) {
        const int cell = order[(start + i) % order.size()];
        const std::wstring& name = grid.cells[static_cast<std::size_t>(cell)].entry.name(shell);
        if (!name.empty() && lowerUnit(name.front()) == lowerUnit(letter)) return cell;
    }
    return kNoCell;
}

void openGroupOf(GridState& grid, int cell) {
    const int own = groupOfCell(grid, cell);
    for (std::size_t i = 0; i < grid.groups.size(); ++i) {
        IconGroup& group = grid.groups[i];
        if (static_cast<int>(i) == own || !group.expandedByTypeAhead) continue;
        group.collapsed = true;
        group.expandedByTypeAhead = false;
    }
    if (own == kNoGroup || grid.cells[static_cast<std::size_t>(cell)].visible) return;
    IconGroup& group = grid.groups[static_cast<std::size_t>(own)];
    if (!group.collapsed) return;
    group.collapsed = false;
    group.expandedByTypeAhead = true;
    layoutGroups(grid);
}

bool scrollTo(GridState& grid, int cell) {
    const float y = grid.cells[static_cast<std::size_t>(cell)].targetY;
    bool scrolled = false;
    if (grid.scrollY + kRevealMargin > y - grid.cellHeight) {
        grid.scrollY = y - grid.cellHeight - kRevealMargin;
        scrolled = true;
    }
    if (y + grid.cellHeight > grid.scrollY + grid.viewRect.h - kRevealMargin) {
        grid.scrollY = y + grid.cellHeight - grid.viewRect.h + kRevealMargin;
        scrolled = true;
    }
    return scrolled;
}

}  // namespace varnelo
