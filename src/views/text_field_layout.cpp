#include "views/text_field_layout.h"

#include <algorithm>
#include <span>

#include "views/text_field.h"
#include "views/text_measure.h"

namespace varnelo {

namespace {

// Shares of the height that shows.
constexpr float kSpinnerCentre = 0.5F;
constexpr float kSpinnerRadius = 0.3F;
constexpr float kSpinnerStroke = 0.08F;
constexpr float kSelectionTop = 0.1F;
constexpr float kSelectionBottom = 0.9F;
constexpr float kCaretTop = 0.15F;
constexpr float kCaretBottom = 0.85F;

// How far the inner points of a quarter of a circle lie from its ends, in radii.
constexpr float kQuarter = 0.55228475F;

TextFieldBrush outlineBrushOf(const TextField& field) {
    if (!field.enabled) return TextFieldBrush::Disabled;
    return field.focused() ? TextFieldBrush::FocusBorder : TextFieldBrush::Border;
}

TextFieldBrush textBrushOf(const TextField& field) {
    if (field.text().empty()) return TextFieldBrush::Placeholder;
    return field.enabled ? TextFieldBrush::Text : TextFieldBrush::Disabled;
}

}  // namespace

std::array<Float2, 10> spinnerCurves(float radius) {
    const float r = radius;
    const float k = kQuarter * radius;
    return {{{r, 0}, {r, k}, {k, r}, {0, r}, {-k, r}, {-r, k}, {-r, 0}, {-r, -k}, {-k, -r}, {0, -r}}};
}

TextFieldLayout layOutTextField(const TextField& field) {
    const ViewRect& area = field.rect();
    const float h = field.shownHeight();
    const std::span<const float> widths = field.measure().prefixWidths(field.text());
    const auto widthTo = [&](std::int32_t place) { return widths[static_cast<std::size_t>(place)]; };

    TextFieldLayout layout;
    layout.outline = {area.x, area.y, area.w, h};
    layout.cut = h < area.h;
    layout.outlineBrush = outlineBrushOf(field);
    if (field.busy) {
        layout.spinner = SpinnerArc{{area.right() - kSpinnerCentre * h, area.y + kSpinnerCentre * h},
                                    kSpinnerRadius * h,
                                    kSpinnerStroke * h,
                                    field.spinnerAngle()};
    }
    layout.textBox = {area.x + field.padding(), area.y, field.boxWidth(), h};
    layout.textX = layout.textBox.x - field.scrollX();
    layout.showsPlaceholder = field.text().empty();
    layout.textBrush = textBrushOf(field);

    if (field.focused() && field.hasSelection()) {
        const auto [first, last] = std::minmax({field.selectionStart(), field.selectionEnd()});
        const ViewRect& box = layout.textBox;
        const float left = std::clamp(layout.textX + widthTo(first), box.x, box.right());
        const float right = std::clamp(layout.textX + widthTo(last), box.x, box.right());
        layout.selection =
            ViewRect{left, area.y + kSelectionTop * h, right - left, (kSelectionBottom - kSelectionTop) * h};
    }
    if (field.focused() && field.caretVisible()) {
        layout.caret = CaretLine{layout.textX + widthTo(field.caret()), area.y + kCaretTop * h,
                                 area.y + kCaretBottom * h};
    }
    return layout;
}

}  // namespace varnelo
