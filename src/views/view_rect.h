#pragma once

namespace varnelo {

// A rectangle in pixels of the client area, y downwards.
struct ViewRect {
    float x = 0;
    float y = 0;
    float w = 0;
    float h = 0;

    float right() const { return x + w; }
    float bottom() const { return y + h; }

    // All four edges belong to the rectangle.
    bool contains(float px, float py) const { return px >= x && px <= right() && py >= y && py <= bottom(); }

    bool operator==(const ViewRect&) const = default;
};

}  // namespace varnelo
