#include "views/view_layout.h"

#include <algorithm>
#include <cmath>

namespace varnelo {

namespace {

constexpr float kMenuRow = 40;  // at 96 dots per inch
constexpr float kSearchPanel = 76;
constexpr float kSecondRowGap = 10;
constexpr float kFieldMargin = 10;
constexpr float kExpanderBelowField = 36;  // from the field's top to the expander's
constexpr float kExpanderHeight = 20;
constexpr float kContentBelowExpander = 24;
constexpr float kProgressHeight = 30;

ViewRect below(const ViewRect& area, float height) {
    const float taken = std::min(height, area.h);
    return {area.x, area.y + taken, area.w, area.h - taken};
}

}  // namespace

float menuRowHeight(float dpiScale) { return std::round(kMenuRow * dpiScale); }

ViewLayout layOutView(const ViewLayoutInput& in) {
    ViewLayout out;
    const ViewRect& tabs = in.firstRect;
    const float row = menuRowHeight(in.dpiScale);
    out.menuButton = {tabs.x, tabs.y, row, row};
    out.tabStrip = {tabs.x + row, tabs.y, std::max(tabs.w - row, 0.0F), row};

    const float fieldWidth = std::max(tabs.w - 2 * kFieldMargin, 0.0F);
    const float fieldLeft = tabs.x + kFieldMargin;
    out.nameField = {fieldLeft, tabs.y + row + kFieldMargin, fieldWidth, kSearchFieldHeight};
    out.expander = {fieldLeft, out.nameField.y + kExpanderBelowField, fieldWidth, kExpanderHeight};
    out.contentField = {fieldLeft, out.expander.y + kContentBelowExpander, fieldWidth, kSearchFieldHeight};

    float above = row;
    if (in.searchVisible) {
        above += kSearchPanel;
        if (in.contentRowHeight > 0) above += in.contentRowHeight + kSecondRowGap;
    }
    out.tabPane = below(tabs, above);
    out.softwarePane = in.secondRect;
    out.progressBar = {0, in.surfaceHeight - kProgressHeight, in.surfaceWidth, kProgressHeight};
    return out;
}

}  // namespace varnelo
