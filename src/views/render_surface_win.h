#pragma once

#include <d2d1.h>
#include <d3d11.h>
#include <dwrite.h>

#include <functional>
#include <string>

#include "platform/com_ref.h"
#include "views/frame_input.h"

namespace varnelo {

class DeviceLayer;

// One drawing surface: the device pointers of a window, the wallpaper, the offscreen scene, and the Direct2D
// and DirectWrite objects that the views draw with. Without a device every operation does nothing, and a
// pointer that could not be made stays null. Belongs to the user-interface thread.
class RenderSurface {
public:
    // Logs every step. `deviceLayer` must stay alive until release(); `surface` is its back buffer.
    void init(const std::wstring& programDataPath, HWND window, HINSTANCE instance, DeviceLayer& deviceLayer,
              IDXGISurface* surface, UINT surfaceWidth, UINT surfaceHeight);
    // Cursor in client pixels and the state of Ctrl and Shift.
    void refreshInput();
    // A frame's start: input, frame time in seconds, wallpaper check.
    void update(float deltaTime);
    // The wallpaper over the whole bound target. Sets no blend state: that of the draw before stays.
    void drawBackground();
    // A Direct2D target over a surface of the device, one unit a pixel whatever the monitor's DPI; null if it
    // cannot be made.
    ComRef<ID2D1RenderTarget> makeTarget(IDXGISurface* target, DXGI_FORMAT format) const;
    // The offscreen scene anew: wallpaper, then what `drawViews` draws while `sceneD2DRT` is set. The bound
    // target is bound again afterwards.
    void renderScene(const std::function<void()>& drawViews);

    // Around a resize of the swap chain: first releaseTargets(), then onResized() with the new back buffer.
    // Views release what they made from `d2dRT` before, and lay out after.
    void releaseTargets();
    void onResized(IDXGISurface* surface, UINT surfaceWidth, UINT surfaceHeight);
    // Releases everything owned. Views release what they made from it before.
    void release();

    std::wstring dataPath;
    HWND hWnd = nullptr;
    HINSTANCE hInstance = nullptr;

    // Not owned.
    ID3D11Device* device = nullptr;
    ID3D11DeviceContext* context = nullptr;
    IDXGISwapChain* swapChain = nullptr;
    ID3D11RasterizerState* rsScissor = nullptr;
    ID3D11RasterizerState* rsDefault = nullptr;

    ComRef<ID2D1Factory> d2dFactory;
    ComRef<ID2D1RenderTarget> d2dRT;  // over the back buffer
    ComRef<IDWriteFactory> dwriteFactory;
    ComRef<ID3D11ShaderResourceView> backgroundSRV;  // the wallpaper; null when it could not be loaded
    ComRef<ID3D11ShaderResourceView> sceneSRV;
    ComRef<ID2D1RenderTarget> sceneD2DRT;  // over the offscreen scene, only during renderScene()

    float width = 0, height = 0;  // pixels
    FrameInput input;
    float dpiScale = 1;
    float dpiX = 96, dpiY = 96;

    std::wstring wallpaperPath;  // the path last read

private:
    void logInitStart(IDXGISurface* surface, UINT surfaceWidth, UINT surfaceHeight, UINT dpi) const;
    void createBackgroundQuad();
    void createOffscreenTarget();
    void createFactories();
    enum class LogResult { No, Yes };
    void createD2DTarget(IDXGISurface* surface, LogResult logResult);
    bool loadWallpaper();
    void checkWallpaper(float deltaTime);
    void drawScene(const std::function<void()>& drawViews);

    ComRef<ID3D11SamplerState> sampler;
    ComRef<ID3D11Buffer> vertexBuffer;
    ComRef<ID3D11VertexShader> vs;
    ComRef<ID3D11PixelShader> ps;
    ComRef<ID3D11InputLayout> inputLayout;
    ComRef<ID3D11Texture2D> m_sceneTexture;
    ComRef<ID3D11RenderTargetView> sceneRTV;
    float wallpaperCheckTimer = 0;  // seconds of frame time since the last comparison
};

}  // namespace varnelo
