#pragma once

#include <dwrite.h>

#include "platform/com_ref.h"
#include "views/progress_bar.h"
#include "views/widget_text_win.h"

namespace varnelo {

class WidgetCanvas;

// Draws the progress bar while there is progress to show. User-interface thread only.
class ProgressBarView {
public:
    // Both must outlive this object.
    ProgressBarView(WidgetCanvas& widgetCanvas, const ProgressBar& progressBar)
        : canvas(widgetCanvas), bar(progressBar) {}

    // The format for the bar's height, after each layout. Makes only what is missing.
    void createResources();
    // Before a resize and before the surface's release. draw() makes them again.
    void releaseResources();

    // `toScene`: into the offscreen scene instead of the window. Without that target nothing is drawn.
    void draw(bool toScene);

private:
    WidgetCanvas& canvas;
    const ProgressBar& bar;
    ProgressBar::Content content;
    float formatHeight = 0;  // of the bar when the format was made
    ComRef<IDWriteTextFormat> format;
    WidgetText label;
};

}  // namespace varnelo
