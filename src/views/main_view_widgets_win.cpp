#include "views/main_view_widgets_win.h"

#include "views/base_view_win.h"
#include "views/glass_constants.h"
#include "views/render_surface_win.h"

namespace varnelo {

namespace {

const BlurTint& barTint(const Splitter& splitter) {
    if (splitter.isDragging()) return kSplitterBarDraggedTint;
    return splitter.hovered ? kSplitterBarHoveredTint : kSplitterBarTint;
}

std::uint32_t ticks() { return GetTickCount(); }

}  // namespace

MainViewWidgets::MainViewWidgets(RenderSurface& surface, BaseView& base, const LanguageTable& language)
    : canvas(surface, base),
      clipboard(surface.hWnd),
      editMenu(surface.hWnd, language),
      searchPanel(surface.input, {surface.input, nameMeasure, clipboard, editMenu, ticks},
                  {surface.input, contentMeasure, clipboard, editMenu, ticks}) {}

void MainViewWidgets::place(const ViewLayout& layout) {
    menuBar.place(layout.menuButton.x, layout.menuButton.y, layout.menuButton.h);
    tabStrip.place(layout.tabStrip);
    progressBar.rect = layout.progressBar;
    searchPanel.place(layout);
    menuView.createResources();
    tabView.createResources();
    progressView.createResources();
    searchView.createResources();
}

void MainViewWidgets::draw(const Splitter& splitter, bool withSearch, bool toScene) {
    drawSplitter(splitter, toScene);
    progressView.draw(toScene);
    tabView.draw(toScene);
    if (withSearch) searchView.draw(toScene);
    menuView.draw(toScene);
}

void MainViewWidgets::drawSplitter(const Splitter& splitter, bool toScene) {
    if (!canvas.target(toScene)) return;
    canvas.blur(splitter.barRect(), barTint(splitter));
    if (splitter.softwareHidden()) arrowView.draw(splitter.barRect(), toScene);
}

void MainViewWidgets::releaseTargets() {
    menuView.releaseResources();
    tabView.releaseResources();
    searchView.releaseResources();
    progressView.releaseResources();
    arrowView.releaseResources();
}

void MainViewWidgets::release() {
    releaseTargets();
    canvas.release();
}

}  // namespace varnelo
