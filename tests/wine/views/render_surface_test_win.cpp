#include "views/render_surface_win.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/cursor_win.h"
#include "support/device_calls_win.h"
#include "support/log_capture.h"
#include "support/surface_fixture_win.h"

namespace varnelo {
namespace {

using reference::Picture;
constexpr int kWidth = 96;
constexpr int kHeight = 64;

using RenderSurfaceTest = SurfaceFixture;

TEST_F(RenderSurfaceTest, AStartLogsEveryStepInOrder) {
    const std::wstring path = file(L"both.bmp", bitmap(red(), green()));
    const WallpaperSetting setting(path);
    const LogCapture log;
    { const SurfaceWindow window(kWidth, kHeight); }
    expectLines(log.lines(), {
                                 L"[INFO] Direct3D 11 initialization started",
                                 L"[INFO] D3D11 Device and SwapChain created",
                                 L"[INFO] Rasterizer states created",
                                 L"[INFO] Direct3D 11 initialization completed (96x64)",
                                 L"[INFO] Render::init started",
                                 L"[INFO]   hWnd=0x",
                                 L"[INFO]   size=96x64, dpi=96, rsScissor=",
                                 L"[INFO]   Wallpaper path: " + path,
                                 L"[INFO] loadTexture: original 40x4, target 96x64",
                                 L"[INFO] loadTexture: CreateSRV hr=0x00000000, backgroundSRV=",
                                 L"[INFO]   loadTextureFromFile: OK, backgroundSRV=",
                                 L"[INFO] loadTexture: original 40x4, target 96x64",
                                 L"[INFO] loadTexture: CreateSRV hr=0x00000000, backgroundSRV=",
                                 L"[INFO]   createBackgroundQuad: vs=",
                                 L"[INFO]   OffscreenRT: sceneTexture=",
                                 L"[INFO]   D2D1CreateFactory: hr=0x00000000, d2dFactory=",
                                 L"[INFO]   DWriteCreateFactory: hr=0x00000000, dwriteFactory=",
                                 L"[INFO]   createResources: d2dRT=",
                                 L"[INFO]   BaseView::init done: constantBuffer=",
                                 L"[INFO] Direct3D 11 shutdown started",
                                 L"[INFO] Direct3D 11 shutdown completed",
                             });
}

TEST_F(RenderSurfaceTest, AStartMakesEveryObject) {
    SurfaceWindow window(kWidth, kHeight);
    const RenderSurface& surface = window.surface;
    EXPECT_TRUE(surface.d2dFactory && surface.dwriteFactory && surface.d2dRT && surface.sceneSRV);
    EXPECT_FALSE(surface.sceneD2DRT);
    EXPECT_EQ(surface.width, kWidth);
    EXPECT_EQ(surface.height, kHeight);
    EXPECT_EQ(surface.dpiScale * 96, surface.dpiX);
}

TEST_F(RenderSurfaceTest, AResizeGivesTargetsOfTheNewSize) {
    const WallpaperSetting setting(file(L"green.bmp", bitmap(green(), green())));
    SurfaceWindow window(kWidth, kHeight);
    const LogCapture log;
    window.layer.resize(130, 70, window);
    expectLines(log.lines(), {L"[INFO] Resize started: 130x70", L"[INFO] Resize completed"});
    EXPECT_EQ(window.surface.width, 130);
    EXPECT_EQ(window.surface.height, 70);
    EXPECT_TRUE(window.surface.d2dRT);
    EXPECT_EQ(window.contentOf(window.surface.sceneSRV.get()).width(), 130);
    const Picture picture = frameOf(window);
    EXPECT_EQ(picture.width(), 130);
    EXPECT_EQ(picture.height(), 70);
    EXPECT_EQ(picture.at(129, 69).g, 1);
}

TEST_F(RenderSurfaceTest, AResizeToNothingDoesNothing) {
    SurfaceWindow window(kWidth, kHeight);
    const LogCapture log;
    const ID2D1RenderTarget* before = window.surface.d2dRT.get();
    window.layer.resize(0, 0, window);
    window.layer.resize(0, 50, window);
    window.layer.resize(50, 0, window);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(window.surface.d2dRT.get(), before);
    EXPECT_EQ(window.surface.width, kWidth);
}

TEST_F(RenderSurfaceTest, AResizeLetsTheViewsGoFirstAndTellsThemLast) {
    struct Recorder : DeviceTargets {
        explicit Recorder(SurfaceWindow& w) : window(w) {}
        void releaseTargets() override {
            backBufferReleased = !window.layer.backBufferView;
            window.surface.releaseTargets();
        }
        void onResized(IDXGISurface* surface, UINT width, UINT height) override {
            backBufferBound = static_cast<bool>(window.layer.backBufferView);
            window.surface.onResized(surface, width, height);
        }
        SurfaceWindow& window;
        bool backBufferReleased = false;
        bool backBufferBound = false;
    };
    SurfaceWindow window(kWidth, kHeight);
    Recorder recorder(window);
    window.layer.resize(50, 40, recorder);
    EXPECT_TRUE(recorder.backBufferReleased);
    EXPECT_TRUE(recorder.backBufferBound);
    EXPECT_EQ(window.surface.width, 50);
}

TEST_F(RenderSurfaceTest, AResizeThatTheSwapChainRefusesIsLoggedAndGoesOn) {
    struct Holder : DeviceTargets {
        void releaseTargets() override { window.surface.releaseTargets(); }
        void onResized(IDXGISurface* buffer, UINT width, UINT height) override {
            window.surface.onResized(buffer, width, height);
        }
        SurfaceWindow window{kWidth, kHeight};
    };
    Holder holder;
    ComRef<ID3D11Texture2D> held;  // a swap chain with a buffer in use keeps its size
    holder.window.layer.swapChain->GetBuffer(0, IID_PPV_ARGS(held.put()));
    const LogCapture log;
    holder.window.layer.resize(130, 70, holder);
    expectLines(log.lines(), {L"[INFO] Resize started: 130x70", L"[ERROR] SwapChain ResizeBuffers failed",
                              L"[INFO] Resize completed"});
    EXPECT_TRUE(holder.window.layer.backBufferView);
    EXPECT_TRUE(holder.window.surface.d2dRT);
}

TEST_F(RenderSurfaceTest, TheWallpaperIsMixedByTheBlendStateOfTheDrawBefore) {
    SurfaceWindow window(kWidth, kHeight);
    window.surface.backgroundSRV = window.upload(Picture(kWidth, kHeight, {1, 1, 1, 0.5F}));
    window.layer.context->OMSetBlendState(nullptr, nullptr, 0xFFFFFFFF);
    EXPECT_EQ(frameOf(window).at(20, 20).r, 1);
    window.base.bindQuad();
    EXPECT_NEAR(frameOf(window).at(20, 20).r, 0.5F, 0.01F);
}

TEST_F(RenderSurfaceTest, AScenePassWithoutDirect2DDrawsNoViewsAndGivesTheTargetBack) {
    SurfaceWindow window(kWidth, kHeight);
    window.surface.d2dFactory.reset();
    bool called = false;
    window.surface.renderScene([&] { called = true; });
    EXPECT_FALSE(called);
    ComRef<ID3D11RenderTargetView> bound;
    window.layer.context->OMGetRenderTargets(1, bound.put(), nullptr);
    EXPECT_EQ(bound.get(), window.layer.backBufferView.get());
}

TEST_F(RenderSurfaceTest, TheScenePassDrawsTheWallpaperAndGivesTheTargetBack) {
    const WallpaperSetting setting(file(L"green.bmp", bitmap(green(), green())));
    SurfaceWindow window(kWidth, kHeight);
    window.layer.clear();
    bool called = false;
    window.surface.renderScene([&] {
        called = static_cast<bool>(window.surface.sceneD2DRT);
        ID2D1RenderTarget* const target = window.surface.sceneD2DRT.get();
        ComRef<ID2D1SolidColorBrush> brush;
        target->CreateSolidColorBrush({1, 0, 0, 1}, brush.put());
        target->BeginDraw();
        const D2D1_RECT_F corner{0, 0, 10, 10};
        target->FillRectangle(&corner, brush.get());
        EXPECT_TRUE(SUCCEEDED(target->EndDraw()));
    });
    EXPECT_TRUE(called);
    EXPECT_FALSE(window.surface.sceneD2DRT);
    ComRef<ID3D11RenderTargetView> bound;
    window.layer.context->OMGetRenderTargets(1, bound.put(), nullptr);
    EXPECT_EQ(bound.get(), window.layer.backBufferView.get());

    const Picture scene = window.contentOf(window.surface.sceneSRV.get());
    EXPECT_EQ(scene.at(5, 5).r, 1);
    EXPECT_EQ(scene.at(20, 20).r, 0);
    EXPECT_EQ(scene.at(20, 20).g, 1);
    EXPECT_EQ(window.backBuffer().at(20, 20).g, 0);
}

TEST_F(RenderSurfaceTest, AFrameAtRestCreatesNothingOnTheDevice) {
    const WallpaperSetting setting(file(L"green.bmp", bitmap(green(), green())));
    SurfaceWindow window(kWidth, kHeight);
    const IconTexture icon = window.uploadIcon(Picture(8, 8, {1, 1, 1, 0.5F}));
    const DeviceCalls calls(window.layer.device.get());
    for (int frame = 0; frame < 60; ++frame) {
        window.surface.update(0.1F);
        window.layer.clear();
        window.surface.drawBackground();
        window.glass.begin();
        window.glass.beginScissor({0, 0, 50, 50});
        window.glass.drawGlass({4, 4, 48}, icon, window.surface.backgroundSRV.get(), {true, false, false});
        window.glass.endScissor();
        window.base.drawBlurRect({0, 0, 10, 60}, window.surface.backgroundSRV.get(), scrollBarTrackTint(1));
        window.layer.present();
    }
    EXPECT_EQ(calls.created(), 0);
    window.upload(Picture(4, 4));
    EXPECT_EQ(calls.created(), 2) << "the count itself";
}

TEST_F(RenderSurfaceTest, TheCursorIsReadInClientPixels) {
    SurfaceWindow window(kWidth, kHeight);
    SetWindowPos(window.window.get(), nullptr, 30, 40, kWidth, kHeight, SWP_NOZORDER | SWP_NOACTIVATE);
    ASSERT_TRUE(restCursorAt(50, 70));
    window.surface.update(0.05F);
    EXPECT_EQ(window.surface.input.cursorX, 20);
    EXPECT_EQ(window.surface.input.cursorY, 30);
    EXPECT_EQ(window.surface.input.deltaTime, 0.05F);
    EXPECT_FALSE(window.surface.input.ctrlDown);
}

// What a program beside this one prints in a process in which Wine offers no Direct3D.
std::string printedWithoutDirect3D(const std::wstring& program, DWORD& exitCode) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring command = path;
    command = L'"' + command.substr(0, command.rfind(L'\\') + 1) + program + L'"';
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    CreatePipe(&reading, &writing, &inherit, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writing;
    PROCESS_INFORMATION process{};
    SetEnvironmentVariableW(L"WINE_D3D_CONFIG", L"renderer=no3d");
    const BOOL started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &startup, &process);
    SetEnvironmentVariableW(L"WINE_D3D_CONFIG", nullptr);
    CloseHandle(writing);
    std::string printed;
    char bytes[512];
    DWORD count = 0;
    while (started && ReadFile(reading, bytes, sizeof bytes, &count, nullptr) && count > 0)
        printed.append(bytes, count);
    CloseHandle(reading);
    if (!started) return {};
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return printed;
}

TEST_F(RenderSurfaceTest, WithoutADeviceTheProgramGoesOnAndDrawsNothing) {
    DWORD exitCode = 99;
    const std::string log = printedWithoutDirect3D(L"no_device.exe", exitCode);
    EXPECT_EQ(exitCode, 0U);
    EXPECT_NE(log.find("[FATAL] D3D11CreateDeviceAndSwapChain failed: HRESULT 0x8"), std::string::npos)
        << log;
    EXPECT_NE(log.find("[INFO]   createResources: d2dRT="), std::string::npos) << log;
    EXPECT_NE(log.find("[ERROR]   *** D2D RenderTarget is NULL \xE2\x80\x93 UI will not be drawn! ***"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("[INFO] Direct3D 11 shutdown completed"), std::string::npos) << log;
    EXPECT_EQ(log.find("Resize started"), std::string::npos) << log;
}

TEST_F(RenderSurfaceTest, ReleaseLeavesNothingAliveOnTheDevice) {
    ComRef<ID3D11Device> device;
    {
        SurfaceWindow window(kWidth, kHeight);
        device = window.layer.device;
        window.surface.renderScene([] {});
        window.layer.resize(50, 40, window);
    }
    ID3D11Device* const last = device.detach();
    EXPECT_EQ(last->Release(), 0U);
}

}  // namespace
}  // namespace varnelo
