#pragma once

#include "views/view_rect.h"

namespace varnelo {

// A bar that divides an area in two, with a second part that folds away when the bar comes close to the far
// edge. Pixels of the client area; ratios are the first part's share. User-interface thread only.
class Splitter {
public:
    // The bar as a column, between a left and a right part, or as a row.
    enum class Bar { Column, Row };

    explicit Splitter(Bar direction = Bar::Column) : bar(direction) {}

    static constexpr float kMinRatio = 0.5F;
    static constexpr float kMaxRatio = 1;
    static constexpr float kBarWidth = 4;
    static constexpr float kHideThreshold = 0.98F;  // from here on the second part is hidden
    static constexpr float kEaseRate = 8;           // per second
    static constexpr float kHiddenReach = 10;  // how much wider the bar is to the mouse while it is alone

    void setArea(const ViewRect& area);

    // A ratio that was saved, clamped. 0 means that none was, and changes nothing.
    void restore(float savedRatio);

    // Cuts the second part to `secondSize`, at once: the way back from a pane that snapped to its columns.
    void snapSecondPart(float secondSize);

    bool hitBar(float x, float y) const;

    // A drag follows the cursor. Without beginDrag() the other two do nothing.
    void beginDrag();
    void dragTo(float x, float y);
    // Beyond the threshold the second part goes on to fold away by itself.
    void endDrag();

    // Eases a fold that is under way by `seconds`. True while another frame is needed; then and at its end
    // the rectangles are those of the new place.
    bool advance(float seconds);

    Bar direction() const { return bar; }
    const ViewRect& area() const { return whole; }
    const ViewRect& firstRect() const { return first; }
    const ViewRect& secondRect() const { return second; }
    const ViewRect& barRect() const { return strip; }
    float ratio() const { return wanted; }
    float displayRatio() const { return shown; }
    float restoreRatio() const { return remembered; }
    bool isDragging() const { return dragging; }
    bool isAnimating() const { return animating; }
    bool softwareHidden() const { return hidden; }

    bool hovered = false;

private:
    void place(float newRatio);
    void layOut();

    const Bar bar;
    ViewRect whole, first, second, strip;
    float wanted = 0.7F;
    float shown = 0.7F;
    float remembered = 0.7F;  // the last ratio with both parts in sight
    bool dragging = false;
    bool animating = false;
    bool hidden = false;
};

}  // namespace varnelo
