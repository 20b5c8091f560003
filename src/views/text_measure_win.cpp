#include "views/text_measure_win.h"

#include "views/widget_canvas_win.h"

namespace varnelo {

namespace {

// Without wrapping and from the left the width has no say.
constexpr float kBoxWidth = 100000;

}  // namespace

void TextMeasureWin::setFormat(IDWriteTextFormat* newFormat, float boxHeight) {
    format = ComRef<IDWriteTextFormat>(newFormat);
    height = boxHeight;
    laidOut = false;
    layout.reset();
}

std::span<const float> TextMeasureWin::prefixWidths(std::wstring_view text) {
    layOut(text);
    return widths;
}

IDWriteTextLayout* TextMeasureWin::layoutOf(std::wstring_view text) {
    layOut(text);
    return layout.get();
}

void TextMeasureWin::layOut(std::wstring_view text) {
    if (laidOut && laidOutText == text) return;
    laidOut = true;
    laidOutText = text;
    // The new layout is made while the old one lives: a text engine may forget a font's glyphs with the last
    // layout that uses them.
    layout = canvas.layOut(laidOutText, format.get(), kBoxWidth, height);
    widths.assign(laidOutText.size() + 1, 0.0F);
    if (layout) measureClusters();
}

// A cluster is what stands together: a character with its marks, or a ligature, whose width is shared out
// among its units.
void TextMeasureWin::measureClusters() {
    UINT32 count = 0;
    layout->GetClusterMetrics(nullptr, 0, &count);
    std::vector<DWRITE_CLUSTER_METRICS> clusters(count);
    if (count == 0 || FAILED(layout->GetClusterMetrics(clusters.data(), count, &count))) return;
    float total = 0;
    std::size_t unit = 0;
    for (const DWRITE_CLUSTER_METRICS& cluster : clusters) {
        const float share = cluster.length > 0 ? cluster.width / static_cast<float>(cluster.length) : 0;
        for (std::size_t i = 1; i < cluster.length && unit + i < widths.size(); ++i) {
            widths[unit + i] = total + share * static_cast<float>(i);
        }
        unit += cluster.length;
        total += cluster.width;
        if (unit < widths.size()) widths[unit] = total;
    }
    while (++unit < widths.size()) widths[unit] = total;
}

}  // namespace varnelo
