#pragma once

#include <windows.h>

#include "views/clipboard_text_win.h"
#include "views/edit_menu_win.h"
#include "views/menu_bar.h"
#include "views/menu_bar_view_win.h"
#include "views/progress_bar.h"
#include "views/progress_bar_view_win.h"
#include "views/search_panel.h"
#include "views/search_panel_view_win.h"
#include "views/splitter.h"
#include "views/splitter_arrow_view_win.h"
#include "views/tab_strip.h"
#include "views/tab_strip_view_win.h"
#include "views/text_measure_win.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

class BaseView;
class LanguageTable;
class RenderSurface;

// All of a view that is no icon: what it is made of, and how it is drawn. User-interface thread only.
class MainViewWidgets {
public:
    // All of it must outlive this object.
    MainViewWidgets(RenderSurface& surface, BaseView& base, const LanguageTable& language);

    // After the surface's initialisation; release() before the device goes.
    void init() { canvas.init(); }
    void release();
    // Before a resize.
    void releaseTargets();

    // Lays out menu, tabs, search panel and progress bar, and makes the fonts for their heights.
    void place(const ViewLayout& layout);

    // In the order in which they lie on each other, from the bottom: the splitter's bar, progress bar, tabs,
    // search panel when it is `withSearch`, menu. `toScene`: into the offscreen scene instead of the window.
    void draw(const Splitter& splitter, bool withSearch, bool toScene);

    const WidgetStatistics& made() const { return canvas.made; }

private:
    void drawSplitter(const Splitter& splitter, bool toScene);

    WidgetCanvas canvas;
    SystemClipboardText clipboard;
    PopupEditMenu editMenu;
    TextMeasureWin nameMeasure{canvas};
    TextMeasureWin contentMeasure{canvas};

public:
    MenuBar menuBar;
    TabStrip tabStrip;
    SearchPanel searchPanel;
    ProgressBar progressBar;

private:
    MenuBarView menuView{canvas, menuBar};
    TabStripView tabView{canvas, tabStrip};
    SearchPanelView searchView{canvas, searchPanel, nameMeasure, contentMeasure};
    ProgressBarView progressView{canvas, progressBar};
    SplitterArrowView arrowView{canvas};
};

}  // namespace varnelo
