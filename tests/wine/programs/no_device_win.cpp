// Goes through the life of a drawing surface in a process that can have no Direct3D device, and prints the
// log. Exit code: 0 when it came through, 2 when there was a device after all, 3 when something was drawn.

#include <cstdio>

#include "app/logger.h"
#include "platform/utf.h"
#include "views/base_view_win.h"
#include "views/device_layer_win.h"
#include "views/glass_pipeline_win.h"
#include "views/icon_texture_win.h"
#include "views/render_surface_win.h"

namespace varnelo {
namespace {

struct Views : DeviceTargets {
    void releaseTargets() override { asked = true; }
    void onResized(IDXGISurface*, UINT, UINT) override { asked = true; }
    bool asked = false;
};

int run() {
    const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 96, 64, nullptr, nullptr,
                                        GetModuleHandleW(nullptr), nullptr);
    DeviceLayer layer;
    ComRef<IDXGISurface> buffer;
    if (layer.initD3D(window, 96, 64, buffer)) return 2;

    Views views;
    RenderSurface surface;
    BaseView base(surface);
    GlassPipeline glass(surface, base);
    surface.init(L"", window, GetModuleHandleW(nullptr), layer, buffer.get(), 96, 64);
    base.init();
    glass.init();
    surface.update(6);
    layer.resize(50, 50, views);
    layer.clear();
    surface.drawBackground();
    surface.renderScene([&views] { views.asked = true; });
    glass.begin();
    glass.beginScissor({0, 0, 5, 5});
    glass.drawGlass({0, 0, 8}, IconTexture{}, nullptr, {});
    glass.endScissor();
    base.drawBlurRect({0, 0, 8, 8}, nullptr, {});
    layer.present();
    glass.release();
    base.release();
    surface.release();
    layer.shutdown();
    return views.asked ? 3 : 0;
}

}  // namespace
}  // namespace varnelo

int main() {
    const int result = varnelo::run();
    for (const std::wstring& line : varnelo::Logger::instance().lines())
        std::printf("%s\n", varnelo::utf8FromWide(line).c_str());
    return result;
}
