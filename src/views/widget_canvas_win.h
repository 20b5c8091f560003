#pragma once

#include <d2d1.h>
#include <dwrite.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/com_ref.h"
#include "views/glass_constants.h"
#include "views/quad_batch_win.h"
#include "views/view_rect.h"

namespace varnelo {

class BaseView;
class RenderSurface;

// What the widgets created since the start, to see that a frame at rest creates nothing.
struct WidgetStatistics {
    std::uint64_t formats = 0;
    std::uint64_t layouts = 0;
    std::uint64_t brushes = 0;
    std::uint64_t geometries = 0;
    std::uint64_t pictures = 0;  // texts rasterised

    bool operator==(const WidgetStatistics&) const = default;
};

// What the widgets of a surface draw with. One for all widgets of a MainView. User-interface thread only.
class WidgetCanvas {
public:
    // Both must outlive this object.
    WidgetCanvas(RenderSurface& surface, BaseView& base);

    // After the surface's initialisation; release() before the device goes.
    void init();
    void release();

    // Where Direct2D draws: the window, or with `toScene` the offscreen scene. Null: draw nothing.
    ID2D1RenderTarget* target(bool toScene) const;

    // The wallpaper under `rect`, blurred and tinted. Not between a DrawScope's begin and end.
    void blur(const ViewRect& rect, const BlurTint& tint);

    // Null when they cannot be made. Text is in the widgets' font, on one line, in the middle of its height.
    ComRef<IDWriteTextFormat> makeFormat(float size, DWRITE_TEXT_ALIGNMENT alignment);
    // A text that is wider than its layout then ends in three dots instead of being cut.
    void endInEllipsis(IDWriteTextFormat* format);
    ComRef<IDWriteTextLayout> layOut(std::wstring_view text, IDWriteTextFormat* format, float width,
                                     float height);
    ComRef<ID2D1SolidColorBrush> makeBrush(const Float4& color);
    // A figure that begins and ends with `points`; `curves`: each three points more make a cubic curve.
    enum class Shape { Filled, Curves };
    ComRef<ID2D1PathGeometry> makeGeometry(const Float2* points, std::uint32_t count, Shape shape);

    RenderSurface& render;
    QuadBatch quads;
    WidgetStatistics made;

private:
    BaseView& baseView;
    std::wstring family;
};

// Drawing with Direct2D for the life of the object, one unit a pixel whatever the target's DPI.
class DrawScope {
public:
    explicit DrawScope(ID2D1RenderTarget& renderTarget);
    DrawScope(const DrawScope&) = delete;
    DrawScope& operator=(const DrawScope&) = delete;
    ~DrawScope();

    ID2D1RenderTarget* operator->() const { return &target; }
    void clip(const ViewRect& rect);
    void unclip() { target.PopAxisAlignedClip(); }
    // Turns by `degrees` clockwise around the origin, which then lies at `centre`.
    void transform(Float2 centre, float degrees);
    void resetTransform();

private:
    ID2D1RenderTarget& target;
    float dpiX = 96, dpiY = 96;  // before
};

D2D1_RECT_F edgesOf(const ViewRect& rect);

// A text of one line without units that would break it: each is replaced by a blank.
std::wstring onOneLine(std::wstring_view text);

}  // namespace varnelo
