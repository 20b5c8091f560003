#include "views/main_view_win.h"

#include <filesystem>

#include "app/settings.h"
#include "platform/known_folders.h"
#include "views/render_surface_win.h"

namespace varnelo {

namespace {

constexpr UINT kMessageRedraw = 0x800B;
constexpr std::uint32_t kUpdateItem = 0x2000;
constexpr std::uint32_t kUpdateImage = 0x8000;

// Without a data folder there is no cache: nothing is read, and saving fails.
std::wstring cachePath(const wchar_t* fileName) {
    try {
        return appDataPath(L"Varnelo", fileName);
    } catch (const std::filesystem::filesystem_error&) {
        return {};
    }
}

DesktopOrganizer::Dependencies desktopDependencies(const RenderSurface& surface,
                                                   const ViewServices& services) {
    return {services.shell,
            services.files,
            services.clock,
            knownFolder(KnownFolder::Desktop),
            knownFolder(KnownFolder::PublicDesktop),
            knownFolder(KnownFolder::Profile),
            cachePath(L"desktop.cache"),
            [&surface] { PostMessageW(surface.hWnd, kMessageRedraw, 0, 0); }};
}

}  // namespace

MainView::MainView(RenderSurface& surface, BaseView& baseView, const ViewServices& services)
    : render(surface),
      desktopOrganizer(desktopDependencies(surface, services)),
      actions([&surface] { return surface.hWnd; }, services.language, shellCalls),
      leftPane(
          {surface.input, services.clock, services.shell, services.settings, services.language, &actions},
          surface, baseView, TabKind::System),
      watcher(desktopOrganizer, knownFolder(KnownFolder::Desktop)) {}

MainView::~MainView() = default;

void MainView::init() {
    watcher.start();  // before the desktop is read, so that no change falls between the two

    const std::lock_guard lock(paneLock);
    ViewRect rect = paneRect();
    leftPane.init(rect, false, 0, true);
    leftPane.setEntries(desktopOrganizer.rebuild(), TabKind::Desktop);
    desktopOrganizer.addListener(
        [this](const FileEntry& entry, DesktopOrganizer::Action action) { onDesktopChange(entry, action); });
}

// The tab pane has the whole client area.
ViewRect MainView::paneRect() const { return {0, 0, render.width, render.height}; }

bool MainView::update() {
    // Changes that only the watcher saw; the listener takes the pane's lock for each.
    if (desktopOrganizer.pendingChanged()) desktopOrganizer.flushPending();

    const std::lock_guard lock(paneLock);
    const bool animating = leftPane.update();
    if (leftPane.dirty) {
        leftPane.dirty = false;
        desktopOrganizer.saveCache();
    }
    return animating;
}

void MainView::draw(bool toScene) {
    const std::lock_guard lock(paneLock);
    leftPane.draw(toScene);
}

void MainView::onMouseDown() {
    const std::lock_guard lock(paneLock);
    leftPane.onMouseDown();
}

void MainView::onMouseUp() {
    const std::lock_guard lock(paneLock);
    leftPane.onMouseUp();
}

void MainView::onMouseMove(bool leftButtonDown) {
    const std::lock_guard lock(paneLock);
    leftPane.onMouseMove(leftButtonDown);
}

void MainView::onMouseWheel(float delta) {
    const std::lock_guard lock(paneLock);
    leftPane.onMouseWheel(delta);
}

void MainView::onDoubleClick() {
    const std::lock_guard lock(paneLock);
    leftPane.onDoubleClick();
}

void MainView::onRightClick() {
    const std::lock_guard lock(paneLock);
    leftPane.onRightClick();
}

void MainView::onShellChange(std::uint32_t event, const ItemIdList& first, const ItemIdList& second) {
    desktopOrganizer.onShellChange(event, first, second);
    const std::lock_guard lock(paneLock);
    if (event == kUpdateItem && !first.empty()) leftPane.reloadIcon(first);
    if (event == kUpdateImage) leftPane.reloadAllIcons();
}

void MainView::onDesktopChange(const FileEntry& entry, DesktopOrganizer::Action action) {
    const std::lock_guard lock(paneLock);
    switch (action) {
        case DesktopOrganizer::Action::Added:
            leftPane.addEntry(entry);
            break;
        case DesktopOrganizer::Action::Removed:
            leftPane.removeEntry(entry);
            break;
        case DesktopOrganizer::Action::Renamed:
            leftPane.renameEntry(entry);
            break;
        case DesktopOrganizer::Action::Updated:
            leftPane.updateEntry(entry);
            break;
    }
}

void MainView::releaseTargets() {
    const std::lock_guard lock(paneLock);
    leftPane.releaseResources();
}

void MainView::onResized() {
    const std::lock_guard lock(paneLock);
    ViewRect rect = paneRect();
    leftPane.setViewRect(rect, false, 0);
}

void MainView::shutdown() {
    watcher.stop();
    leftPane.stopIconWorker();
    desktopOrganizer.saveCache();
    const std::lock_guard lock(paneLock);
    leftPane.destroy();
}

}  // namespace varnelo
