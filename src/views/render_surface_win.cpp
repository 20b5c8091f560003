#include "views/render_surface_win.h"

#include <cstdint>

#include "app/logger.h"
#include "platform/text.h"
#include "views/device_layer_win.h"
#include "views/quad_geometry_win.h"
#include "views/shader_text_win.h"
#include "views/texture_shape_win.h"
#include "views/wallpaper_win.h"

namespace varnelo {

namespace {

constexpr float kWallpaperCheckSeconds = 5.0F;

constexpr QuadVertex kFullScreenQuad[4] = {
    {-1, -1, 0, 0, 1}, {-1, 1, 0, 0, 0}, {1, -1, 0, 1, 1}, {1, 1, 0, 1, 0}};

constexpr char kQuadVertexShader[] =
    "struct VS_IN { float3 pos : POSITION; float2 uv : TEXCOORD; };"
    "struct PS_IN { float4 pos : SV_POSITION; float2 uv : TEXCOORD; };"
    "PS_IN main(VS_IN input) {PS_IN o; o.pos=float4(input.pos,1); o.uv=input.uv; return o;}";

constexpr char kQuadPixelShader[] =
    "Texture2D tex0 : register(t0);SamplerState samp : register(s0);"
    "float4 main(float4 pos:SV_POSITION,float2 uv:TEXCOORD):SV_TARGET{ return tex0.Sample(samp, uv); }";

// For a log line: the address of what a reference holds.
template <class T>
void* pointerOf(const ComRef<T>& reference) {
    return reference.get();
}

const wchar_t* okOrFailed(bool ok) { return ok ? L"OK" : L"FAILED"; }

bool keyDown(int virtualKey) { return GetKeyState(virtualKey) < 0; }

}  // namespace

void RenderSurface::init(const std::wstring& programDataPath, HWND window, HINSTANCE instance,
                         DeviceLayer& deviceLayer, IDXGISurface* surface, UINT surfaceWidth,
                         UINT surfaceHeight) {
    dataPath = programDataPath;
    hWnd = window;
    hInstance = instance;
    device = deviceLayer.device.get();
    context = deviceLayer.context.get();
    swapChain = deviceLayer.swapChain.get();
    rsScissor = deviceLayer.rsScissor.get();
    rsDefault = deviceLayer.rsDefault.get();
    width = static_cast<float>(surfaceWidth);
    height = static_cast<float>(surfaceHeight);
    const UINT dpi = GetDpiForWindow(window);
    logInitStart(surface, surfaceWidth, surfaceHeight, dpi);
    dpiX = dpiY = static_cast<float>(dpi);
    dpiScale = static_cast<float>(dpi) / 96.0F;

    wallpaperPath = desktopWallpaperPath();
    logInfo(formatText(L"  Wallpaper path: %ls", wallpaperPath.c_str()));
    const bool loaded = loadWallpaper();
    logInfo(formatText(L"  loadTextureFromFile: %ls, backgroundSRV=%p", okOrFailed(loaded),
                       pointerOf(backgroundSRV)));
    createBackgroundQuad();
    createOffscreenTarget();
    logInfo(formatText(L"  OffscreenRT: sceneTexture=%p, sceneRTV=%p, sceneSRV=%p", pointerOf(m_sceneTexture),
                       pointerOf(sceneRTV), pointerOf(sceneSRV)));
    createFactories();
    createD2DTarget(surface, LogResult::Yes);
}

void RenderSurface::logInitStart(IDXGISurface* surface, UINT surfaceWidth, UINT surfaceHeight,
                                 UINT dpi) const {
    logInfo(L"Render::init started");
    const auto windowNumber = static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(hWnd));
    logInfo(formatText(L"  hWnd=0x%08X, device=%p, dxgiSurface=%p, context=%p, swapChain=%p", windowNumber,
                       static_cast<void*>(device), static_cast<void*>(surface), static_cast<void*>(context),
                       static_cast<void*>(swapChain)));
    logInfo(formatText(L"  size=%ux%u, dpi=%u, rsScissor=%p, rsDefault=%p", surfaceWidth, surfaceHeight, dpi,
                       static_cast<void*>(rsScissor), static_cast<void*>(rsDefault)));
}

