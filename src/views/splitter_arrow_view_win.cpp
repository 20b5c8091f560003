#include "views/splitter_arrow_view_win.h"

#include "views/splitter_arrow.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

void SplitterArrowView::createResources() {
    if (!brush) brush = canvas.makeBrush(kSplitterArrowColor);
    if (!geometry) {
        geometry =
            canvas.makeGeometry(kSplitterArrow.data(), kSplitterArrow.size(), WidgetCanvas::Shape::Filled);
    }
}

void SplitterArrowView::releaseResources() {
    geometry.reset();
    brush.reset();
}

void SplitterArrowView::draw(const ViewRect& bar, bool toScene) {
    ID2D1RenderTarget* const target = canvas.target(toScene);
    if (!target) return;
    createResources();
    if (!brush || !geometry) return;
    DrawScope scope(*target);
    scope.transform(splitterArrowCentre(bar), 0);
    scope->FillGeometry(geometry.get(), brush.get(), nullptr);
    scope.resetTransform();
}

}  // namespace varnelo
