#pragma once

#include <dwrite.h>

#include <string>
#include <vector>

#include "platform/com_ref.h"
#include "views/widget_text_win.h"

namespace varnelo {

class MenuBar;
class WidgetCanvas;

// Draws the menu button and, while it is open, its panel. User-interface thread only.
class MenuBarView {
public:
    // Both must outlive this object.
    MenuBarView(WidgetCanvas& widgetCanvas, MenuBar& menuBar) : canvas(widgetCanvas), menu(menuBar) {}
    MenuBarView(const MenuBarView&) = delete;
    MenuBarView& operator=(const MenuBarView&) = delete;
    ~MenuBarView() { releaseResources(); }

    // The formats for the button's height, after each layout; the menu measures its labels with them from
    // then on. Makes only what is missing.
    void createResources();
    // Before a resize and before the surface's release. draw() makes them again.
    void releaseResources();

    // `toScene`: into the offscreen scene instead of the window. Without that target nothing is drawn.
    void draw(bool toScene);

private:
    float labelWidth(const std::wstring& label);
    void drawPanel();

    WidgetCanvas& canvas;
    MenuBar& menu;
    float formatHeight = 0;  // of the button when the formats were made
    ComRef<IDWriteTextFormat> glyphFormat;
    ComRef<IDWriteTextFormat> itemFormat;
    WidgetText glyph;
    std::vector<WidgetText> labels;  // by row
};

}  // namespace varnelo
