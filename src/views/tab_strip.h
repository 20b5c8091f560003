#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "views/glass_constants.h"
#include "views/view_rect.h"

namespace varnelo {

// The row of tabs: equally wide, from the left. User-interface thread only.
class TabStrip {
public:
    struct Tab {
        std::wstring label;
        std::function<void()> run;
        ViewRect rect;
    };

    static constexpr float kFontShare = 0.4F;  // of the height
    static constexpr float kShadowOpacity = 0.75F;

    // Lays the tabs out in `area`.
    void place(const ViewRect& area);
    void addTab(std::wstring label, std::function<void()> run);
    // After a change of language.
    void setLabel(std::size_t index, std::wstring label);
    // Gives each tab its rectangle. Widths are not rounded to whole pixels.
    void layout();

    // The tab at the point, or -1. An edge between two tabs belongs to the right one.
    std::int32_t hitTab(float x, float y) const;

    // The glass under a tab: active, else under the mouse, else at rest.
    const BlurTint& tint(std::size_t index) const;

    float height() const { return rect.h; }

    ViewRect rect;
    std::vector<Tab> tabs;
    std::int32_t activeIndex = 0;
    std::int32_t hoverIndex = -1;  // the tab under the mouse, -1 for none
};

}  // namespace varnelo
