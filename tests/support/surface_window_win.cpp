#include "support/surface_window_win.h"

#include <vector>

namespace varnelo {

using reference::Picture;

HiddenWindow::HiddenWindow(int width, int height)
    : handle(CreateWindowExW(0, L"STATIC", L"hidden", WS_POPUP, 0, 0, width, height, nullptr, nullptr,
                             GetModuleHandleW(nullptr), nullptr)) {}

void HiddenWindow::destroy() {
    if (handle) DestroyWindow(handle);
    handle = nullptr;
}

SurfaceWindow::SurfaceWindow(int width, int height) : window(width, height) {
    ComRef<IDXGISurface> buffer;
    if (!layer.initD3D(window.get(), width, height, buffer)) return;
    surface.init(L"", window.get(), GetModuleHandleW(nullptr), layer, buffer.get(), width, height);
    base.init();
    glass.init();
    ready = true;
}

SurfaceWindow::~SurfaceWindow() {
    glass.release();
    base.release();
    surface.release();
    layer.shutdown();
}

ComRef<ID3D11ShaderResourceView> SurfaceWindow::upload(const Picture& picture) {
    const std::vector<std::uint8_t> bytes = picture.bgra();
    D3D11_TEXTURE2D_DESC description{};
    description.Width = picture.width();
    description.Height = picture.height();
    description.MipLevels = 1;
    description.ArraySize = 1;
    description.Format = DXGI_FORMAT_B8G8R8A8_UNORM;
    description.SampleDesc.Count = 1;
    description.BindFlags = D3D11_BIND_SHADER_RESOURCE;
    D3D11_SUBRESOURCE_DATA data{};
    data.pSysMem = bytes.data();
    data.SysMemPitch = picture.width() * 4;
    ComRef<ID3D11Texture2D> texture;
    ComRef<ID3D11ShaderResourceView> view;
    if (SUCCEEDED(layer.device->CreateTexture2D(&description, &data, texture.put())))
        layer.device->CreateShaderResourceView(texture.get(), nullptr, view.put());
    return view;
}

Picture SurfaceWindow::backBuffer() {
    ComRef<ID3D11Texture2D> texture;
    layer.swapChain->GetBuffer(0, IID_PPV_ARGS(texture.put()));
    return contentOf(texture.get());
}

Picture SurfaceWindow::contentOf(ID3D11ShaderResourceView* view) {
    ComRef<ID3D11Resource> resource;
    ComRef<ID3D11Texture2D> texture;
    if (view) view->GetResource(resource.put());
    if (resource) resource->QueryInterface(IID_PPV_ARGS(texture.put()));
    return contentOf(texture.get());
}

Picture SurfaceWindow::contentOf(ID3D11Texture2D* texture) {
    if (!texture) return Picture(0, 0);
    D3D11_TEXTURE2D_DESC description{};
    texture->GetDesc(&description);
    const bool blueFirst = description.Format == DXGI_FORMAT_B8G8R8A8_UNORM;
    description.Usage = D3D11_USAGE_STAGING;
    description.BindFlags = 0;
    description.CPUAccessFlags = D3D11_CPU_ACCESS_READ;
    description.MiscFlags = 0;
    ComRef<ID3D11Texture2D> staging;
    if (FAILED(layer.device->CreateTexture2D(&description, nullptr, staging.put()))) return Picture(0, 0);
    layer.context->CopyResource(staging.get(), texture);
    D3D11_MAPPED_SUBRESOURCE mapped{};
    if (FAILED(layer.context->Map(staging.get(), 0, D3D11_MAP_READ, 0, &mapped))) return Picture(0, 0);
    const int width = static_cast<int>(description.Width);
    const int height = static_cast<int>(description.Height);
    auto* bytes = static_cast<std::uint8_t*>(mapped.pData);
    std::vector<std::uint8_t> rgba;
    rgba.reserve(std::size_t(width) * height * 4);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint8_t* p = bytes + std::size_t(y) * mapped.RowPitch + std::size_t(x) * 4;
            const std::uint8_t first = blueFirst ? p[2] : p[0];
            const std::uint8_t third = blueFirst ? p[0] : p[2];
            rgba.insert(rgba.end(), {first, p[1], third, p[3]});
        }
    layer.context->Unmap(staging.get(), 0);
    return Picture::fromRgba(rgba.data(), width, height, width * 4);
}

}  // namespace varnelo
