// Building the view, a frame of it, and its end.

#include "views/main_view_win.h"

#include <chrono>
#include <filesystem>

#include "app/language_table.h"
#include "app/settings.h"
#include "platform/known_folders.h"
#include "views/base_view_win.h"
#include "views/render_surface_win.h"
#include "views/window_messages_win.h"

namespace varnelo {

namespace {

constexpr std::uint32_t kUpdateItem = 0x2000;
constexpr std::uint32_t kUpdateImage = 0x8000;
constexpr std::size_t kTaskWorkers = 2;
constexpr int kRightEdge = 1;                       // the software pane stays glued to it
constexpr std::chrono::milliseconds kStopLook{50};  // how long a waiting task overlooks the end

// In the order of the menu's rows and of the tabs.
constexpr const wchar_t* kMenuKeys[] = {L"SETTINGS", L"MONITORS", L"INFO", L"EXIT"};
constexpr const wchar_t* kTabKeys[] = {L"DESKTOP", L"OVERVIEW", L"SYSTEM", L"SEARCH_TAB"};
static_assert(std::size(kTabKeys) == MainView::kTabs);

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

MainView::MainView(RenderSurface& surface, BaseView& baseView, const ViewServices& viewServices,
                   const ViewRole& viewRole)
    : render(surface),
      base(baseView),
      services(viewServices),
      role(viewRole),
      organizers{DesktopOrganizer(desktopDependencies(surface, viewServices))},
      taskPool(kTaskWorkers, &loadProgress),
      shellActions([&surface] { return surface.hWnd; }, viewServices.language, shellCalls),
      fileActions(shellActions),
      widgets(surface, baseView, viewServices.language),
      rightPane({surface.input, viewServices.clock, viewServices.shell, viewServices.settings,
                 viewServices.language, &fileActions},
                surface, baseView, TabKind::Software),
      leftPane({surface.input, viewServices.clock, viewServices.shell, viewServices.settings,
                viewServices.language, &fileActions},
               surface, baseView, TabKind::System),
      watcher(organizers.desktop, knownFolder(KnownFolder::Desktop)) {}

// Also without shutdown(), as when the start failed, no task outlives what it uses.
MainView::~MainView() {
    requestStop();
    taskPool.stop();
}

void MainView::init() {
    watcher.start();  // before the desktop is read, so that no change falls between the two
    const std::lock_guard lock(paneLock);
    lastUpdate = services.clock.steadySeconds();
    loadProgress.onChange = [this] { postRedraw(); };
    widgets.progressBar.progress = &loadProgress;
    organizers.desktop.addListener(
        [this](const FileEntry& entry, DesktopOrganizer::Action action) { onDesktopChange(entry, action); });

    initMenu();
    initTabs();
    widgets.searchPanel.setReady(false);
    widgets.init();
    setTexts();
    initPanes();
    activateTab(services.settings.tabIndexFor(role.monitor));
    widgets.searchPanel.onResized = [this] { layOut(); };
    initTasks();
}

void MainView::initMenu() {
    const auto command = [this](std::function<void()> MenuCommands::*which) {
        return [this, which] {
            if (const std::function<void()>& run = menuCommands.*which) run();
        };
    };
    widgets.menuBar.addItem({}, command(&MenuCommands::openSettings));
    widgets.menuBar.addItem({}, command(&MenuCommands::openMonitors));
    widgets.menuBar.addItem({}, command(&MenuCommands::openInfo));
    widgets.menuBar.addItem({}, [this] { SendMessageW(render.hWnd, WM_CLOSE, 0, 0); });
}

void MainView::initTabs() {
    for (std::int32_t tab = 0; tab < kTabs; ++tab) widgets.tabStrip.addTab({}, [this, tab] { showTab(tab); });
}

// The saved place of the bar, moved to the edge of a column.
void MainView::initPanes() {
    splitter.setArea({0, 0, render.width, render.height});
    splitter.restore(services.settings.splitterRatioFor(role.monitor));
    chosenRatio = splitter.ratio();
    initSoftwarePane();
    snapToColumns();
    places = layOutView(layoutInput());
    ViewRect rect = places.tabPane;
    leftPane.init(rect, false, 0, true);
    layOut();
}

// Once, when the pane shows first.
void MainView::initSoftwarePane() {
    if (softwareReady || splitter.softwareHidden()) return;
    ViewRect rect = splitter.secondRect();
    rightPane.init(rect, true, kRightEdge, false);
    softwareReady = true;
}

void MainView::initTasks() {
    loadProgress.reset();
    if (role.primary) {
        role.shared.organizers = &organizers;
        initWorkerTasks();
    } else {
        initSecondaryTasks();
    }
}

void MainView::initWorkerTasks() {
    IndexHooks hooks;
    hooks.onIndexReady = [this] {
        searchReady = true;
        postRedraw();
    };
    indexService = std::make_unique<IndexService>(role.shared.index, services.volumes, services.elevation,
                                                  std::move(hooks));
    taskPool.enqueue(translated(L"INDEXING_FILES"), [this] {
        indexService->start();
        role.shared.indexPromise.set_value();
    });
}

void MainView::rebuildNTFSIndex() {
    if (indexService) taskPool.enqueue(translated(L"INDEXING_FILES"), [this] { indexService->rebuild(); });
}

// What the primary view loads shows here when it is there.
void MainView::initSecondaryTasks() {
    taskPool.enqueue(translated(L"INDEXING_FILES"), [this, indexReady = role.shared.indexReady] {
        while (indexReady.wait_for(kStopLook) != std::future_status::ready) {
            if (stopping) return;
        }
        searchReady = true;
    });
}

void MainView::setTexts() {
    for (std::size_t row = 0; row < std::size(kMenuKeys); ++row)
        widgets.menuBar.setLabel(row, translated(kMenuKeys[row]));
    for (std::size_t tab = 0; tab < std::size(kTabKeys); ++tab)
        widgets.tabStrip.setLabel(tab, translated(kTabKeys[tab]));
    widgets.searchPanel.setTexts(translated(L"SEARCH_PLACEHOLDER_FILENAME"),
                                 translated(L"SEARCH_PLACEHOLDER_CONTENT"));
}

void MainView::onLanguageChanged() {
    const std::lock_guard lock(paneLock);
    setTexts();
    rightPane.refreshGroupNames();
    leftPane.refreshGroupNames();
}

bool MainView::update() {
    // Changes that only the watcher saw; the listener takes the pane's lock for each.
    if (organizers.desktop.pendingChanged()) organizers.desktop.flushPending();

    const std::lock_guard lock(paneLock);
    const float seconds = render.input.deltaTime;
    const double now = services.clock.steadySeconds();
    const auto elapsed = static_cast<float>(now - lastUpdate);
    lastUpdate = now;

    bool moving = false;
    if (splitter.isAnimating()) {
        moving |= splitter.advance(seconds);
        layOut();
    }
    if (!splitter.softwareHidden()) moving |= updateSoftwarePane();
    moving |= leftPane.update();
    moving |= progressEasing.update(progressFraction(loadProgress), seconds);
    if (searchReady.exchange(false)) widgets.searchPanel.setReady(true);
    if (searchVisible) moving |= widgets.searchPanel.update(seconds, elapsed);
    saveChangedOrder();
    return moving;
}

// The setting of the icons' size changes the columns' width, to which the pane is cut.
bool MainView::updateSoftwarePane() {
    const bool moving = rightPane.update();
    if (rightPane.cellWidth != snappedCellWidth && !splitter.isDragging()) {
        snapToColumns();
        layOut();
    }
    return moving;
}

void MainView::draw(bool toScene) {
    const std::lock_guard lock(paneLock);
    if (!splitter.softwareHidden()) rightPane.draw(toScene);
    leftPane.draw(toScene);
    widgets.draw(splitter, searchVisible, toScene);
}

ViewLayoutInput MainView::layoutInput() const {
    return {render.width,
            render.height,
            render.dpiScale,
            splitter.firstRect(),
            splitter.secondRect(),
            searchVisible,
            widgets.searchPanel.contentRowHeight()};
}

void MainView::layOut() {
    places = layOutView(layoutInput());
    widgets.place(places);
    ViewRect placed;
    leftPane.setViewRect(places.tabPane, false, 0, placed);
    if (splitter.softwareHidden()) return;
    initSoftwarePane();
    rightPane.setViewRect(places.softwarePane, true, kRightEdge, placed);
}

// The bar rests on the edge of a column, so that the software pane shows whole ones.
void MainView::snapToColumns() {
    if (splitter.softwareHidden()) return;
    ViewRect placed;
    rightPane.setViewRect(splitter.secondRect(), true, kRightEdge, placed);
    splitter.snapSecondPart(placed.w);
    snappedCellWidth = rightPane.cellWidth;
}

void MainView::releaseTargets() {
    const std::lock_guard lock(paneLock);
    rightPane.releaseResources();
    leftPane.releaseResources();
    widgets.releaseTargets();
}

void MainView::onResized() {
    const std::lock_guard lock(paneLock);
    splitter.setArea({0, 0, render.width, render.height});
    splitter.restore(chosenRatio);
    layOut();
    snapToColumns();
    layOut();
}

void MainView::releaseDevice() {
    const std::lock_guard lock(paneLock);
    rightPane.releaseDevice();
    leftPane.releaseDevice();
    widgets.release();
}

void MainView::restoreDevice() {
    const std::lock_guard lock(paneLock);
    widgets.init();
    if (softwareReady) rightPane.restoreDevice();
    leftPane.restoreDevice();
    layOut();
}

void MainView::onShellChange(std::uint32_t event, const ItemIdList& first, const ItemIdList& second) {
    organizers.desktop.onShellChange(event, first, second);
    const std::lock_guard lock(paneLock);
    for (IconView* pane : {&leftPane, &rightPane}) {
        if (event == kUpdateItem && !first.empty()) pane->reloadIcon(first);
        if (event == kUpdateImage) pane->reloadAllIcons();
    }
}

// Tasks that wait or scan end soon.
void MainView::requestStop() {
    stopping = true;
    if (indexService) indexService->requestStop();
}

void MainView::shutdown() {
    requestStop();
    taskPool.stop();
    rightPane.stopIconWorker();
    leftPane.stopIconWorker();
    if (indexService) {
        indexService->stop();
        indexService->save();
    }
    watcher.stop();
    if (role.shared.organizers == &organizers) role.shared.organizers = nullptr;
    organizers.desktop.saveCache();
    const std::lock_guard lock(paneLock);
    rightPane.destroy();
    leftPane.destroy();
    widgets.release();
}

std::wstring MainView::translated(const wchar_t* key) const { return services.language.translate(key); }

void MainView::postRedraw() const { PostMessageW(render.hWnd, kMessageRedraw, 0, 0); }

}  // namespace varnelo
