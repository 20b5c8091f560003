#include "views/lasso_selector.h"

#include <algorithm>

namespace varnelo {

void LassoSelector::begin(float x, float y, const std::vector<IconCell>& cells) {
    active = true;
    startX = endX = x;
    startY = endY = y;
    restart(cells);
}

void LassoSelector::restart(const std::vector<IconCell>& cells) {
    wasSelected.resize(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) wasSelected[i] = cells[i].selected;
}

void LassoSelector::update(float x, float y, bool invert, float boxWidth, float boxHeight,
                           std::vector<IconCell>& cells) {
    endX = x;
    endY = y;
    const auto [left, right] = std::minmax(startX, endX);
    const auto [top, bottom] = std::minmax(startY, endY);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        IconCell& cell = cells[i];
        if (!cell.visible) continue;
        const bool hit =
            cell.x < right && cell.x + boxWidth > left && cell.y < bottom && cell.y + boxHeight > top;
        cell.selected = invert && i < wasSelected.size() && wasSelected[i] ? !hit : hit;
    }
}

void LassoSelector::end() {
    active = false;
    wasSelected.clear();
}

}  // namespace varnelo
