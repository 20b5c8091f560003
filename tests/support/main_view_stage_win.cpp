#include "support/main_view_stage_win.h"

namespace varnelo {

namespace {

constexpr double kLongestWaitSeconds = 60;

}  // namespace

MainViewStage::MainViewStage(int width, int height) : window(width, height) {
    language.loadLanguage(GetModuleHandleW(nullptr), Language::English);
    settings.load();
    elevation.agrees = false;
}

MainViewStage::~MainViewStage() { stop(); }

void MainViewStage::begin(int monitor) {
    if (!shared) shared = std::make_unique<SharedViews>();
    const ViewServices services{shell, probe, systemClock(), settings, language, volumes, elevation};
    view = std::make_unique<MainView>(window.surface, window.base, services,
                                      ViewRole{*shared, monitor == 0, monitor});
    view->init();
}

void MainViewStage::start(int monitor) {
    begin(monitor);
    while (monitor == 0 && loading()) Sleep(1);
}

bool MainViewStage::loading() {
    const std::lock_guard lock(view->progress().mutex);
    return view->progress().active;
}

void MainViewStage::stop() {
    if (!view) return;
    view->shutdown();
    view.reset();
    shared.reset();
}

bool MainViewStage::frame(float seconds) {
    window.surface.input.deltaTime = seconds;
    const bool moving = view->update();
    window.layer.clear();
    window.surface.drawBackground();
    view->draw(false);
    return moving;
}

bool MainViewStage::settle() {
    const double end = systemClock().steadySeconds() + kLongestWaitSeconds;
    while (systemClock().steadySeconds() < end) {
        window.surface.input.deltaTime = 0.1F;
        if (!view->update()) {
            frame();
            return true;
        }
    }
    return false;
}

void MainViewStage::resizeTo(int width, int height) {
    window.layer.resize(static_cast<UINT>(width), static_cast<UINT>(height), *this);
}

void MainViewStage::exchangeDevice() {
    const auto width = static_cast<UINT>(window.surface.width);
    const auto height = static_cast<UINT>(window.surface.height);
    const HWND handle = window.window.get();
    view->releaseDevice();
    window.glass.release();
    window.base.release();
    window.surface.release();
    window.layer.shutdown();
    ComRef<IDXGISurface> buffer;
    window.ready = window.layer.initD3D(handle, width, height, buffer);
    window.surface.init(L"", handle, GetModuleHandleW(nullptr), window.layer, buffer.get(), width, height);
    window.base.init();
    window.glass.init();
    view->restoreDevice();
}

void MainViewStage::releaseTargets() {
    view->releaseTargets();
    window.surface.releaseTargets();
}

void MainViewStage::onResized(IDXGISurface* buffer, UINT width, UINT height) {
    window.surface.onResized(buffer, width, height);
    view->onResized();
}

void MainViewStage::moveTo(float x, float y) {
    window.surface.input.cursorX = x;
    window.surface.input.cursorY = y;
    view->onMouseMove(held);
}

// As the window's messages come: the cursor is there first, and a frame has seen what is under it.
void MainViewStage::press(float x, float y) {
    moveTo(x, y);
    window.surface.input.deltaTime = 0.016F;
    view->update();
    held = true;
    view->onMouseDown();
}

void MainViewStage::release(float x, float y) {
    moveTo(x, y);
    held = false;
    view->onMouseUp();
}

void MainViewStage::drag(float fromX, float fromY, float toX, float toY) {
    press(fromX, fromY);
    for (int step = 1; step < 5; ++step) {
        const float share = static_cast<float>(step) / 5;
        moveTo(fromX + (toX - fromX) * share, fromY + (toY - fromY) * share);
    }
    release(toX, toY);
}

void MainViewStage::clickTab(std::int32_t tab) {
    const ViewRect& rect = view->tabs().tabs[static_cast<std::size_t>(tab)].rect;
    click(rect.x + rect.w / 2, rect.y + rect.h / 2);
}

void MainViewStage::clickMenuButton() {
    const ViewRect& rect = view->menu().rect;
    click(rect.x + rect.w / 2, rect.y + rect.h / 2);
}

void MainViewStage::clickMenuRow(std::size_t row) {
    const ViewRect rect = view->menu().rowRect(row);
    click(rect.x + rect.w / 2, rect.y + rect.h / 2);
}

void MainViewStage::type(std::wstring_view text) {
    for (const wchar_t unit : text) view->onChar(unit);
}

}  // namespace varnelo
