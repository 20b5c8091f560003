#pragma once

#include <d3d11.h>
#include <dwrite.h>

#include <string>

#include "platform/com_ref.h"
#include "views/view_rect.h"

namespace varnelo {

class WidgetCanvas;

// The dark copy under a white text.
struct WidgetShadow {
    float shift = 0;    // pixels right and down
    float opacity = 0;  // 0: none

    bool operator==(const WidgetShadow&) const = default;
};

// A white text of one line that changes seldom: laid out and rasterised once, shown as a picture from then
// on. Nothing of it shows outside of its rectangle. User-interface thread only.
class WidgetText {
public:
    // Adds the text to the canvas's quads, aligned in `rect` as `format` says. Rasterises it when anything is
    // new. Without a format, a text or room nothing is added.
    void add(WidgetCanvas& canvas, const std::wstring& text, IDWriteTextFormat* format, const ViewRect& rect,
             const WidgetShadow& shadow);
    // Forgets the picture; call it when the format goes.
    void release();

private:
    bool rasterise(WidgetCanvas& canvas, IDWriteTextFormat* format);
    bool createTexture(WidgetCanvas& canvas, ComRef<ID3D11Texture2D>& texture);

    // What the picture shows; its corner is that of the pixel that holds the rectangle's corner.
    bool tried = false;
    std::wstring shownText;
    ViewRect shownRect;
    WidgetShadow shownShadow;

    ComRef<ID3D11ShaderResourceView> picture;
    // A text engine may forget a font's glyphs with the last layout that uses them.
    ComRef<IDWriteTextLayout> layout;
};

}  // namespace varnelo
