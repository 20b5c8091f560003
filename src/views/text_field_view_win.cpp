#include "views/text_field_view_win.h"

#include "views/text_field.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

void TextFieldView::createResources() {
    const float height = field.rect().h;
    if (!format || formatHeight != height) {
        format = canvas.makeFormat(kTextFieldFontShare * height, DWRITE_TEXT_ALIGNMENT_LEADING);
        formatHeight = height;
        measure.setFormat(format.get(), height);
        placeholder.setFormat(format.get(), height);
    }
    for (std::size_t i = 0; i < brushes.size(); ++i) {
        if (!brushes[i]) brushes[i] = canvas.makeBrush(kTextFieldColors[i]);
    }
}

void TextFieldView::releaseResources() {
    spinnerGeometry.reset();
    spinnerRadius = 0;
    for (auto& each : brushes) each.reset();
    measure.setFormat(nullptr, 0);
    placeholder.setFormat(nullptr, 0);
    format.reset();
}

void TextFieldView::draw(bool toScene) {
    ID2D1RenderTarget* const target = canvas.target(toScene);
    if (!target) return;
    createResources();
    const TextFieldLayout shown = layOutTextField(field);
    canvas.blur(shown.outline, kTextFieldTint);

    DrawScope scope(*target);
    if (shown.cut) scope.clip(shown.outline);
    if (ID2D1Brush* const outline = brush(shown.outlineBrush)) {
        const D2D1_RECT_F edges = edgesOf(shown.outline);
        scope->DrawRectangle(&edges, outline, kTextFieldOutlineWidth, nullptr);
    }
    if (shown.spinner) drawSpinner(scope, *shown.spinner);
    scope.clip(shown.textBox);
    drawText(scope, shown);
    if (shown.caret) drawCaret(scope, *shown.caret);
    scope.unclip();
    if (shown.cut) scope.unclip();
}

void TextFieldView::drawSpinner(DrawScope& scope, const SpinnerArc& spinner) {
    if (!spinnerGeometry || spinnerRadius != spinner.radius) {
        const auto points = spinnerCurves(spinner.radius);
        spinnerGeometry = canvas.makeGeometry(points.data(), points.size(), WidgetCanvas::Shape::Curves);
        spinnerRadius = spinner.radius;
    }
    ID2D1Brush* const arc = brush(TextFieldBrush::Spinner);
    if (!spinnerGeometry || !arc) return;
    scope.transform(spinner.centre, spinner.turnedDegrees);
    scope->DrawGeometry(spinnerGeometry.get(), arc, spinner.strokeWidth, nullptr);
    scope.resetTransform();
}

void TextFieldView::drawText(DrawScope& scope, const TextFieldLayout& shown) {
    ID2D1Brush* const plate = brush(TextFieldBrush::Selection);
    if (shown.selection && plate) {
        const D2D1_RECT_F edges = edgesOf(*shown.selection);
        scope->FillRectangle(&edges, plate);
    }
    IDWriteTextLayout* const text =
        shown.showsPlaceholder ? placeholder.layoutOf(field.placeholder) : measure.layoutOf(field.text());
    ID2D1Brush* const ink = brush(shown.textBrush);
    if (!text || !ink) return;
    // The line stands in the middle of the field's full height; of a cut field it is the middle of what
    // shows.
    const float y = shown.outline.y + (shown.outline.h - formatHeight) / 2;
    scope->DrawTextLayout({shown.textX, y}, text, ink, D2D1_DRAW_TEXT_OPTIONS_NONE);
}

void TextFieldView::drawCaret(DrawScope& scope, const CaretLine& caret) {
    ID2D1Brush* const line = brush(TextFieldBrush::Caret);
    if (!line) return;
    scope->DrawLine({caret.x, caret.top}, {caret.x, caret.bottom}, line, kTextFieldCaretWidth, nullptr);
}

}  // namespace varnelo
