#pragma once

#include <d2d1.h>
#include <d3d11.h>
#include <dwrite.h>

#include <cstdint>

#include "platform/com_ref.h"
#include "views/picture_shelf.h"

namespace varnelo {

class RenderSurface;

// What was created since the start, to see that a frame at rest creates nothing.
struct DrawStatistics {
    std::uint64_t layouts = 0;
    std::uint64_t pictures = 0;  // rasterised
    std::uint64_t brushes = 0;
    std::uint64_t textures = 0;

    bool operator==(const DrawStatistics&) const = default;
};

// Rasterises a text with its halo into a texture. Drawing a layout once is dear, on a software device above
// all, and a halo is the same shape 8 or 25 times over: so the text is drawn once in the halo's colour and
// once in its own, and a shader lays the shifted copies over each other, premultiplied, as so many draws
// would have done. Belongs to the user-interface thread.
class TextInk {
public:
    // Both must outlive this object.
    TextInk(RenderSurface& surface, DrawStatistics& statistics) : render(surface), made(statistics) {}

    void init();
    void release();

    // Draws the label or header `layout` into `place` of the texture behind `target`. A `plate` of some width
    // lies under the text, in pixels from the text's origin: the selection. False if that cannot be done.
    bool drawText(const PictureLook& look, const PicturePlace& place, IDWriteTextLayout* layout,
                  const D2D1_RECT_F& plate, ID3D11RenderTargetView* target);
    // The line under a header, with the line's start at the origin.
    bool drawUnderline(const PicturePlace& place, ID3D11RenderTargetView* target);

    static constexpr float kUnderlineLength = 300;  // pixels

private:
    // Ink is drawn in three bands of one texture: the white text, the text in the halo's colour, the plate.
    struct Bands {
        int width, height;
        int stride;  // from one band to the next
    };
    struct ComposeCB {
        std::int32_t shiftX, shiftY;  // from a pixel of the page to its pixel of the first band
        std::int32_t stride;
        float opacity;  // of the halo
    };
    static_assert(sizeof(ComposeCB) == 16);

    bool ready() const;
    bool reserve(const Bands& bands);
    bool createTexture(UINT width, UINT height);
    bool createBrushes();
    void beginInk(const Bands& bands);
    bool compose(const PicturePlace& place, const Bands& bands, ID3D11PixelShader* shader, float opacity,
                 ID3D11RenderTargetView* target);

    RenderSurface& render;
    DrawStatistics& made;
    ComRef<ID3D11VertexShader> vertexShader;
    ComRef<ID3D11PixelShader> labelShader;
    ComRef<ID3D11PixelShader> headerShader;
    ComRef<ID3D11Buffer> constants;  // ComposeCB

    UINT inkWidth = 0, inkHeight = 0;
    ComRef<ID3D11ShaderResourceView> inkView;
    ComRef<ID2D1RenderTarget> inkTarget;
    ComRef<ID2D1SolidColorBrush> textBrush;
    ComRef<ID2D1SolidColorBrush> shadowBrush;
    ComRef<ID2D1SolidColorBrush> selectionBrush;
    ComRef<ID2D1LinearGradientBrush> underlineBrush;
};

}  // namespace varnelo
