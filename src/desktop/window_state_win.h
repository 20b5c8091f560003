// What the window procedure and the loop share: one record, owned by the application object, main thread
// only.
#pragma once

#include <windows.h>

#include <functional>

#include "desktop/multi_monitor_manager_win.h"
#include "views/window_messages_win.h"

namespace varnelo {

class Render;

struct WindowState {
    HWND mainWindow = nullptr;
    bool windowed = false;

    // The frame flag: the loop draws one frame and clears it. Set at the start, so that the first idle pass
    // draws.
    bool redrawRequested = true;

    // Client size of the main window in pixels; a pending resize is applied by the next frame.
    bool resizePending = false;
    UINT width = 0;
    UINT height = 0;

    // Filled when the loop is about to start: input that arrives before has no view to go to and is dropped.
    HWND routedMainWindow = nullptr;
    Render* routedMainRender = nullptr;

    MultiMonitorManager monitors;

    // The session ends: save what must be saved, at once. The system ends the process next.
    std::function<void()> endSession;
};

}  // namespace varnelo
