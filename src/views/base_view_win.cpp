#include "views/base_view_win.h"

#include "app/logger.h"
#include "platform/text.h"
#include "resource_ids.h"
#include "views/quad_geometry_win.h"
#include "views/render_surface_win.h"
#include "views/shader_text_win.h"

namespace varnelo {

namespace {

constexpr QuadVertex kUnitQuad[4] = {{0, 0, 0, 0, 0}, {1, 0, 0, 1, 0}, {0, 1, 0, 0, 1}, {1, 1, 0, 1, 1}};

}  // namespace

void BaseView::init() {
    if (render.device) {
        constantBuffer = createConstantBuffer(render.device, sizeof(PerObject));
        createQuad();
        createStates();
        blurBuffer = createConstantBuffer(render.device, sizeof(BlurCB));
        blurPixelShader =
            createPixelShader(render.device, shaderResource(IDR_SHADER_BLUR_PS, "BackgroundBlurPS.hlsl"));
    }
    logInfo(formatText(L"  BaseView::init done: constantBuffer=%p, blendState=%p",
                       static_cast<void*>(constantBuffer.get()), static_cast<void*>(blendState.get())));
}

void BaseView::createQuad() {
    vertexBuffer = createQuadVertices(render.device, kUnitQuad);
    const VertexShader vertex =
        createVertexShader(render.device, shaderResource(IDR_SHADER_ICON_VS, "IconVS.hlsl"));
    vertexShader = vertex.shader;
    inputLayout = createQuadLayout(render.device, vertex.code.get());
}

void BaseView::createStates() {
    sampler = createLinearClampSampler(render.device);
    D3D11_BLEND_DESC description{};
    D3D11_RENDER_TARGET_BLEND_DESC& target = description.RenderTarget[0];
    target.BlendEnable = TRUE;
    target.SrcBlend = D3D11_BLEND_SRC_ALPHA;
    target.DestBlend = D3D11_BLEND_INV_SRC_ALPHA;
    target.BlendOp = D3D11_BLEND_OP_ADD;
    target.SrcBlendAlpha = D3D11_BLEND_ONE;
    target.DestBlendAlpha = D3D11_BLEND_ZERO;
    target.BlendOpAlpha = D3D11_BLEND_OP_ADD;
    target.RenderTargetWriteMask = D3D11_COLOR_WRITE_ENABLE_ALL;
    render.device->CreateBlendState(&description, blendState.put());
}

void BaseView::release() {
    blurPixelShader.reset();
    blurBuffer.reset();
    blendState.reset();
    sampler.reset();
    vertexShader.reset();
    inputLayout.reset();
    vertexBuffer.reset();
    constantBuffer.reset();
}

void BaseView::bindQuad() {
    ID3D11DeviceContext* const context = render.context;
    if (!context) return;
    bindQuadGeometry(context, vertexBuffer.get(), inputLayout.get());
    context->VSSetShader(vertexShader.get(), nullptr, 0);
    ID3D11SamplerState* const linear = sampler.get();
    context->PSSetSamplers(0, 1, &linear);
    context->OMSetBlendState(blendState.get(), nullptr, 0xffffffff);
    context->OMSetDepthStencilState(nullptr, 0);
}

void BaseView::setPerObject(const PerObject& perObject) {
    ID3D11DeviceContext* const context = render.context;
    if (!context || !constantBuffer) return;
    context->UpdateSubresource(constantBuffer.get(), 0, nullptr, &perObject, 0, 0);
    ID3D11Buffer* const buffer = constantBuffer.get();
    context->VSSetConstantBuffers(0, 1, &buffer);
}

void BaseView::drawQuad() {
    if (render.context && vertexShader) render.context->Draw(4, 0);
}

void BaseView::drawBlurRect(const RECT& rect, ID3D11ShaderResourceView* source, const BlurTint& tint) {
    ID3D11DeviceContext* const context = render.context;
    if (!context || !blurBuffer || !blurPixelShader) return;
    UINT viewports = 1;
    D3D11_VIEWPORT viewport{};
    context->RSGetViewports(&viewports, &viewport);

    PerObject perObject;
    perObject.screenSize = {viewport.Width, viewport.Height};
    perObject.iconPos = {static_cast<float>(rect.left), static_cast<float>(rect.top)};
    perObject.iconSize = {static_cast<float>(rect.right - rect.left),
                          static_cast<float>(rect.bottom - rect.top)};
    perObject.dragMark = 0;
    setPerObject(perObject);
    BlurCB blur;
    blur.screenSize = perObject.screenSize;
    blur.offset = tint.offset;
    blur.tintColor = tint.color;
    context->UpdateSubresource(blurBuffer.get(), 0, nullptr, &blur, 0, 0);

    bindQuad();
    context->PSSetShader(blurPixelShader.get(), nullptr, 0);
    ID3D11Buffer* const buffer = blurBuffer.get();
    context->PSSetConstantBuffers(0, 1, &buffer);
    context->PSSetShaderResources(0, 1, &source);
    drawQuad();
    ID3D11ShaderResourceView* const none = nullptr;
    context->PSSetShaderResources(0, 1, &none);
}

}  // namespace varnelo
