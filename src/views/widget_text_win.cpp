#include "views/widget_text_win.h"

#include <d2d1.h>

#include <cmath>

#include "views/render_surface_win.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

namespace {

constexpr float kLargestPicture = 8192;  // pixels a side

// The whole pixels that a rectangle touches.
ViewRect pixelsOf(const ViewRect& rect) {
    const float left = std::floor(rect.x);
    const float top = std::floor(rect.y);
    return {left, top, std::ceil(rect.right()) - left, std::ceil(rect.bottom()) - top};
}

bool drawable(const ViewRect& rect) {
    return rect.w > 0 && rect.h > 0 && rect.w <= kLargestPicture && rect.h <= kLargestPicture;
}

// Moved by whole pixels, a picture stays the same.
bool samePixels(const ViewRect& a, const ViewRect& b) {
    return a.w == b.w && a.h == b.h && a.x - std::floor(a.x) == b.x - std::floor(b.x) &&
           a.y - std::floor(a.y) == b.y - std::floor(b.y);
}

}  // namespace

void WidgetText::add(WidgetCanvas& canvas, const std::wstring& text, IDWriteTextFormat* format,
                     const ViewRect& rect, const WidgetShadow& shadow) {
    if (!format || text.empty() || !drawable(rect)) return;
    if (!tried || shownText != text || !samePixels(shownRect, rect) || shownShadow != shadow) {
        release();
        tried = true;
        shownText = text;
        shownRect = rect;
        shownShadow = shadow;
        if (!rasterise(canvas, format)) picture.reset();
    }
    const ViewRect pixels = pixelsOf(rect);
    canvas.quads.add({picture.get(), pixels.w, pixels.h, {0, 0, pixels.w, pixels.h}, pixels.x, pixels.y});
}

void WidgetText::release() {
    tried = false;
    picture.reset();
    layout.reset();
}

bool WidgetText::createTexture(WidgetCanvas& canvas, ComRef<ID3D11Texture2D>& texture) {
    ID3D11Device* const device = canvas.render.device;
    if (!device) return false;
    const ViewRect pixels = pixelsOf(shownRect);
    D3D11_TEXTURE2D_DESC description{};
    description.Width = static_cast<UINT>(pixels.w);
    description.Height = static_cast<UINT>(pixels.h);
    description.MipLevels = description.ArraySize = 1;
    description.Format = DXGI_FORMAT_B8G8R8A8_UNORM;
    description.SampleDesc.Count = 1;
    description.Usage = D3D11_USAGE_DEFAULT;
    description.BindFlags = D3D11_BIND_RENDER_TARGET | D3D11_BIND_SHADER_RESOURCE;
    return SUCCEEDED(device->CreateTexture2D(&description, nullptr, texture.put())) &&
           SUCCEEDED(device->CreateShaderResourceView(texture.get(), nullptr, picture.put()));
}

bool WidgetText::rasterise(WidgetCanvas& canvas, IDWriteTextFormat* format) {
    ComRef<ID3D11Texture2D> texture;
    ComRef<IDXGISurface> surface;
    ComRef<ID2D1RenderTarget> target;
    ComRef<ID2D1SolidColorBrush> white;
    ComRef<ID2D1SolidColorBrush> black;
    layout = canvas.layOut(shownText, format, shownRect.w, shownRect.h);
    if (!layout || !createTexture(canvas, texture) ||
        FAILED(texture->QueryInterface(__uuidof(IDXGISurface), surface.putVoid()))) {
        return false;
    }
    target = canvas.render.makeTarget(surface.get(), DXGI_FORMAT_B8G8R8A8_UNORM);
    if (!target || FAILED(target->CreateSolidColorBrush(D2D1_COLOR_F{1, 1, 1, 1}, white.put())) ||
        FAILED(target->CreateSolidColorBrush(D2D1_COLOR_F{0, 0, 0, shownShadow.opacity}, black.put()))) {
        return false;
    }
    ++canvas.made.pictures;
    target->SetTextAntialiasMode(D2D1_TEXT_ANTIALIAS_MODE_GRAYSCALE);
    const float x = shownRect.x - std::floor(shownRect.x);
    const float y = shownRect.y - std::floor(shownRect.y);
    const DrawScope scope(*target);
    scope->Clear(nullptr);
    if (shownShadow.opacity > 0) {
        scope->DrawTextLayout({x + shownShadow.shift, y + shownShadow.shift}, layout.get(), black.get(),
                              D2D1_DRAW_TEXT_OPTIONS_NONE);
    }
    scope->DrawTextLayout({x, y}, layout.get(), white.get(), D2D1_DRAW_TEXT_OPTIONS_NONE);
    return true;
}

}  // namespace varnelo
