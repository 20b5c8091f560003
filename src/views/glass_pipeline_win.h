#pragma once

#include <d3d11.h>

#include "platform/com_ref.h"
#include "views/glass_constants.h"

namespace varnelo {

class BaseView;
class IconTexture;
class RenderSurface;

// Draws the icons of one pane as panes of frosted glass. Per pane and draw: begin(), then for each clipped
// area beginScissor(), drawGlass() ..., endScissor(). Belongs to the user-interface thread.
class GlassPipeline {
public:
    // Both must outlive this object.
    GlassPipeline(RenderSurface& surface, BaseView& base) : render(surface), baseView(base) {}

    // After BaseView::init(). What cannot be made stays null, and its icons undrawn.
    void init();
    void release();

    // The state that all icons of a pane share.
    void begin();
    // Draws `texture` over the blur of `source`: the wallpaper for an icon at rest, the offscreen scene for a
    // dragged one.
    void drawGlass(const GlassQuad& quad, const IconTexture& texture, ID3D11ShaderResourceView* source,
                   const GlassLook& look);
    // Clips to `edges` until endScissor().
    void beginScissor(const ScissorEdges& edges);
    void endScissor();

private:
    RenderSurface& render;
    BaseView& baseView;
    ComRef<ID3D11Buffer> glassBuffer;  // GlassCB
    ComRef<ID3D11PixelShader> pixelShader;
};

}  // namespace varnelo
