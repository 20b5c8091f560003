#pragma once

#include <d3d11.h>

#include <vector>

#include "platform/com_ref.h"
#include "views/view_rect.h"

namespace varnelo {

class RenderSurface;

// Draws rectangles of pictures with premultiplied alpha, in the order in which they are added; neighbours
// from one texture cost one draw. Belongs to the user-interface thread.
class QuadBatch {
public:
    // `surface` must outlive this object.
    explicit QuadBatch(RenderSurface& surface) : render(surface) {}

    // What cannot be made stays null, and nothing is drawn then.
    void init();
    void release();

    // Shows `source` (texels) of `view`, a texture of `textureWidth` by `textureHeight`, at (left, top) of
    // the surface, one texel a pixel.
    struct Quad {
        ID3D11ShaderResourceView* view = nullptr;
        float textureWidth = 1, textureHeight = 1;
        ViewRect source;
        float left = 0, top = 0;
    };
    void add(const Quad& quad);
    // Draws what was added. Call it before the scissor, the target or the texture changes.
    void flush();

private:
    static constexpr std::size_t kMaxQuads = 256;
    struct Vertex {
        float x, y;  // clip space
        float u, v;
    };

    bool ready() const { return vertexBuffer && inputLayout && vertexShader && pixelShader; }
    bool upload();
    void bind();

    RenderSurface& render;
    std::vector<Vertex> vertices;
    ID3D11ShaderResourceView* current = nullptr;  // of the quads in `vertices`
    ComRef<ID3D11Buffer> vertexBuffer;
    ComRef<ID3D11InputLayout> inputLayout;
    ComRef<ID3D11VertexShader> vertexShader;
    ComRef<ID3D11PixelShader> pixelShader;
    ComRef<ID3D11SamplerState> sampler;
    ComRef<ID3D11BlendState> blendState;
};

}  // namespace varnelo
