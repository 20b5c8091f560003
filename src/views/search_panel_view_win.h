#pragma once

#include <dwrite.h>

#include "platform/com_ref.h"
#include "views/text_field_view_win.h"
#include "views/text_measure_win.h"
#include "views/widget_text_win.h"

namespace varnelo {

class SearchPanel;
class WidgetCanvas;

// Draws the search panel. User-interface thread only.
class SearchPanelView {
public:
    // All of it must outlive this object; the measures are those that the panel's fields measure with.
    SearchPanelView(WidgetCanvas& widgetCanvas, SearchPanel& searchPanel, TextMeasureWin& nameMeasure,
                    TextMeasureWin& contentMeasure);

    // Formats and brushes, after each layout. Makes only what is missing.
    void createResources();
    // Before a resize and before the surface's release. draw() makes them again.
    void releaseResources();
    // `toScene`: into the offscreen scene instead of the window. Without that target nothing is drawn.
    void draw(bool toScene);

private:
    void drawExpander();

    WidgetCanvas& canvas;
    SearchPanel& panel;
    TextFieldView nameView;
    TextFieldView contentView;
    ComRef<IDWriteTextFormat> expanderFormat;
    WidgetText expanderLabel;
};

}  // namespace varnelo
