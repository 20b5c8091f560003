#include "views/tab_strip_view_win.h"

#include "views/tab_strip.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

void TabStripView::createResources() {
    if (labelFormat && formatHeight == strip.height()) return;
    releaseResources();
    labelFormat = canvas.makeFormat(TabStrip::kFontShare * strip.height(), DWRITE_TEXT_ALIGNMENT_CENTER);
    canvas.endInEllipsis(labelFormat.get());
    formatHeight = strip.height();
}

void TabStripView::releaseResources() {
    labels.clear();
    labelFormat.reset();
}

void TabStripView::draw(bool toScene) {
    if (!canvas.target(toScene)) return;
    createResources();
    labels.resize(strip.tabs.size());
    for (std::size_t i = 0; i < strip.tabs.size(); ++i) {
        canvas.blur(strip.tabs[i].rect, strip.tint(i));
        // The dark copy lies under the white one and shows only in the edges of the glyphs.
        labels[i].add(canvas, strip.tabs[i].label, labelFormat.get(), strip.tabs[i].rect,
                      {0, TabStrip::kShadowOpacity});
    }
    canvas.quads.flush();
}

}  // namespace varnelo
