#pragma once

#include <dwrite.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/com_ref.h"
#include "views/text_measure.h"

namespace varnelo {

class WidgetCanvas;

// Measures with DirectWrite, and keeps the layout for drawing: what is measured is what is drawn. One text at
// a time; another one is laid out anew.
class TextMeasureWin final : public TextMeasure {
public:
    // `widgetCanvas` must outlive this object.
    explicit TextMeasureWin(WidgetCanvas& widgetCanvas) : canvas(widgetCanvas) {}

    // The font, and the height of the box in whose middle the line stands. Null: no font.
    void setFormat(IDWriteTextFormat* newFormat, float boxHeight);

    std::span<const float> prefixWidths(std::wstring_view text) override;

    // Null without a font. Valid until another text or format comes.
    IDWriteTextLayout* layoutOf(std::wstring_view text);

private:
    void layOut(std::wstring_view text);
    void measureClusters();

    WidgetCanvas& canvas;
    ComRef<IDWriteTextFormat> format;
    float height = 0;

    bool laidOut = false;  // what follows is of `laidOutText`
    std::wstring laidOutText;
    ComRef<IDWriteTextLayout> layout;
    std::vector<float> widths;
};

}  // namespace varnelo
