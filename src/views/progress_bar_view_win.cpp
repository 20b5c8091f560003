#include "views/progress_bar_view_win.h"

#include "views/widget_canvas_win.h"

namespace varnelo {

void ProgressBarView::createResources() {
    if (format && formatHeight == bar.rect.h) return;
    releaseResources();
    format = canvas.makeFormat(ProgressBar::kFontShare * bar.rect.h, DWRITE_TEXT_ALIGNMENT_CENTER);
    canvas.endInEllipsis(format.get());
    formatHeight = bar.rect.h;
}

void ProgressBarView::releaseResources() {
    label.release();
    format.reset();
}

void ProgressBarView::draw(bool toScene) {
    if (!canvas.target(toScene)) return;
    bar.read(content);
    if (!content.shows) return;
    createResources();
    canvas.blur(bar.rect, kProgressTrackTint);
    if (content.fill) canvas.blur(*content.fill, kProgressFillTint);
    label.add(canvas, content.label, format.get(), bar.rect,
              {ProgressBar::kShadowShift, ProgressBar::kShadowOpacity});
    canvas.quads.flush();
}

}  // namespace varnelo
