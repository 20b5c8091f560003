// Everything that one window shows.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "index/index_service.h"
#include "model/desktop_watcher_win.h"
#include "views/deferred_file_actions.h"
#include "views/icon_view_win.h"
#include "views/load_progress.h"
#include "views/main_view_widgets_win.h"
#include "views/organizer_set.h"
#include "views/shell_file_actions_win.h"
#include "views/splitter.h"
#include "views/task_pool.h"

namespace varnelo {

class BaseView;
class Clock;
class FileProbe;
class LanguageTable;
class RenderSurface;
class Settings;
class ShellNamespace;

// What the views work with; everything outlives them.
struct ViewServices {
    const ShellNamespace& shell;
    const FileProbe& files;
    const Clock& clock;
    Settings& settings;
    const LanguageTable& language;
    VolumeSource& volumes;
    ElevatedRun& elevation;
};

// Which of the process's views this is.
struct ViewRole {
    SharedViews& shared;
    bool primary = true;
    int monitor = 0;  // the key of its own settings
};

// On the left the tabbed area (menu button, tab strip, search panel, the tab's pane), the splitter's bar, on
// the right the software pane, over all of them the progress bar; and the organisers and tasks that fill
// them.
//
// User-interface thread only. The organiser's watcher and the tasks only wake the loop; none touches a pane.
class MainView {
public:
    enum Tab : std::int32_t { DesktopTab = 0, OverviewTab = 1, SystemTab = 2, SearchTab = 3 };
    static constexpr std::int32_t kTabs = 4;

    MainView(RenderSurface& surface, BaseView& baseView, const ViewServices& services, const ViewRole& role);
    ~MainView();

    // Builds the view and fills it. The surface and the base view are ready.
    void init();

    // Hands over what the watcher saw, moves everything on, saves when the order of cells changed. True while
    // anything moves.
    bool update();

    // `toScene`: into the offscreen scene, behind a dragged cell.
    void draw(bool toScene);

    void onMouseDown();
    void onMouseUp();
    void onMouseMove(bool leftButtonDown);
    void onMouseWheel(float delta);
    void onDoubleClick();
    void onRightClick();
    void onKeyDown(int virtualKey);
    void onChar(wchar_t unit);

    // A change that the shell reported; `first` and `second` may be empty.
    void onShellChange(std::uint32_t event, const ItemIdList& first, const ItemIdList& second);
    // The language table has other texts.
    void onLanguageChanged();
    // Scans the volumes anew, as a task of the primary view; on another view nothing.
    void rebuildNTFSIndex();

    bool cellDragActive() const { return leftPane.cellDragActive || rightPane.cellDragActive; }
    // The loop then wakes in time for the caret.
    bool caretBlinks() const { return searchVisible && widgets.searchPanel.hasFocus(); }

    // Around a change of the surface's size.
    void releaseTargets();
    void onResized();
    // Around the loss of the device: all that was made from it goes, the content stays and shows again.
    void releaseDevice();
    void restoreDevice();

    // Stops the tasks, the icon workers and the watcher, saves the caches, destroys the panes.
    void shutdown();

    // What the menu's rows do beside EXIT; an empty one does nothing.
    struct MenuCommands {
        std::function<void()> openSettings, openMonitors, openInfo;
    };
    MenuCommands menuCommands;

    std::int32_t activeTab() const { return widgets.tabStrip.activeIndex; }
    const Splitter& splitterBar() const { return splitter; }
    const ViewLayout& layout() const { return places; }
    const MenuBar& menu() const { return widgets.menuBar; }
    const TabStrip& tabs() const { return widgets.tabStrip; }
    SearchPanel& search() { return widgets.searchPanel; }
    IconView& tabPane() { return leftPane; }
    IconView& softwarePane() { return rightPane; }
    TaskPool& tasks() { return taskPool; }
    LoadProgress& progress() { return loadProgress; }
    const WidgetStatistics& widgetStatistics() const { return widgets.made(); }

private:
    enum class Press { None, MenuButton, OpenMenu, View };

    // All of these expect `paneLock` to be held, but for clickMenu().
    void initMenu();
    void initTabs();
    void initPanes();
    void initSoftwarePane();
    void initTasks();
    void initWorkerTasks();
    void requestStop();
    void initSecondaryTasks();
    void setTexts();
    bool updateSoftwarePane();

    ViewLayoutInput layoutInput() const;
    void layOut();
    void snapToColumns();

    // Tabs (main_view_tabs_win.cpp).
    void activateTab(std::int32_t index);
    void showTab(std::int32_t tab);
    void enterSearch();
    void leaveSearch();
    void saveTab(std::int32_t tab);
    void saveChangedOrder();
    void onDesktopChange(const FileEntry& entry, DesktopOrganizer::Action action);  // takes `paneLock`

    // Mouse (main_view_input_win.cpp).
    template <class Call>
    void callPanes(Call call);
    void pressView();
    void releaseView();
    void endSplitterDrag();
    void clickMenu(Press taken);
    bool overBar() const;
    bool overPanel() const;
    void setSizeCursor() const;
    float cursorX() const;
    float cursorY() const;

    std::wstring translated(const wchar_t* key) const;
    void postRedraw() const;

    RenderSurface& render;
    BaseView& base;
    const ViewServices services;
    const ViewRole role;
    OrganizerSet organizers;

    LoadProgress loadProgress;
    std::unique_ptr<IndexService> indexService;  // of the primary view; outlives the tasks that use it
    TaskPool taskPool;

    WindowsShellCalls shellCalls;
    ShellFileActions shellActions;
    DeferredFileActions fileActions;

    MainViewWidgets widgets;
    Splitter splitter;
    ViewLayout places;
    ProgressEasing progressEasing;
    bool searchVisible = false;
    double lastUpdate = 0;                 // steady seconds
    std::atomic<bool> searchReady{false};  // set by a task, taken up by the next frame
    std::atomic<bool> stopping{false};

    Press press = Press::None;  // where the button went down that is held
    std::int32_t pressedTab = -1;

    // Taken by every callback that changes a pane, and around a frame; always before an organiser's own lock.
    // Never held while a menu is open or a file operation runs: they serve messages that may need it.
    std::mutex paneLock;
    IconView rightPane;          // guarded by paneLock
    IconView leftPane;           // guarded by paneLock
    bool softwareReady = false;  // the software pane was shown before, so that it has what it draws with
    float chosenRatio = 0;       // of the splitter, as the user left it; a window's size does not change it
    float snappedCellWidth = 0;  // what the software pane's width was cut to

    DesktopWatcher watcher;  // last: its thread ends before what it calls is gone
};

}  // namespace varnelo
