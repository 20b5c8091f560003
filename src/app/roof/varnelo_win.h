// The application: start, loop and stop, in their order.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "app/roof/frame_clock.h"
#include "desktop/window_state_win.h"
#include "index/elevated_run_win.h"
#include "index/volume_source_win.h"
#include "model/file_probe_win.h"
#include "model/shell_namespace_win.h"
#include "views/device_layer_win.h"
#include "views/render_win.h"

namespace varnelo {

// Process-wide, built on first use, main thread only. Messages and frames share the one loop of run().
class Varnelo {
public:
    static Varnelo& instance();
    Varnelo(const Varnelo&) = delete;
    Varnelo& operator=(const Varnelo&) = delete;

    // Starts, serves messages and frames until the main window is gone, stops. Returns the exit code: that of
    // the quit message, 0 when no window could be made.
    int run(HINSTANCE instance, bool windowed);

    // What a crash leaves to do before the report is written. On the main thread: the caches are saved and
    // the window goes, within a short limit whatever state the crash left behind. On another thread nothing,
    // since the main thread goes on using the views.
    void crashCleanup();

private:
    Varnelo();
    ~Varnelo();

    void startLogger();
    void loadLanguage();
    void registerWindowClass();
    bool createWindow();
    void initRender(UINT width, UINT height);
    WPARAM messageLoop();
    void drawFrame();
    void stopRouting();
    void recoverDevice();
    void endSession();
    void cleanup();

    std::wstring title;  // also names the folders of caches and reports
    std::wstring windowClassName;

    const WindowsShellNamespace shellNamespace;
    const WindowsFileProbe fileProbe;
    WindowsVolumeSource volumeSource;
    WindowsElevatedRun elevatedRun;
    const ViewServices services;
    DeviceLayer device;
    SharedViews sharedViews;
    std::unique_ptr<Render> render;

    HINSTANCE instanceHandle = nullptr;
    WindowState window;
    ULONG shellNotifyId = 0;
    FrameClock frameClock;
    DWORD mainThreadId = 0;
};

}  // namespace varnelo
