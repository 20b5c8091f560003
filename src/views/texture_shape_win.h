#pragma once

#include <d3d11.h>

namespace varnelo {

// The shape of every texture here: one level, one slice, one sample, eight bits a channel with blue first.
inline D3D11_TEXTURE2D_DESC bgraTexture(UINT width, UINT height, UINT bindFlags) {
    D3D11_TEXTURE2D_DESC description{};
    description.Width = width;
    description.Height = height;
    description.MipLevels = 1;
    description.ArraySize = 1;
    description.Format = DXGI_FORMAT_B8G8R8A8_UNORM;
    description.SampleDesc.Count = 1;
    description.Usage = D3D11_USAGE_DEFAULT;
    description.BindFlags = bindFlags;
    return description;
}

// For a texture that is drawn to and then drawn from.
inline constexpr UINT kTargetAndSource = D3D11_BIND_RENDER_TARGET | D3D11_BIND_SHADER_RESOURCE;

}  // namespace varnelo
