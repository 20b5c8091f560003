#pragma once

#include <d3d11.h>
#include <windows.h>

#include "platform/com_ref.h"
#include "support/glass_reference.h"
#include "views/base_view_win.h"
#include "views/device_layer_win.h"
#include "views/glass_pipeline_win.h"
#include "views/icon_texture_win.h"
#include "views/render_surface_win.h"

namespace varnelo {

// A window that is never shown, with `width` by `height` client pixels.
class HiddenWindow {
public:
    HiddenWindow(int width, int height);
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;
    ~HiddenWindow() { destroy(); }

    HWND get() const { return handle; }
    void destroy();

private:
    HWND handle = nullptr;
};

// The whole drawing surface on a hidden window, with one pane's glass. What is drawn is read back from the
// back buffer instead of being presented.
class SurfaceWindow : public DeviceTargets {
public:
    SurfaceWindow(int width, int height);
    SurfaceWindow(const SurfaceWindow&) = delete;
    SurfaceWindow& operator=(const SurfaceWindow&) = delete;
    ~SurfaceWindow() override;

    void releaseTargets() override { surface.releaseTargets(); }
    void onResized(IDXGISurface* buffer, UINT width, UINT height) override {
        surface.onResized(buffer, width, height);
    }

    // A texture of that picture in the format of icons and wallpapers.
    ComRef<ID3D11ShaderResourceView> upload(const reference::Picture& picture);
    IconTexture uploadIcon(const reference::Picture& picture) { return {upload(picture)}; }
    reference::Picture backBuffer();
    // What the texture behind a view holds.
    reference::Picture contentOf(ID3D11ShaderResourceView* view);

    HiddenWindow window;
    DeviceLayer layer;
    RenderSurface surface;
    BaseView base{surface};
    GlassPipeline glass{surface, base};
    bool ready = false;  // a device, a surface and all pipeline objects

private:
    reference::Picture contentOf(ID3D11Texture2D* texture);
};

}  // namespace varnelo
