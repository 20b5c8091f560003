#pragma once

#include <d3d11.h>

#include <string>

#include "platform/com_ref.h"

namespace varnelo {

// The picture that the user chose for the desktop; empty without one.
std::wstring desktopWallpaperPath();

// Loads a picture file as a texture of exactly `width` by `height` pixels, stretched whatever its own shape.
// `view` is touched only when the picture could be read. Each failing step has its log line. May block on a
// slow disk; needs no COM apartment of the caller.
bool loadTexture(ID3D11Device* device, const std::wstring& path, UINT width, UINT height,
                 ComRef<ID3D11ShaderResourceView>& view);

}  // namespace varnelo
