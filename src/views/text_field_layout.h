#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "views/glass_constants.h"
#include "views/view_rect.h"

namespace varnelo {

class TextField;

// The brushes of a text field, in the order of kTextFieldColors.
enum class TextFieldBrush : std::size_t {
    Text,
    Caret,
    Border,
    FocusBorder,
    Disabled,
    Spinner,
    Placeholder,
    Selection
};
inline constexpr std::array<Float4, 8> kTextFieldColors = {{{1, 1, 1, 1},
                                                            {1, 1, 1, 1},
                                                            {0.5F, 0.5F, 0.5F, 0.6F},
                                                            {0.7F, 0.7F, 0.9F, 0.8F},
                                                            {0.4F, 0.4F, 0.4F, 0.4F},
                                                            {0.35F, 0.55F, 1, 1},
                                                            {0.8F, 0.8F, 0.8F, 0.45F},
                                                            {0.26F, 0.52F, 0.96F, 0.45F}}};

inline constexpr float kTextFieldFontShare = 0.45F;  // of the field's height
inline constexpr float kTextFieldOutlineWidth = 1;
inline constexpr float kTextFieldCaretWidth = 1.5F;

// Three quarters of a circle. It begins at angle 0, to the right of the centre, and is turned clockwise.
struct SpinnerArc {
    Float2 centre;
    float radius = 0;
    float strokeWidth = 0;
    float turnedDegrees = 0;
};

// An arc of SpinnerArc's length around the origin as cubic curves: a start, then three points for each.
std::array<Float2, 10> spinnerCurves(float radius);

struct CaretLine {
    float x = 0, top = 0, bottom = 0;
};

// What is drawn of a text field, in the order of drawing; pixels of the client area.
struct TextFieldLayout {
    ViewRect outline;  // the blurred rectangle as well
    bool cut = false;  // all below is clipped to `outline`
    TextFieldBrush outlineBrush = TextFieldBrush::Border;
    std::optional<SpinnerArc> spinner;
    ViewRect textBox;                   // all below is clipped to it
    std::optional<ViewRect> selection;  // inside the box
    bool showsPlaceholder = false;
    TextFieldBrush textBrush = TextFieldBrush::Text;
    float textX = 0;  // where the text begins; left of the box when it is scrolled
    std::optional<CaretLine> caret;
};

TextFieldLayout layOutTextField(const TextField& field);

}  // namespace varnelo
