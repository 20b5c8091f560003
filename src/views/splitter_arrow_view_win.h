#pragma once

#include <d2d1.h>

#include "platform/com_ref.h"
#include "views/view_rect.h"

namespace varnelo {

class WidgetCanvas;

// Draws the arrow on the splitter's bar. User-interface thread only.
class SplitterArrowView {
public:
    // `widgetCanvas` must outlive this object.
    explicit SplitterArrowView(WidgetCanvas& widgetCanvas) : canvas(widgetCanvas) {}

    // Makes only what is missing.
    void createResources();
    // Before a resize and before the surface's release. draw() makes them again.
    void releaseResources();

    // In the middle of `bar`. `toScene`: into the offscreen scene instead of the window. Without that target
    // nothing is drawn.
    void draw(const ViewRect& bar, bool toScene);

private:
    WidgetCanvas& canvas;
    ComRef<ID2D1SolidColorBrush> brush;
    ComRef<ID2D1PathGeometry> geometry;
};

}  // namespace varnelo
