#pragma once

#include <d3d11.h>

#include "platform/com_ref.h"
#include "views/glass_constants.h"

namespace varnelo {

class RenderSurface;

// The pipeline objects that all views of a surface share, and the blurred, tinted rectangle. An object that
// could not be made stays null and is bound as null; without a device nothing is drawn.
// Belongs to the user-interface thread.
class BaseView {
public:
    // `surface` must outlive this object, and be initialised before init().
    explicit BaseView(RenderSurface& surface) : render(surface) {}

    // Ends with the log line that tells how far it came.
    void init();
    void release();

    // Draws what lies behind `rect` in `source`, blurred by `tint.offset` pixels and tinted. `source` is
    // unbound afterwards, so that it can be a target in the next pass.
    void drawBlurRect(const RECT& rect, ID3D11ShaderResourceView* source, const BlurTint& tint);

    // The unit quad, its layout, the vertex shader, the sampler and the blend state. The pixel shader and the
    // constants are the caller's.
    void bindQuad();
    // Writes `perObject` and binds it to slot 0 of the vertex stage.
    void setPerObject(const PerObject& perObject);
    void drawQuad();

private:
    void createQuad();
    void createStates();

    ComRef<ID3D11Buffer> constantBuffer;  // PerObject
    ComRef<ID3D11Buffer> vertexBuffer;
    ComRef<ID3D11InputLayout> inputLayout;
    ComRef<ID3D11VertexShader> vertexShader;
    ComRef<ID3D11SamplerState> sampler;
    ComRef<ID3D11BlendState> blendState;
    RenderSurface& render;
    ComRef<ID3D11Buffer> blurBuffer;  // BlurCB
    ComRef<ID3D11PixelShader> blurPixelShader;
};

}  // namespace varnelo
