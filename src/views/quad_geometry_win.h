#pragma once

#include <d3d11.h>

#include <span>

#include "platform/com_ref.h"

namespace varnelo {

// What every quad of the program shares: four vertices of 20 bytes as a triangle strip, and the linear,
// clamping sampler. A null result means that the device refused.

struct QuadVertex {
    float x, y, z;
    float u, v;
};
static_assert(sizeof(QuadVertex) == 20);

ComRef<ID3D11Buffer> createQuadVertices(ID3D11Device* device, std::span<const QuadVertex, 4> vertices);
// `vertexCode` is the byte code of the vertex shader that the layout feeds; null gives none.
ComRef<ID3D11InputLayout> createQuadLayout(ID3D11Device* device, ID3DBlob* vertexCode);
ComRef<ID3D11SamplerState> createLinearClampSampler(ID3D11Device* device);
// Default usage, bound as constant buffer; `bytes` is a multiple of 16.
ComRef<ID3D11Buffer> createConstantBuffer(ID3D11Device* device, UINT bytes);

// Vertices, layout and topology, ready for Draw(4, 0).
void bindQuadGeometry(ID3D11DeviceContext* context, ID3D11Buffer* vertices, ID3D11InputLayout* layout);

}  // namespace varnelo
