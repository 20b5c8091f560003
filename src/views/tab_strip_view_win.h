#pragma once

#include <dwrite.h>

#include <vector>

#include "platform/com_ref.h"
#include "views/widget_text_win.h"

namespace varnelo {

class TabStrip;
class WidgetCanvas;

// Draws the tabs. User-interface thread only.
class TabStripView {
public:
    // Both must outlive this object.
    TabStripView(WidgetCanvas& widgetCanvas, const TabStrip& tabStrip)
        : canvas(widgetCanvas), strip(tabStrip) {}

    // The format for the strip's height, after each layout. Makes only what is missing.
    void createResources();
    // Before a resize and before the surface's release. draw() makes them again.
    void releaseResources();

    // `toScene`: into the offscreen scene instead of the window. Without that target nothing is drawn.
    void draw(bool toScene);

private:
    WidgetCanvas& canvas;
    const TabStrip& strip;
    float formatHeight = 0;  // of the strip when the format was made
    ComRef<IDWriteTextFormat> labelFormat;
    std::vector<WidgetText> labels;  // by tab
};

}  // namespace varnelo
