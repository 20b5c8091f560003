#include "views/quad_batch_win.h"

#include <cstring>

#include "views/quad_geometry_win.h"
#include "views/render_surface_win.h"
#include "views/shader_text_win.h"

namespace varnelo {

namespace {

constexpr char kVertexText[] =
    "struct VS_IN { float2 pos : POSITION; float2 uv : TEXCOORD; };"
    "struct PS_IN { float4 pos : SV_POSITION; float2 uv : TEXCOORD; };"
    "PS_IN main(VS_IN input) { PS_IN o; o.pos = float4(input.pos, 0, 1); o.uv = input.uv; return o; }";

constexpr char kPixelText[] =
    "Texture2D picture : register(t0); SamplerState samp : register(s0);"
    "float4 main(float4 pos : SV_POSITION, float2 uv : TEXCOORD) : SV_TARGET"
    "{ return picture.Sample(samp, uv); }";

constexpr std::size_t kVerticesPerQuad = 6;

ComRef<ID3D11BlendState> createPremultipliedBlend(ID3D11Device* device) {
    D3D11_BLEND_DESC description{};
    D3D11_RENDER_TARGET_BLEND_DESC& target = description.RenderTarget[0];
    target.BlendEnable = TRUE;
    target.SrcBlend = target.SrcBlendAlpha = D3D11_BLEND_ONE;
    target.DestBlend = target.DestBlendAlpha = D3D11_BLEND_INV_SRC_ALPHA;
    target.BlendOp = target.BlendOpAlpha = D3D11_BLEND_OP_ADD;
    target.RenderTargetWriteMask = D3D11_COLOR_WRITE_ENABLE_ALL;
    ComRef<ID3D11BlendState> state;
    device->CreateBlendState(&description, state.put());
    return state;
}

}  // namespace

void QuadBatch::init() {
    release();
    if (!render.device) return;
    vertices.reserve(kMaxQuads * kVerticesPerQuad);

    D3D11_BUFFER_DESC description{};
    description.ByteWidth = kMaxQuads * kVerticesPerQuad * sizeof(Vertex);
    description.Usage = D3D11_USAGE_DYNAMIC;
    description.BindFlags = D3D11_BIND_VERTEX_BUFFER;
    description.CPUAccessFlags = D3D11_CPU_ACCESS_WRITE;
    render.device->CreateBuffer(&description, nullptr, vertexBuffer.put());

    const VertexShader vertex = createVertexShader(render.device, {kVertexText, "PictureVS.hlsl"});
    vertexShader = vertex.shader;
    if (vertex.code) {
        const D3D11_INPUT_ELEMENT_DESC elements[] = {
            {"POSITION", 0, DXGI_FORMAT_R32G32_FLOAT, 0, 0, D3D11_INPUT_PER_VERTEX_DATA, 0},
            {"TEXCOORD", 0, DXGI_FORMAT_R32G32_FLOAT, 0, 8, D3D11_INPUT_PER_VERTEX_DATA, 0}};
        render.device->CreateInputLayout(elements, 2, vertex.code->GetBufferPointer(),
                                         vertex.code->GetBufferSize(), inputLayout.put());
    }
    pixelShader = createPixelShader(render.device, {kPixelText, "PicturePS.hlsl"});
    sampler = createLinearClampSampler(render.device);
    blendState = createPremultipliedBlend(render.device);
}

void QuadBatch::release() {
    vertices.clear();
    current = nullptr;
    blendState.reset();
    sampler.reset();
    pixelShader.reset();
    vertexShader.reset();
    inputLayout.reset();
    vertexBuffer.reset();
}

void QuadBatch::add(const Quad& quad) {
    if (!ready() || !quad.view || render.width <= 0 || render.height <= 0) return;
    if (quad.view != current || vertices.size() == kMaxQuads * kVerticesPerQuad) flush();
    current = quad.view;

    const float right = quad.left + quad.source.w;
    const float bottom = quad.top + quad.source.h;
    const auto corner = [&](float x, float y, float u, float v) {
        vertices.push_back({x / render.width * 2 - 1, 1 - y / render.height * 2, u / quad.textureWidth,
                            v / quad.textureHeight});
    };
    corner(quad.left, quad.top, quad.source.x, quad.source.y);
    corner(right, quad.top, quad.source.right(), quad.source.y);
    corner(quad.left, bottom, quad.source.x, quad.source.bottom());
    corner(quad.left, bottom, quad.source.x, quad.source.bottom());
    corner(right, quad.top, quad.source.right(), quad.source.y);
    corner(right, bottom, quad.source.right(), quad.source.bottom());
}

bool QuadBatch::upload() {
    D3D11_MAPPED_SUBRESOURCE mapped{};
    if (FAILED(render.context->Map(vertexBuffer.get(), 0, D3D11_MAP_WRITE_DISCARD, 0, &mapped))) return false;
    std::memcpy(mapped.pData, vertices.data(), vertices.size() * sizeof(Vertex));
    render.context->Unmap(vertexBuffer.get(), 0);
    return true;
}

void QuadBatch::bind() {
    ID3D11DeviceContext* const context = render.context;
    const UINT stride = sizeof(Vertex);
    const UINT offset = 0;
    context->IASetVertexBuffers(0, 1, vertexBuffer.address(), &stride, &offset);
    context->IASetInputLayout(inputLayout.get());
    context->IASetPrimitiveTopology(D3D11_PRIMITIVE_TOPOLOGY_TRIANGLELIST);
    context->VSSetShader(vertexShader.get(), nullptr, 0);
    context->PSSetShader(pixelShader.get(), nullptr, 0);
    context->PSSetSamplers(0, 1, sampler.address());
    context->PSSetShaderResources(0, 1, &current);
    context->OMSetBlendState(blendState.get(), nullptr, 0xFFFFFFFF);
    context->OMSetDepthStencilState(nullptr, 0);
}

void QuadBatch::flush() {
    if (vertices.empty()) return;
    if (upload()) {
        bind();
        render.context->Draw(static_cast<UINT>(vertices.size()), 0);
        // A page of pictures is a target when the next picture is drawn.
        ID3D11ShaderResourceView* const none = nullptr;
        render.context->PSSetShaderResources(0, 1, &none);
    }
    vertices.clear();
    current = nullptr;
}

}  // namespace varnelo
