#include "views/widget_canvas_win.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "views/base_view_win.h"
#include "views/font_family_win.h"
#include "views/render_surface_win.h"

namespace varnelo {

namespace {

constexpr float kPixelDpi = 96;

// What a text engine takes for the end of a line.
bool breaksLine(wchar_t unit) {
    return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

void addCurves(ID2D1GeometrySink& sink, const Float2* points, std::uint32_t count) {
    for (std::uint32_t i = 0; i + 2 < count; i += 3) {
        const Float2* p = points + i;
        sink.AddBezier(D2D1_BEZIER_SEGMENT{{p[0].x, p[0].y}, {p[1].x, p[1].y}, {p[2].x, p[2].y}});
    }
}

}  // namespace

WidgetCanvas::WidgetCanvas(RenderSurface& surface, BaseView& base)
    : render(surface), quads(surface), baseView(base) {}

void WidgetCanvas::init() {
    quads.init();
    if (render.dwriteFactory) family = availableFamily(render.dwriteFactory.get(), L"Segoe UI");
}

void WidgetCanvas::release() { quads.release(); }

ID2D1RenderTarget* WidgetCanvas::target(bool toScene) const {
    return toScene ? render.sceneD2DRT.get() : render.d2dRT.get();
}

void WidgetCanvas::blur(const ViewRect& rect, const BlurTint& tint) {
    const ScissorEdges edges = paneScissor(rect);
    baseView.drawBlurRect({edges.left, edges.top, edges.right, edges.bottom}, render.backgroundSRV.get(),
                          tint);
}

ComRef<IDWriteTextFormat> WidgetCanvas::makeFormat(float size, DWRITE_TEXT_ALIGNMENT alignment) {
    ComRef<IDWriteTextFormat> format;
    if (!render.dwriteFactory || family.empty() || !(size > 0) ||
        FAILED(render.dwriteFactory->CreateTextFormat(family.c_str(), nullptr, DWRITE_FONT_WEIGHT_NORMAL,
                                                      DWRITE_FONT_STYLE_NORMAL, DWRITE_FONT_STRETCH_NORMAL,
                                                      size, L"", format.put()))) {
        return {};
    }
    format->SetTextAlignment(alignment);
    format->SetParagraphAlignment(DWRITE_PARAGRAPH_ALIGNMENT_CENTER);
    format->SetWordWrapping(DWRITE_WORD_WRAPPING_NO_WRAP);
    ++made.formats;
    return format;
}

void WidgetCanvas::endInEllipsis(IDWriteTextFormat* format) {
    ComRef<IDWriteInlineObject> sign;
    if (!format || FAILED(render.dwriteFactory->CreateEllipsisTrimmingSign(format, sign.put()))) return;
    const DWRITE_TRIMMING trimming{DWRITE_TRIMMING_GRANULARITY_CHARACTER, 0, 0};
    format->SetTrimming(&trimming, sign.get());
}

ComRef<IDWriteTextLayout> WidgetCanvas::layOut(std::wstring_view text, IDWriteTextFormat* format, float width,
                                               float height) {
    ComRef<IDWriteTextLayout> layout;
    if (!render.dwriteFactory || !format) return layout;
    const std::wstring line = onOneLine(text);
    if (FAILED(render.dwriteFactory->CreateTextLayout(line.data(), static_cast<UINT32>(line.size()), format,
                                                      width, height, layout.put()))) {
        return {};
    }
    ++made.layouts;
    return layout;
}

ComRef<ID2D1SolidColorBrush> WidgetCanvas::makeBrush(const Float4& color) {
    ComRef<ID2D1SolidColorBrush> brush;
    if (!render.d2dRT) return brush;
    render.d2dRT->CreateSolidColorBrush(D2D1_COLOR_F{color.r, color.g, color.b, color.a}, brush.put());
    ++made.brushes;
    return brush;
}

ComRef<ID2D1PathGeometry> WidgetCanvas::makeGeometry(const Float2* points, std::uint32_t count, Shape shape) {
    ComRef<ID2D1PathGeometry> geometry;
    ComRef<ID2D1GeometrySink> sink;
    if (!render.d2dFactory || count == 0 || FAILED(render.d2dFactory->CreatePathGeometry(geometry.put())) ||
        FAILED(geometry->Open(sink.put()))) {
        return {};
    }
    const bool filled = shape == Shape::Filled;
    sink->BeginFigure({points[0].x, points[0].y},
                      filled ? D2D1_FIGURE_BEGIN_FILLED : D2D1_FIGURE_BEGIN_HOLLOW);
    if (filled) {
        for (std::uint32_t i = 1; i < count; ++i) sink->AddLine({points[i].x, points[i].y});
    } else {
        addCurves(*sink, points + 1, count - 1);
    }
    sink->EndFigure(filled ? D2D1_FIGURE_END_CLOSED : D2D1_FIGURE_END_OPEN);
    if (FAILED(sink->Close())) return {};
    ++made.geometries;
    return geometry;
}

DrawScope::DrawScope(ID2D1RenderTarget& renderTarget) : target(renderTarget) {
    target.GetDpi(&dpiX, &dpiY);
    target.SetDpi(kPixelDpi, kPixelDpi);
    target.BeginDraw();
}

DrawScope::~DrawScope() {
    target.EndDraw();
    target.SetDpi(dpiX, dpiY);
}

void DrawScope::clip(const ViewRect& rect) {
    const D2D1_RECT_F edges = edgesOf(rect);
    target.PushAxisAlignedClip(&edges, D2D1_ANTIALIAS_MODE_PER_PRIMITIVE);
}

void DrawScope::transform(Float2 centre, float degrees) {
    const float radians = degrees * std::numbers::pi_v<float> / 180;
    const float cosine = std::cos(radians);
    const float sine = std::sin(radians);
    const D2D1_MATRIX_3X2_F matrix{cosine, sine, -sine, cosine, centre.x, centre.y};
    target.SetTransform(&matrix);
}

void DrawScope::resetTransform() {
    const D2D1_MATRIX_3X2_F identity{1, 0, 0, 1, 0, 0};
    target.SetTransform(&identity);
}

D2D1_RECT_F edgesOf(const ViewRect& rect) { return {rect.x, rect.y, rect.right(), rect.bottom()}; }

std::wstring onOneLine(std::wstring_view text) {
    std::wstring line(text);
    std::replace_if(line.begin(), line.end(), breaksLine, L' ');
    return line;
}

}  // namespace varnelo
