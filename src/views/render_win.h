// One window's picture: the drawing surface and the views on it.
#pragma once

#include <string>

#include "views/base_view_win.h"
#include "views/device_layer_win.h"
#include "views/main_view_win.h"
#include "views/render_surface_win.h"

namespace varnelo {

// Owns what a window draws with and what it shows. User-interface thread only. With a device layer that has
// no device, init() is not called and every operation does nothing.
class Render : public DeviceTargets {
public:
    // `services` and what `role` refers to outlive this object.
    Render(const ViewServices& services, const ViewRole& role);

    // Builds everything on `device`, which must stay alive until release(), and logs each step. `backBuffer`
    // is its surface of `width` by `height` pixels.
    void init(const std::wstring& dataPath, HWND window, HINSTANCE instance, DeviceLayer& device,
              IDXGISurface* backBuffer, UINT width, UINT height);

    // Advances everything by `deltaTime` seconds. True while anything moves, so that another frame is needed.
    bool update(float deltaTime);

    // One picture into the bound back buffer: the offscreen scene when a cell is dragged, wallpaper, views.
    void draw();

    void releaseTargets() override;
    void onResized(IDXGISurface* backBuffer, UINT width, UINT height) override;

    // Around the loss of the device: what was made from it is released, and made again from state that the
    // processor holds. `device` and the arguments are those of init().
    void releaseDevice();
    void restoreDevice(DeviceLayer& device, IDXGISurface* backBuffer, UINT width, UINT height);

    // The window was told a new DPI; sizes that follow it are laid out again.
    void onDpiChanged(UINT dpi);

    // Stops the views' workers, saves what they hold, releases everything owned. A second call does nothing.
    void release();

    RenderSurface surface;
    BaseView baseView;
    MainView mainView;

private:
    bool initialised = false;
};

}  // namespace varnelo
