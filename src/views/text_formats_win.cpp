#include "views/text_formats_win.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "views/font_family_win.h"
#include "views/label_fit.h"

namespace varnelo {

namespace {

struct FormatRow {
    float size;
    DWRITE_FONT_WEIGHT weight;
    DWRITE_TEXT_ALIGNMENT textAlignment;
    DWRITE_WORD_WRAPPING wrapping;
};

constexpr FormatRow kLabelRow{TextFormats::kLabelSize, DWRITE_FONT_WEIGHT_NORMAL,
                              DWRITE_TEXT_ALIGNMENT_CENTER, DWRITE_WORD_WRAPPING_WRAP};
constexpr FormatRow kHeaderRow{TextFormats::kHeaderSize, DWRITE_FONT_WEIGHT_SEMI_BOLD,
                               DWRITE_TEXT_ALIGNMENT_LEADING, DWRITE_WORD_WRAPPING_NO_WRAP};

ComRef<IDWriteTextFormat> createFormat(IDWriteFactory* factory, const std::wstring& family,
                                       const FormatRow& row) {
    ComRef<IDWriteTextFormat> format;
    if (FAILED(factory->CreateTextFormat(family.c_str(), nullptr, row.weight, DWRITE_FONT_STYLE_NORMAL,
                                         DWRITE_FONT_STRETCH_NORMAL, row.size, L"", format.put()))) {
        return {};
    }
    format->SetTextAlignment(row.textAlignment);
    format->SetParagraphAlignment(DWRITE_PARAGRAPH_ALIGNMENT_NEAR);
    format->SetWordWrapping(row.wrapping);
    return format;
}

ComRef<IDWriteTextLayout> createLayout(IDWriteFactory* factory, IDWriteTextFormat* format,
                                       const std::wstring& text, float width, float height,
                                       std::uint64_t& layoutsMade) {
    ComRef<IDWriteTextLayout> layout;
    if (!factory || !format) return layout;
    if (FAILED(factory->CreateTextLayout(text.data(), static_cast<UINT32>(text.size()), format, width, height,
                                         layout.put()))) {
        return {};
    }
    ++layoutsMade;
    return layout;
}

std::vector<DWRITE_LINE_METRICS> linesOf(IDWriteTextLayout& layout) {
    UINT32 count = 0;
    layout.GetLineMetrics(nullptr, 0, &count);
    std::vector<DWRITE_LINE_METRICS> lines(count);
    if (count == 0 || FAILED(layout.GetLineMetrics(lines.data(), count, &count))) lines.clear();
    return lines;
}

std::vector<TextCluster> clustersOf(IDWriteTextLayout& layout) {
    UINT32 count = 0;
    layout.GetClusterMetrics(nullptr, 0, &count);
    std::vector<DWRITE_CLUSTER_METRICS> metrics(count);
    if (count == 0 || FAILED(layout.GetClusterMetrics(metrics.data(), count, &count))) return {};
    std::vector<TextCluster> clusters;
    clusters.reserve(count);
    for (const DWRITE_CLUSTER_METRICS& m : metrics) {
        clusters.push_back(
            {m.length, m.width, m.canWrapLineAfter != 0, m.isNewline != 0, m.isWhitespace != 0});
    }
    return clusters;
}

// Whether the engine shortened the text where the box ends. Some trim only a text of one line, or leave a
// long word on the first line though there is room for more.
bool trimmedToBox(const std::vector<DWRITE_LINE_METRICS>& lines, float height) {
    float bottom = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        bottom += lines[i].height;
        if (bottom > height) return i > 0 && lines[i - 1].isTrimmed;
        if (lines[i].isTrimmed && bottom + lines[i].height <= height) return false;
    }
    return true;
}

float computeLineHeight(IDWriteTextFormat* format) {
    ComRef<IDWriteFontCollection> fonts;
    ComRef<IDWriteFontFamily> family;
    ComRef<IDWriteFont> font;
    if (FAILED(format->GetFontCollection(fonts.put())) || !fonts || fonts->GetFontFamilyCount() == 0 ||
        FAILED(fonts->GetFontFamily(0, family.put())) || FAILED(family->GetFont(0, font.put()))) {
        return 0;
    }
    DWRITE_FONT_METRICS metrics{};
    font->GetMetrics(&metrics);
    if (metrics.designUnitsPerEm == 0) return 0;
    return static_cast<float>(metrics.ascent + metrics.descent + metrics.lineGap) * format->GetFontSize() /
           static_cast<float>(metrics.designUnitsPerEm);
}

}  // namespace