void RenderSurface::createBackgroundQuad() {
    if (device) {
        const VertexShader vertex = createVertexShader(device, {kQuadVertexShader, nullptr});
        vs = vertex.shader;
        inputLayout = createQuadLayout(device, vertex.code.get());
        ps = createPixelShader(device, {kQuadPixelShader, nullptr});
        vertexBuffer = createQuadVertices(device, kFullScreenQuad);
        sampler = createLinearClampSampler(device);
        // The picture may have been changed since init() read it.
        wallpaperPath = desktopWallpaperPath();
        loadWallpaper();
    }
    logInfo(formatText(L"  createBackgroundQuad: vs=%p, ps=%p, inputLayout=%p, vertexBuffer=%p, sampler=%p",
                       pointerOf(vs), pointerOf(ps), pointerOf(inputLayout), pointerOf(vertexBuffer),
                       pointerOf(sampler)));
}

void RenderSurface::createOffscreenTarget() {
    if (!device) return;
    const D3D11_TEXTURE2D_DESC description =
        bgraTexture(static_cast<UINT>(width), static_cast<UINT>(height), kTargetAndSource);
    if (FAILED(device->CreateTexture2D(&description, nullptr, m_sceneTexture.put()))) return;
    if (FAILED(device->CreateRenderTargetView(m_sceneTexture.get(), nullptr, sceneRTV.put()))) return;
    device->CreateShaderResourceView(m_sceneTexture.get(), nullptr, sceneSRV.put());
}

void RenderSurface::createFactories() {
    const HRESULT d2dResult = D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory),
                                                nullptr, reinterpret_cast<void**>(d2dFactory.put()));
    logInfo(formatText(L"  D2D1CreateFactory: hr=0x%08X, d2dFactory=%p", static_cast<unsigned>(d2dResult),
                       pointerOf(d2dFactory)));
    const HRESULT textResult = DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                                                   reinterpret_cast<IUnknown**>(dwriteFactory.put()));
    logInfo(formatText(L"  DWriteCreateFactory: hr=0x%08X, dwriteFactory=%p",
                       static_cast<unsigned>(textResult), pointerOf(dwriteFactory)));
}

void RenderSurface::createD2DTarget(IDXGISurface* surface, LogResult logResult) {
    d2dRT.reset();
    if (surface) d2dRT = makeTarget(surface, DXGI_FORMAT_UNKNOWN);
    if (logResult == LogResult::Yes) logInfo(formatText(L"  createResources: d2dRT=%p", pointerOf(d2dRT)));
    if (!d2dRT) logError(L"  *** D2D RenderTarget is NULL \u2013 UI will not be drawn! ***");
}

ComRef<ID2D1RenderTarget> RenderSurface::makeTarget(IDXGISurface* target, DXGI_FORMAT format) const {
    constexpr float kUnitsAreDots = 96;
    ComRef<ID2D1RenderTarget> made;
    D2D1_RENDER_TARGET_PROPERTIES properties{};
    properties.pixelFormat = {format, D2D1_ALPHA_MODE_PREMULTIPLIED};
    if (!d2dFactory || FAILED(d2dFactory->CreateDxgiSurfaceRenderTarget(target, &properties, made.put())))
        return {};
    made->SetDpi(kUnitsAreDots, kUnitsAreDots);
    return made;
}

bool RenderSurface::loadWallpaper() {
    return loadTexture(device, wallpaperPath, static_cast<UINT>(width), static_cast<UINT>(height),
                       backgroundSRV);
}

void RenderSurface::refreshInput() {
    POINT cursor{};
    if (GetCursorPos(&cursor) && ScreenToClient(hWnd, &cursor)) {
        input.cursorX = static_cast<float>(cursor.x);
        input.cursorY = static_cast<float>(cursor.y);
    }
    input.ctrlDown = keyDown(VK_CONTROL);
    input.shiftDown = keyDown(VK_SHIFT);
    input.altDown = keyDown(VK_MENU);
}

