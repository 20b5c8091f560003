#include "views/quad_geometry_win.h"

namespace varnelo {

ComRef<ID3D11Buffer> createQuadVertices(ID3D11Device* device, std::span<const QuadVertex, 4> vertices) {
    D3D11_BUFFER_DESC description{};
    description.ByteWidth = static_cast<UINT>(vertices.size_bytes());
    description.Usage = D3D11_USAGE_DEFAULT;
    description.BindFlags = D3D11_BIND_VERTEX_BUFFER;
    D3D11_SUBRESOURCE_DATA data{};
    data.pSysMem = vertices.data();
    ComRef<ID3D11Buffer> buffer;
    device->CreateBuffer(&description, &data, buffer.put());
    return buffer;
}

ComRef<ID3D11InputLayout> createQuadLayout(ID3D11Device* device, ID3DBlob* vertexCode) {
    if (!vertexCode) return {};
    const D3D11_INPUT_ELEMENT_DESC elements[] = {
        {"POSITION", 0, DXGI_FORMAT_R32G32B32_FLOAT, 0, 0, D3D11_INPUT_PER_VERTEX_DATA, 0},
        {"TEXCOORD", 0, DXGI_FORMAT_R32G32_FLOAT, 0, 12, D3D11_INPUT_PER_VERTEX_DATA, 0},
    };
    ComRef<ID3D11InputLayout> layout;
    device->CreateInputLayout(elements, 2, vertexCode->GetBufferPointer(), vertexCode->GetBufferSize(),
                              layout.put());
    return layout;
}

ComRef<ID3D11SamplerState> createLinearClampSampler(ID3D11Device* device) {
    // MaxLOD stays 0: only the top level is read.
    D3D11_SAMPLER_DESC description{};
    description.Filter = D3D11_FILTER_MIN_MAG_MIP_LINEAR;
    description.AddressU = D3D11_TEXTURE_ADDRESS_CLAMP;
    description.AddressV = D3D11_TEXTURE_ADDRESS_CLAMP;
    description.AddressW = D3D11_TEXTURE_ADDRESS_CLAMP;
    ComRef<ID3D11SamplerState> sampler;
    device->CreateSamplerState(&description, sampler.put());
    return sampler;
}

ComRef<ID3D11Buffer> createConstantBuffer(ID3D11Device* device, UINT bytes) {
    D3D11_BUFFER_DESC description{};
    description.ByteWidth = bytes;
    description.Usage = D3D11_USAGE_DEFAULT;
    description.BindFlags = D3D11_BIND_CONSTANT_BUFFER;
    ComRef<ID3D11Buffer> buffer;
    device->CreateBuffer(&description, nullptr, buffer.put());
    return buffer;
}

void bindQuadGeometry(ID3D11DeviceContext* context, ID3D11Buffer* vertices, ID3D11InputLayout* layout) {
    const UINT stride = sizeof(QuadVertex);
    const UINT offset = 0;
    context->IASetVertexBuffers(0, 1, &vertices, &stride, &offset);
    context->IASetPrimitiveTopology(D3D11_PRIMITIVE_TOPOLOGY_TRIANGLESTRIP);
    context->IASetInputLayout(layout);
}

}  // namespace varnelo
