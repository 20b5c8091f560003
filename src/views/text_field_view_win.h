#pragma once

#include <d2d1.h>
#include <dwrite.h>

#include <array>

#include "platform/com_ref.h"
#include "views/text_field_layout.h"
#include "views/text_measure_win.h"

namespace varnelo {

class DrawScope;
class TextField;
class WidgetCanvas;

// Draws a text field. User-interface thread only.
class TextFieldView {
public:
    // All of it must outlive this object; `textMeasure` is the one that `textField` measures with.
    TextFieldView(WidgetCanvas& widgetCanvas, TextField& textField, TextMeasureWin& textMeasure)
        : canvas(widgetCanvas), field(textField), measure(textMeasure), placeholder(widgetCanvas) {}

    // Format and brushes for the field's height, so that it measures from then on; after each layout of the
    // field. Makes only what is missing.
    void createResources();
    // Before a resize and before the surface's release. draw() makes them again.
    void releaseResources();

    // `toScene`: into the offscreen scene instead of the window. Without that target nothing is drawn.
    void draw(bool toScene);

private:
    ID2D1Brush* brush(TextFieldBrush which) const { return brushes[static_cast<std::size_t>(which)].get(); }
    void drawSpinner(DrawScope& scope, const SpinnerArc& spinner);
    void drawText(DrawScope& scope, const TextFieldLayout& shown);
    void drawCaret(DrawScope& scope, const CaretLine& caret);

    WidgetCanvas& canvas;
    TextField& field;
    TextMeasureWin& measure;
    TextMeasureWin placeholder;
    float formatHeight = 0;  // of the field when the format was made
    ComRef<IDWriteTextFormat> format;
    std::array<ComRef<ID2D1SolidColorBrush>, 8> brushes;  // by TextFieldBrush
    float spinnerRadius = 0;                              // of the geometry
    ComRef<ID2D1PathGeometry> spinnerGeometry;
};

}  // namespace varnelo
