#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "app/language_table.h"
#include "app/settings.h"
#include "model/file_probe_win.h"
#include "model/shell_namespace_win.h"
#include "platform/com_apartment.h"
#include "support/memory_settings_store.h"
#include "support/scripted_elevation.h"
#include "support/scripted_volumes.h"
#include "support/surface_window_win.h"
#include "views/main_view_win.h"

namespace varnelo {

// A whole view on a hidden surface, with the real shell and settings in memory. A hand moves the cursor.
class MainViewStage : public DeviceTargets {
public:
    MainViewStage(int width, int height);
    MainViewStage(const MainViewStage&) = delete;
    MainViewStage& operator=(const MainViewStage&) = delete;
    ~MainViewStage() override;

    // A view, as a start makes it; `monitor` beside 0 is a view that is not the primary one.
    void begin(int monitor = 0);
    // The same, and what the primary view loads is there.
    void start(int monitor = 0);
    bool loading();
    void stop();
    void restart() { stop(), start(); }

    // One frame: update and draw over a cleared window.
    bool frame(float seconds = 0.016F);
    // Frames until nothing moves. False if that does not come.
    bool settle();
    reference::Picture picture() { return window.backBuffer(); }
    void resizeTo(int width, int height);
    // The device goes and another one takes its place.
    void exchangeDevice();

    void moveTo(float x, float y);
    void press(float x, float y);
    void release(float x, float y);
    void click(float x, float y) { press(x, y), release(x, y); }
    // Presses at the first place, pulls in steps, lets go at the second.
    void drag(float fromX, float fromY, float toX, float toY);
    void clickTab(std::int32_t tab);
    void clickMenuButton();
    void clickMenuRow(std::size_t row);
    void type(std::wstring_view text);

    void releaseTargets() override;
    void onResized(IDXGISurface* buffer, UINT width, UINT height) override;

    ComApartment apartment{ComApartment::Kind::Single};
    SurfaceWindow window;
    WindowsShellNamespace shell;
    WindowsFileProbe probe;
    test::MemorySettingsStore store;
    Settings settings{&store};
    test::ScriptedVolumes volumes;      // none, unless a test puts one in
    test::ScriptedElevation elevation;  // refuses, unless a test says otherwise
    LanguageTable language;
    std::unique_ptr<SharedViews> shared;
    std::unique_ptr<MainView> view;

private:
    bool held = false;
};

}  // namespace varnelo
