#include "views/menu_bar.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace varnelo {

void MenuBar::place(float x, float y, float height) {
    rect = {x, y, height, height};
    rowHeight = height;
}

void MenuBar::addItem(std::wstring label, std::function<void()> run) {
    items.push_back({std::move(label), std::move(run)});
    updatePanelWidth();
}

void MenuBar::setLabel(std::size_t index, std::wstring label) {
    if (index >= items.size()) return;
    items[index].label = std::move(label);
    updatePanelWidth();
}

void MenuBar::measureWith(LabelWidth width) {
    labelWidth = std::move(width);
    updatePanelWidth();
}

void MenuBar::updatePanelWidth() {
    float widest = 0;
    for (const Item& item : items) {
        if (labelWidth) widest = std::max(widest, labelWidth(item.label));
    }
    panelWidth = widest + kPanelMargin;
}

ViewRect MenuBar::panelRect() const {
    return {rect.x, rect.bottom(), panelWidth, static_cast<float>(items.size()) * rowHeight};
}

ViewRect MenuBar::rowRect(std::size_t row) const {
    return {rect.x, rect.bottom() + static_cast<float>(row) * rowHeight, panelWidth, rowHeight};
}

ViewRect MenuBar::labelRect(std::size_t row) const {
    ViewRect label = rowRect(row);
    label.x += kLabelInset;
    label.w -= kLabelInset;
    return label;
}

bool MenuBar::hitRow(float x, float y, std::int32_t& row) const {
    const ViewRect panel = panelRect();
    if (!panelShows() || !(rowHeight > 0) || !panel.contains(x, y)) return false;
    const float hit = std::floor((y - panel.y) / rowHeight);
    // The panel's lower edge belongs to it, and to no row.
    if (hit >= static_cast<float>(items.size())) return false;
    row = static_cast<std::int32_t>(hit);
    return true;
}

bool MenuBar::onMouseMove(float x, float y) {
    hovered = rect.contains(x, y);
    std::int32_t row = -1;
    const bool overRow = hitRow(x, y, row);
    hotRow = overRow ? row : -1;
    return overRow;
}

}  // namespace varnelo
