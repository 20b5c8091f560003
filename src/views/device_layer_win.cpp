#include "views/device_layer_win.h"

#include "app/logger.h"
#include "platform/text.h"

namespace varnelo {

bool DeviceLayer::initD3D(HWND window, UINT width, UINT height, ComRef<IDXGISurface>& surface) {
    logInfo(L"Direct3D 11 initialization started");
    if (!createDevice(window, width, height)) return false;
    createRasterizerStates();
    const D3D11_QUERY_DESC event{D3D11_QUERY_EVENT, 0};
    device->CreateQuery(&event, presented.put());

    ComRef<ID3D11Texture2D> backBuffer;
    if (SUCCEEDED(swapChain->GetBuffer(0, IID_PPV_ARGS(backBuffer.put())))) {
        device->CreateRenderTargetView(backBuffer.get(), nullptr, backBufferView.put());
        bindBackBuffer();
        backBuffer->QueryInterface(IID_PPV_ARGS(surface.put()));
    }
    if (!surface) {
        logError(L"Failed to get IDXGISurface from backbuffer");
        return false;
    }
    setViewport(width, height);
    logInfo(formatText(L"Direct3D 11 initialization completed (%dx%d)", static_cast<int>(width),
                       static_cast<int>(height)));
    return true;
}

bool DeviceLayer::createDevice(HWND window, UINT width, UINT height) {
    DXGI_SWAP_CHAIN_DESC description{};
    description.BufferDesc.Width = width;
    description.BufferDesc.Height = height;
    description.BufferDesc.Format = DXGI_FORMAT_R8G8B8A8_UNORM;
    description.SampleDesc.Count = 1;
    description.BufferUsage = DXGI_USAGE_RENDER_TARGET_OUTPUT;
    description.BufferCount = 1;
    description.OutputWindow = window;
    description.Windowed = TRUE;
    description.SwapEffect = DXGI_SWAP_EFFECT_DISCARD;

    // Direct2D draws only on a device with BGRA support.
    const HRESULT result = D3D11CreateDeviceAndSwapChain(
        nullptr, D3D_DRIVER_TYPE_HARDWARE, nullptr, D3D11_CREATE_DEVICE_BGRA_SUPPORT, nullptr, 0,
        D3D11_SDK_VERSION, &description, swapChain.put(), device.put(), nullptr, context.put());
    if (FAILED(result)) {
        logFatal(formatText(L"D3D11CreateDeviceAndSwapChain failed: HRESULT 0x%08X",
                            static_cast<unsigned>(result)));
        return false;
    }
    logInfo(L"D3D11 Device and SwapChain created");
    return true;
}

void DeviceLayer::createRasterizerStates() {
    D3D11_RASTERIZER_DESC description{};
    description.FillMode = D3D11_FILL_SOLID;
    description.CullMode = D3D11_CULL_NONE;
    description.DepthClipEnable = TRUE;
    description.ScissorEnable = TRUE;
    device->CreateRasterizerState(&description, rsScissor.put());
    description.ScissorEnable = FALSE;
    device->CreateRasterizerState(&description, rsDefault.put());
    logInfo(L"Rasterizer states created");
}

void DeviceLayer::bindBackBuffer() {
    ID3D11RenderTargetView* const view = backBufferView.get();
    context->OMSetRenderTargets(1, &view, nullptr);
}

void DeviceLayer::setViewport(UINT width, UINT height) {
    D3D11_VIEWPORT viewport{};
    viewport.Width = static_cast<float>(width);
    viewport.Height = static_cast<float>(height);
    viewport.MaxDepth = 1;
    context->RSSetViewports(1, &viewport);
}

void DeviceLayer::resize(UINT width, UINT height, DeviceTargets& targets) {
    if (!device || !swapChain || width == 0 || height == 0) return;
    logInfo(formatText(L"Resize started: %ux%u", width, height));
    context->OMSetRenderTargets(0, nullptr, nullptr);
    backBufferView.reset();
    targets.releaseTargets();

    // Released objects live on until the context has let go of them, and ResizeBuffers refuses while one
    // does.
    context->Flush();
    if (FAILED(noteLoss(swapChain->ResizeBuffers(0, width, height, DXGI_FORMAT_UNKNOWN, 0))))
        logError(L"SwapChain ResizeBuffers failed");

    const ComRef<IDXGISurface> surface = resizedBackBuffer();
    if (surface) {
        bindBackBuffer();
        setViewport(width, height);
    }
    targets.onResized(surface.get(), width, height);
    if (surface) logInfo(L"Resize completed");
}

ComRef<IDXGISurface> DeviceLayer::resizedBackBuffer() {
    ComRef<ID3D11Texture2D> backBuffer;
    if (FAILED(swapChain->GetBuffer(0, IID_PPV_ARGS(backBuffer.put())))) {
        OutputDebugStringA("GetBuffer failed.\n");
        logError(L"GetBuffer failed after resize");
        return {};
    }
    if (FAILED(device->CreateRenderTargetView(backBuffer.get(), nullptr, backBufferView.put()))) {
        OutputDebugStringA("CreateRenderTargetView failed.\n");
        logError(L"CreateRenderTargetView failed after resize");
        return {};
    }
    ComRef<IDXGISurface> surface;
    backBuffer->QueryInterface(IID_PPV_ARGS(surface.put()));
    return surface;
}

void DeviceLayer::clear() {
    if (!context || !backBufferView) return;
    const float black[] = {0, 0, 0, 1};
    context->ClearRenderTargetView(backBufferView.get(), black);
}

void DeviceLayer::present() {
    if (!swapChain) return;
    noteLoss(swapChain->Present(1, 0));
    if (!presented) return;
    context->End(presented.get());
    awaiting = true;
}

void DeviceLayer::awaitPresented() {
    constexpr int kMostMilliseconds = 250;
    if (!awaiting) return;
    awaiting = false;
    for (int waited = 0; waited < kMostMilliseconds; ++waited) {
        if (context->GetData(presented.get(), nullptr, 0, 0) != S_FALSE) return;
        Sleep(1);
    }
}

HRESULT DeviceLayer::noteLoss(HRESULT result) {
    if (callsBeforeLoss >= 0 && callsBeforeLoss-- == 0) result = DXGI_ERROR_DEVICE_REMOVED;
    if (result == DXGI_ERROR_DEVICE_REMOVED || result == DXGI_ERROR_DEVICE_RESET) lost = true;
    return result;
}

void DeviceLayer::shutdown() {
    logInfo(L"Direct3D 11 shutdown started");
    // What is still bound would keep the device alive.
    if (context) context->ClearState();
    presented.reset();
    awaiting = false;
    rsDefault.reset();
    rsScissor.reset();
    backBufferView.reset();
    swapChain.reset();
    if (context) context->Flush();
    context.reset();
    device.reset();
    lost = false;
    logInfo(L"Direct3D 11 shutdown completed");
}

}  // namespace varnelo
