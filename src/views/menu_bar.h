#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "views/view_rect.h"

namespace varnelo {

// The menu button and the panel of rows that drops down from it. User-interface thread only.
class MenuBar {
public:
    struct Item {
        std::wstring label;
        std::function<void()> run;
    };
    // Pixel width of a row's label.
    using LabelWidth = std::function<float(const std::wstring&)>;

    static constexpr wchar_t kGlyph[] = L"\u2630";
    static constexpr float kGlyphFontShare = 0.6F;    // of the button's height
    static constexpr float kGlyphShadowShift = 0.5F;  // pixels right and down
    static constexpr float kGlyphShadowOpacity = 0.5F;
    static constexpr float kRowFontShare = 0.4F;
    static constexpr float kLabelInset = 10;   // pixels, left of a row's label
    static constexpr float kPanelMargin = 20;  // pixels wider than the widest label

    // The button is a square of `height`, which is also the height of a row.
    void place(float x, float y, float height);

    void addItem(std::wstring label, std::function<void()> run);
    // After a change of language.
    void setLabel(std::size_t index, std::wstring label);
    // How labels are measured from now on; nothing while there is no font.
    void measureWith(LabelWidth width);

    // Whether the point lies on a row of the open panel, and on which.
    bool hitRow(float x, float y, std::int32_t& row) const;
    // Updates what is under the cursor. True when it is a row.
    bool onMouseMove(float x, float y);

    bool panelShows() const { return open && !items.empty(); }
    ViewRect panelRect() const;
    ViewRect rowRect(std::size_t row) const;
    // Where a row's label lies: from its inset to the panel's right edge.
    ViewRect labelRect(std::size_t row) const;

    ViewRect rect;  // the button
    bool open = false;
    bool hovered = false;
    std::int32_t hotRow = -1;  // the row under the cursor, -1 for none
    float rowHeight = 0;
    float panelWidth = kPanelMargin;
    std::vector<Item> items;  // change them by the operations above

private:
    void updatePanelWidth();

    LabelWidth labelWidth;
};

}  // namespace varnelo
