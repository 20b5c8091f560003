#pragma once

#include <d3d11.h>

#include "platform/com_ref.h"

namespace varnelo {

// The picture of one shell icon on the device, straight (not premultiplied) alpha. Cells and the icon cache
// share it; a cell keeps its picture alive after the cache has dropped it. May be created on any thread.
class IconTexture {
public:
    ComRef<ID3D11ShaderResourceView> view;
};

}  // namespace varnelo
