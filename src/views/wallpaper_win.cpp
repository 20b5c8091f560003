#include "views/wallpaper_win.h"

#include <wincodec.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <new>

#include "app/logger.h"
#include "platform/com_apartment.h"
#include "platform/text.h"
#include "views/texture_shape_win.h"

namespace varnelo {

namespace {

struct Pixels {
    std::unique_ptr<std::uint8_t[]> bytes;
    UINT stride = 0;
};

bool failed(const wchar_t* line) {
    logError(line);
    return false;
}

ComRef<IWICBitmapFrameDecode> openFirstFrame(IWICImagingFactory* factory, const std::wstring& path) {
    ComRef<IWICBitmapDecoder> decoder;
    const HRESULT result = factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ,
                                                              WICDecodeMetadataCacheOnLoad, decoder.put());
    if (FAILED(result)) {
        logError(formatText(L"loadTexture: CreateDecoderFromFilename FAILED hr=0x%08X file=%ls",
                            static_cast<unsigned>(result), path.c_str()));
        return {};
    }
    ComRef<IWICBitmapFrameDecode> frame;
    if (FAILED(decoder->GetFrame(0, frame.put()))) {
        failed(L"loadTexture: GetFrame failed");
        return {};
    }
    return frame;
}

// A lazy chain: nothing is decoded until the pixels are copied.
bool scaledTo(IWICImagingFactory* factory, IWICBitmapSource* source, UINT width, UINT height,
              ComRef<IWICBitmapScaler>& scaler) {
    if (FAILED(factory->CreateBitmapScaler(scaler.put())))
        return failed(L"loadTexture: CreateBitmapScaler failed");
    if (FAILED(scaler->Initialize(source, width, height, WICBitmapInterpolationModeFant)))
        return failed(L"loadTexture: scaler Initialize failed");
    return true;
}

bool convertedToBgra(IWICImagingFactory* factory, IWICBitmapSource* source,
                     ComRef<IWICFormatConverter>& converter) {
    if (FAILED(factory->CreateFormatConverter(converter.put())))
        return failed(L"loadTexture: CreateFormatConverter failed");
    if (FAILED(converter->Initialize(source, GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr,
                                     0, WICBitmapPaletteTypeCustom)))
        return failed(L"loadTexture: converter Initialize failed");
    return true;
}

bool copyPixels(IWICBitmapSource* source, UINT width, UINT height, Pixels& pixels) {
    const std::uint64_t stride = std::uint64_t{width} * 4;
    const std::uint64_t size = stride * height;
    if (stride <= std::numeric_limits<UINT>::max() && size <= std::numeric_limits<UINT>::max())
        pixels.bytes.reset(new (std::nothrow) std::uint8_t[size]);
    pixels.stride = static_cast<UINT>(stride);
    if (!pixels.bytes ||
        FAILED(source->CopyPixels(nullptr, pixels.stride, static_cast<UINT>(size), pixels.bytes.get())))
        return failed(L"loadTexture: CopyPixels failed");
    return true;
}

bool decodePixels(const std::wstring& path, UINT width, UINT height, Pixels& pixels) {
    const ComApartment apartment(ComApartment::Kind::Single);
    ComRef<IWICImagingFactory> factory;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_PPV_ARGS(factory.put()))))
        return failed(L"loadTexture: CoCreateInstance WIC failed");
    const ComRef<IWICBitmapFrameDecode> frame = openFirstFrame(factory.get(), path);
    if (!frame) return false;

    UINT originalWidth = 0;
    UINT originalHeight = 0;
    frame->GetSize(&originalWidth, &originalHeight);
    logInfo(formatText(L"loadTexture: original %ux%u, target %ux%u", originalWidth, originalHeight, width,
                       height));
    ComRef<IWICBitmapScaler> scaler;
    ComRef<IWICFormatConverter> converter;
    return scaledTo(factory.get(), frame.get(), width, height, scaler) &&
           convertedToBgra(factory.get(), scaler.get(), converter) &&
           copyPixels(converter.get(), width, height, pixels);
}

}  // namespace

std::wstring desktopWallpaperPath() {
    wchar_t path[260] = {};
    if (!SystemParametersInfoW(SPI_GETDESKWALLPAPER, 260, path, 0)) return {};
    path[259] = 0;
    return path;
}

bool loadTexture(ID3D11Device* device, const std::wstring& path, UINT width, UINT height,
                 ComRef<ID3D11ShaderResourceView>& view) {
    Pixels pixels;
    if (!device || !decodePixels(path, width, height, pixels)) return false;

    const D3D11_TEXTURE2D_DESC description = bgraTexture(width, height, D3D11_BIND_SHADER_RESOURCE);
    D3D11_SUBRESOURCE_DATA data{};
    data.pSysMem = pixels.bytes.get();
    data.SysMemPitch = pixels.stride;
    ComRef<ID3D11Texture2D> texture;
    if (FAILED(device->CreateTexture2D(&description, &data, texture.put())))
        return failed(L"loadTexture: CreateTexture2D failed");
    const HRESULT result = device->CreateShaderResourceView(texture.get(), nullptr, view.put());
    logInfo(formatText(L"loadTexture: CreateSRV hr=0x%08X, backgroundSRV=%p", static_cast<unsigned>(result),
                       static_cast<void*>(view.get())));
    return SUCCEEDED(result);
}

}  // namespace varnelo