void RenderSurface::update(float deltaTime) {
    refreshInput();
    input.deltaTime = deltaTime;
    checkWallpaper(deltaTime);
}

void RenderSurface::checkWallpaper(float deltaTime) {
    if (!device) return;
    wallpaperCheckTimer += deltaTime;
    if (wallpaperCheckTimer < kWallpaperCheckSeconds) return;
    wallpaperCheckTimer = 0;
    const std::wstring path = desktopWallpaperPath();
    if (path == wallpaperPath) return;
    logInfo(L"Wallpaper changed detected \u2013 reloading texture");
    logInfo(formatText(L"  Old: %ls", wallpaperPath.c_str()));
    logInfo(formatText(L"  New: %ls", path.c_str()));
    wallpaperPath = path;
    backgroundSRV.reset();
    const bool loaded = loadWallpaper();
    logInfo(formatText(L"  Wallpaper reload: %ls, backgroundSRV=%p", okOrFailed(loaded),
                       pointerOf(backgroundSRV)));
}

void RenderSurface::drawBackground() {
    // With no texture bound some devices sample the one that was there before.
    if (!context || !vs || !ps || !backgroundSRV) return;
    bindQuadGeometry(context, vertexBuffer.get(), inputLayout.get());
    context->VSSetShader(vs.get(), nullptr, 0);
    context->PSSetShader(ps.get(), nullptr, 0);
    ID3D11ShaderResourceView* const source = backgroundSRV.get();
    context->PSSetShaderResources(0, 1, &source);
    ID3D11SamplerState* const linear = sampler.get();
    context->PSSetSamplers(0, 1, &linear);
    context->Draw(4, 0);
}

void RenderSurface::renderScene(const std::function<void()>& drawViews) {
    if (!context || !sceneRTV) return;
    ComRef<ID3D11RenderTargetView> savedTarget;
    ComRef<ID3D11DepthStencilView> savedDepth;
    context->OMGetRenderTargets(1, savedTarget.put(), savedDepth.put());

    // A dragged icon of the frame before may still sample the texture that is drawn to now.
    ID3D11ShaderResourceView* const none[2] = {};
    context->PSSetShaderResources(0, 2, none);
    ID3D11RenderTargetView* const scene = sceneRTV.get();
    context->OMSetRenderTargets(1, &scene, nullptr);
    const float transparent[] = {0, 0, 0, 0};
    context->ClearRenderTargetView(scene, transparent);
    drawBackground();
    drawScene(drawViews);

    ID3D11RenderTargetView* const saved = savedTarget.get();
    context->OMSetRenderTargets(1, &saved, savedDepth.get());
}

void RenderSurface::drawScene(const std::function<void()>& drawViews) {
    ComRef<IDXGISurface> surface;
    if (FAILED(m_sceneTexture->QueryInterface(IID_PPV_ARGS(surface.put())))) {
        OutputDebugStringW(L"Failed to get IDXGISurface from m_sceneTexture\n");
        return;
    }
    sceneD2DRT = makeTarget(surface.get(), DXGI_FORMAT_B8G8R8A8_UNORM);
    if (!sceneD2DRT) {
        OutputDebugStringW(L"Failed to create D2D render target from DXGI surface\n");
        return;
    }
    drawViews();
    sceneD2DRT.reset();
}

void RenderSurface::releaseTargets() {
    sceneSRV.reset();
    sceneRTV.reset();
    m_sceneTexture.reset();
    d2dRT.reset();
}

void RenderSurface::onResized(IDXGISurface* surface, UINT surfaceWidth, UINT surfaceHeight) {
    width = static_cast<float>(surfaceWidth);
    height = static_cast<float>(surfaceHeight);
    createOffscreenTarget();
    createD2DTarget(surface, LogResult::No);
}

void RenderSurface::release() {
    releaseTargets();
    dwriteFactory.reset();
    d2dFactory.reset();
    inputLayout.reset();
    ps.reset();
    vs.reset();
    vertexBuffer.reset();
    sampler.reset();
    backgroundSRV.reset();
    rsDefault = rsScissor = nullptr;
    swapChain = nullptr;
    context = nullptr;
    device = nullptr;
}

}  // namespace varnelo
