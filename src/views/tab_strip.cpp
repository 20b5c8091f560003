#include "views/tab_strip.h"

#include <algorithm>
#include <utility>

namespace varnelo {

void TabStrip::place(const ViewRect& area) {
    rect = area;
    layout();
}

void TabStrip::addTab(std::wstring label, std::function<void()> run) {
    tabs.push_back({std::move(label), std::move(run), {}});
    layout();
}

void TabStrip::setLabel(std::size_t index, std::wstring label) {
    if (index < tabs.size()) tabs[index].label = std::move(label);
}

void TabStrip::layout() {
    const float width = rect.w / static_cast<float>(tabs.size());
    for (std::size_t i = 0; i < tabs.size(); ++i) {
        tabs[i].rect = {rect.x + static_cast<float>(i) * width, rect.y, width, rect.h};
    }
}

std::int32_t TabStrip::hitTab(float x, float y) const {
    if (!rect.contains(x, y)) return -1;
    for (std::size_t i = tabs.size(); i-- > 0;) {
        if (x >= tabs[i].rect.x) return static_cast<std::int32_t>(i);
    }
    return -1;
}

const BlurTint& TabStrip::tint(std::size_t index) const {
    const auto tab = static_cast<std::int32_t>(index);
    if (tab == activeIndex) return kTabActiveTint;
    return tab == hoverIndex ? kTabHoveredTint : kTabTint;
}

}  // namespace varnelo
