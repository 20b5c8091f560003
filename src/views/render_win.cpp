#include "views/render_win.h"

#include "app/logger.h"

namespace varnelo {

Render::Render(const ViewServices& services, const ViewRole& role)
    : baseView(surface), mainView(surface, baseView, services, role) {}

void Render::init(const std::wstring& dataPath, HWND window, HINSTANCE instance, DeviceLayer& device,
                  IDXGISurface* backBuffer, UINT width, UINT height) {
    surface.init(dataPath, window, instance, device, backBuffer, width, height);
    baseView.init();
    mainView.init();
    initialised = true;
    logInfo(L"  MainView::init done");
    logInfo(L"Render::init completed");
}

bool Render::update(float deltaTime) {
    if (!initialised) return false;
    surface.update(deltaTime);
    return mainView.update();
}

void Render::draw() {
    if (!initialised) return;
    if (mainView.cellDragActive()) {
        surface.renderScene([this] { mainView.draw(true); });
    }
    surface.drawBackground();
    mainView.draw(false);
}

void Render::releaseTargets() {
    mainView.releaseTargets();
    surface.releaseTargets();
}

void Render::onResized(IDXGISurface* backBuffer, UINT width, UINT height) {
    if (!initialised) return;
    surface.onResized(backBuffer, width, height);
    mainView.onResized();
}

void Render::releaseDevice() {
    if (!initialised) return;
    mainView.releaseDevice();
    baseView.release();
    surface.release();
}

void Render::restoreDevice(DeviceLayer& device, IDXGISurface* backBuffer, UINT width, UINT height) {
    if (!initialised) return;
    const std::wstring dataPath = surface.dataPath;
    surface.init(dataPath, surface.hWnd, surface.hInstance, device, backBuffer, width, height);
    baseView.init();
    mainView.restoreDevice();
}

void Render::onDpiChanged(UINT dpi) {
    surface.dpiX = surface.dpiY = static_cast<float>(dpi);
    surface.dpiScale = surface.dpiX / 96;
    if (initialised) mainView.onResized();
}

void Render::release() {
    if (!initialised) return;
    initialised = false;
    mainView.shutdown();
    baseView.release();
    surface.release();
}

}  // namespace varnelo
