#include "views/search_panel_view_win.h"

#include "views/search_panel.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

namespace {

constexpr float kExpanderFontSize = 12;
// A dark copy beside the text keeps it readable over any wallpaper.
constexpr WidgetShadow kExpanderShadow{1, 0.75F};

}  // namespace

SearchPanelView::SearchPanelView(WidgetCanvas& widgetCanvas, SearchPanel& searchPanel,
                                 TextMeasureWin& nameMeasure, TextMeasureWin& contentMeasure)
    : canvas(widgetCanvas),
      panel(searchPanel),
      nameView(widgetCanvas, searchPanel.nameField, nameMeasure),
      contentView(widgetCanvas, searchPanel.contentField, contentMeasure) {}

void SearchPanelView::createResources() {
    nameView.createResources();
    contentView.createResources();
    if (!expanderFormat) expanderFormat = canvas.makeFormat(kExpanderFontSize, DWRITE_TEXT_ALIGNMENT_LEADING);
}

void SearchPanelView::releaseResources() {
    expanderLabel.release();
    expanderFormat.reset();
    contentView.releaseResources();
    nameView.releaseResources();
}

void SearchPanelView::draw(bool toScene) {
    if (!canvas.target(toScene)) return;
    createResources();
    nameView.draw(toScene);
    drawExpander();
    if (panel.contentShows()) contentView.draw(toScene);
}

void SearchPanelView::drawExpander() {
    expanderLabel.add(canvas, panel.expanderText(), expanderFormat.get(), panel.expanderRect(),
                      kExpanderShadow);
    canvas.quads.flush();
}

}  // namespace varnelo
