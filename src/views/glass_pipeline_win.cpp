#include "views/glass_pipeline_win.h"

#include "resource_ids.h"
#include "views/base_view_win.h"
#include "views/icon_texture_win.h"
#include "views/quad_geometry_win.h"
#include "views/render_surface_win.h"
#include "views/shader_text_win.h"

namespace varnelo {

void GlassPipeline::init() {
    if (!render.device) return;
    glassBuffer = createConstantBuffer(render.device, sizeof(GlassCB));
    pixelShader = createPixelShader(render.device, shaderResource(IDR_SHADER_ICON_PS, "IconPS.hlsl"));
}

void GlassPipeline::release() {
    pixelShader.reset();
    glassBuffer.reset();
}

void GlassPipeline::begin() {
    baseView.bindQuad();
    if (render.context) render.context->PSSetShader(pixelShader.get(), nullptr, 0);
}

void GlassPipeline::drawGlass(const GlassQuad& quad, const IconTexture& texture,
                              ID3D11ShaderResourceView* source, const GlassLook& look) {
    ID3D11DeviceContext* const context = render.context;
    if (!context || !pixelShader || !glassBuffer || !texture.view) return;
    const Float2 screenSize{render.width, render.height};
    baseView.setPerObject(glassPerObject(quad, screenSize, look));
    ID3D11ShaderResourceView* const views[] = {texture.view.get(), source};
    context->PSSetShaderResources(0, 2, views);

    // Workers that load icons get a turn while a large selection is drawn.
    if (look.selected) Sleep(0);
    const GlassCB constants = glassConstants(quad, screenSize, look);
    context->UpdateSubresource(glassBuffer.get(), 0, nullptr, &constants, 0, 0);
    ID3D11Buffer* const buffer = glassBuffer.get();
    context->PSSetConstantBuffers(1, 1, &buffer);
    baseView.drawQuad();
}

void GlassPipeline::beginScissor(const ScissorEdges& edges) {
    if (!render.context) return;
    render.context->RSSetState(render.rsScissor);
    const D3D11_RECT rect{edges.left, edges.top, edges.right, edges.bottom};
    render.context->RSSetScissorRects(1, &rect);
}

void GlassPipeline::endScissor() {
    if (render.context) render.context->RSSetState(render.rsDefault);
}

}  // namespace varnelo