float lineHeightOf(IDWriteTextFormat* format) {
    static float cachedSize = 0;
    static float cachedHeight = 0;
    if (!format) return 0;
    const float size = format->GetFontSize();
    if (size != cachedSize) {
        cachedHeight = computeLineHeight(format);
        // A collection that tells nothing: what a font usually has.
        if (!(cachedHeight > 0)) cachedHeight = 1.33F * size;
        cachedSize = size;
    }
    return cachedHeight;
}

bool TextFormats::create(IDWriteFactory* factory, const wchar_t* family) {
    release();
    if (!factory) return false;
    dwriteFactory = ComRef<IDWriteFactory>(factory);
    const std::wstring available = availableFamily(factory, family);
    labelFormat = createFormat(factory, available, kLabelRow);
    headerFormat = createFormat(factory, available, kHeaderRow);
    if (labelFormat) factory->CreateEllipsisTrimmingSign(labelFormat.get(), ellipsisSign.put());
    return labelFormat && headerFormat && ellipsisSign;
}

void TextFormats::release() {
    ellipsisSign.reset();
    headerFormat.reset();
    labelFormat.reset();
    dwriteFactory.reset();
}

float TextFormats::labelBoxHeight() const { return kLabelLines * lineHeightOf(labelFormat.get()); }

ComRef<IDWriteTextLayout> TextFormats::layOutLabel(const std::wstring& text, float width,
                                                   std::uint64_t& layoutsMade) const {
    const float height = labelBoxHeight();
    ComRef<IDWriteTextLayout> layout =
        createLayout(dwriteFactory.get(), labelFormat.get(), text, width, height, layoutsMade);
    if (!layout) return layout;
    const DWRITE_TRIMMING trimming{DWRITE_TRIMMING_GRANULARITY_CHARACTER, 0, 0};
    layout->SetTrimming(&trimming, ellipsisSign.get());
    if (trimmedToBox(linesOf(*layout), height)) return layout;

    const std::wstring shortened = fitted(*layout, text, width, height, layoutsMade);
    return createLayout(dwriteFactory.get(), labelFormat.get(), shortened, width, height, layoutsMade);
}

// The lines of the box's height, broken and cut here because the engine did not.
std::wstring TextFormats::fitted(IDWriteTextLayout& layout, const std::wstring& text, float width,
                                 float height, std::uint64_t& layoutsMade) const {
    const DWRITE_TRIMMING none{DWRITE_TRIMMING_GRANULARITY_NONE, 0, 0};
    layout.SetTrimming(&none, nullptr);
    float lineHeight = 1;
    for (const DWRITE_LINE_METRICS& line : linesOf(layout)) lineHeight = std::max(lineHeight, line.height);
    const float lines = std::max(1.0F, std::floor(height / lineHeight));

    DWRITE_TEXT_METRICS dots{};
    const ComRef<IDWriteTextLayout> dotsLayout = createLayout(
        dwriteFactory.get(), labelFormat.get(), std::wstring(1, kEllipsis), width, height, layoutsMade);
    if (dotsLayout) dotsLayout->GetMetrics(&dots);
    return fitToLines(text, clustersOf(layout), width, static_cast<std::size_t>(lines), dots.width);
}

ComRef<IDWriteTextLayout> TextFormats::layOutHeader(const std::wstring& text, float width, float height,
                                                    std::uint64_t& layoutsMade) const {
    return createLayout(dwriteFactory.get(), headerFormat.get(), text, std::max(width, 0.0F), height,
                        layoutsMade);
}

}  // namespace varnelo
