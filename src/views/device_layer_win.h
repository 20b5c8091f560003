#pragma once

#include <d3d11.h>
#include <dxgi.h>

#include "platform/com_ref.h"

namespace varnelo {

// What a window draws into and must let go of while its swap chain changes size.
class DeviceTargets {
public:
    virtual ~DeviceTargets() = default;
    // Releases everything that refers to the back buffer or has its size.
    virtual void releaseTargets() = 0;
    // `surface` is the new back buffer; null when it could not be had.
    virtual void onResized(IDXGISurface* surface, UINT width, UINT height) = 0;
};

// The Direct3D device, context, swap chain and back buffer target of one window. Without a device every
// operation does nothing, so a window whose device could not be made stays open and undrawn.
// Belongs to the user-interface thread; the device itself is free-threaded.
class DeviceLayer {
public:
    // Gives the back buffer to the caller in `surface`. False, with the reason in the log, when there is no
    // device or no surface to draw on.
    bool initD3D(HWND window, UINT width, UINT height, ComRef<IDXGISurface>& surface);
    // Changes the swap chain's size; a size of 0 is ignored.
    void resize(UINT width, UINT height, DeviceTargets& targets);
    // Clears the back buffer to opaque black.
    void clear();
    // Waits for one vertical blank.
    void present();
    // Sleeps until the frame that was presented last is drawn, a quarter of a second at most. Without it the
    // next frame waits for room in the device's queue, for which some drivers spin.
    void awaitPresented();
    // The device was taken away (a driver that was restarted or replaced, the end of a remote session). All
    // that was made from it is worth nothing; shutdown() and initD3D() give another one.
    bool isLost() const { return lost; }
    void shutdown();

    // How many more calls of Present and ResizeBuffers succeed before one tells that the device is lost;
    // negative: nothing is feigned. For tests.
    int callsBeforeLoss = -1;

    ComRef<ID3D11Device> device;
    ComRef<ID3D11DeviceContext> context;
    ComRef<IDXGISwapChain> swapChain;
    ComRef<ID3D11RenderTargetView> backBufferView;
    ComRef<ID3D11RasterizerState> rsScissor;
    ComRef<ID3D11RasterizerState> rsDefault;

private:
    bool createDevice(HWND window, UINT width, UINT height);
    void createRasterizerStates();
    ComRef<IDXGISurface> resizedBackBuffer();
    void bindBackBuffer();
    void setViewport(UINT width, UINT height);
    HRESULT noteLoss(HRESULT result);

    ComRef<ID3D11Query> presented;  // ends behind each frame
    bool awaiting = false;
    bool lost = false;
};

}  // namespace varnelo
