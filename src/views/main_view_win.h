// Everything that one window shows.
#pragma once

#include <cstdint>
#include <mutex>

#include "model/desktop_organizer.h"
#include "model/desktop_watcher_win.h"
#include "views/icon_view_win.h"
#include "views/shell_calls_win.h"
#include "views/shell_file_actions_win.h"

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
    const Settings& settings;
    const LanguageTable& language;
};

// The tab pane with the desktop's items, the organiser behind it, and the lock between the two.
// User-interface thread only, but for the organiser's watcher, which wakes the loop and never touches a pane.
class MainView {
public:
    MainView(RenderSurface& surface, BaseView& baseView, const ViewServices& services);
    ~MainView();

    // Fills the pane. The surface and the base view are ready.
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

    // A change that the shell reported; `first` and `second` may be empty.
    void onShellChange(std::uint32_t event, const ItemIdList& first, const ItemIdList& second);

    bool cellDragActive() const { return leftPane.cellDragActive; }

    // Around a change of the surface's size.
    void releaseTargets();
    void onResized();

    // Stops the icon workers and the watcher, saves the desktop's cache, destroys the pane.
    void shutdown();

private:
    ViewRect paneRect() const;
    void onDesktopChange(const FileEntry& entry, DesktopOrganizer::Action action);

    RenderSurface& render;
    DesktopOrganizer desktopOrganizer;
    WindowsShellCalls shellCalls;
    ShellFileActions actions;  // before the panes, which hold it

    // Taken by every callback that changes a pane, and around a frame; always before an organiser's own lock.
    std::mutex paneLock;
    IconView leftPane;  // guarded by paneLock

    DesktopWatcher watcher;  // last: its thread ends before what it calls is gone
};

}  // namespace varnelo
