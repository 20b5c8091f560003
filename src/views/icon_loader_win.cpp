#include "views/icon_loader_win.h"

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/com_apartment.h"
#include "platform/handles_win.h"
#include "platform/item_id_list_win.h"
#include "views/icon_pixels.h"
#include "views/texture_shape_win.h"

namespace varnelo {

namespace {

struct IconImage {
    UINT width = 0, height = 0;
    std::vector<std::uint32_t> pixels;  // 0xAARRGGBB, top row first
    bool blank = false;                 // the icon has neither colours nor alpha
};

// The screen's device context, lent for a conversion.
class ScreenDC {
public:
    ScreenDC() : context(GetDC(nullptr)) {}
    ScreenDC(const ScreenDC&) = delete;
    ScreenDC& operator=(const ScreenDC&) = delete;
    ~ScreenDC() {
        if (context) ReleaseDC(nullptr, context);
    }
    HDC get() const { return context; }

private:
    HDC context;
};

// Beyond what any icon has; keeps the pixel count far from overflow.
constexpr LONG kLargestEdge = 4096;

// Empty if the bitmap does not have that size.
std::vector<std::uint32_t> pixelsOf(HBITMAP bitmap, LONG width, LONG height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const ScreenDC screen;
    if (GetDIBits(screen.get(), bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS) !=
        height) {
        pixels.clear();
    }
    return pixels;
}

// No pixels on failure.
IconImage imageOf(HICON icon) {
    IconImage image;
    ICONINFO info{};
    if (!GetIconInfo(icon, &info)) return image;
    const BitmapHandle colour(info.hbmColor);
    const BitmapHandle mask(info.hbmMask);
    BITMAP size{};
    if (!GetObjectW(colour.get(), sizeof size, &size)) return image;
    if (size.bmWidth <= 0 || size.bmHeight <= 0) return image;
    if (size.bmWidth > kLargestEdge || size.bmHeight > kLargestEdge) return image;
    image.width = static_cast<UINT>(size.bmWidth);
    image.height = static_cast<UINT>(size.bmHeight);
    image.pixels = pixelsOf(colour.get(), size.bmWidth, size.bmHeight);
    if (!image.pixels.empty()) {
        image.blank =
            std::all_of(image.pixels.begin(), image.pixels.end(), [](std::uint32_t p) { return p == 0; });
        alphaFromMask(image.pixels, pixelsOf(mask.get(), size.bmWidth, size.bmHeight));
    }
    return image;
}

// The system's list is one for the whole process and draws through one device context, which serves one
// thread at a time: a copy that another thread is in the way of fails without a word, and leaves an icon
// blank. So loaders take turns; the shell may still be adding to the list, and then the icon is asked for
// again.
IconImage imageAt(IImageList& list, int index) {
    static std::mutex turn;
    constexpr int kMostTries = 5;
    constexpr DWORD kPauseMilliseconds = 5;
    IconImage image;
    for (int tries = 1; tries <= kMostTries; ++tries) {
        if (tries > 1) Sleep(kPauseMilliseconds);
        const std::lock_guard lock(turn);
        IconHandle icon;
        if (FAILED(list.GetIcon(index, ILD_NORMAL, icon.put())) || !icon) return {};
        image = imageOf(icon.get());
        if (!image.blank) break;
    }
    return image;
}

std::shared_ptr<IconTexture> createTexture(ID3D11Device* device, const IconImage& image) {
    const D3D11_TEXTURE2D_DESC description =
        bgraTexture(image.width, image.height, D3D11_BIND_SHADER_RESOURCE);
    const D3D11_SUBRESOURCE_DATA data{image.pixels.data(), image.width * 4, 0};
    ComRef<ID3D11Texture2D> texture;
    auto icon = std::make_shared<IconTexture>();
    if (FAILED(device->CreateTexture2D(&description, &data, texture.put())) ||
        FAILED(device->CreateShaderResourceView(texture.get(), nullptr, icon->view.put()))) {
        return nullptr;
    }
    return icon;
}

// Negative if the shell knows no icon.
int imageIndexOf(const ItemIdList& item) {
    SHFILEINFOW info{};
    info.iIcon = -1;
    const auto* const path = reinterpret_cast<LPCWSTR>(shellIdList(item));
    if (!SHGetFileInfoW(path, 0, &info, sizeof info, SHGFI_PIDL | SHGFI_SYSICONINDEX)) return -1;
    return info.iIcon;
}

}  // namespace

bool IconLoader::init(ID3D11Device* graphicsDevice) {
    release();
    setDevice(graphicsDevice);
    SHGetImageList(SHIL_EXTRALARGE, __uuidof(IImageList), extraLarge.putVoid());
    SHGetImageList(SHIL_JUMBO, __uuidof(IImageList), jumbo.putVoid());
    return extraLarge && jumbo;
}

void IconLoader::release() {
    setDevice(nullptr);
    extraLarge.reset();
    jumbo.reset();
}

void IconLoader::setDevice(ID3D11Device* graphicsDevice) {
    std::shared_ptr<Textures> next;
    if (graphicsDevice) {
        next = std::make_shared<Textures>();
        next->device = ComRef<ID3D11Device>(graphicsDevice);
    }
    // The old ones end after the lock.
    const std::lock_guard lock(mutex);
    textures.swap(next);
}

std::shared_ptr<IconLoader::Textures> IconLoader::currentTextures() const {
    const std::lock_guard lock(mutex);
    return textures;
}

int IconLoader::iconSize() const {
    int width = 0;
    int height = 0;
    if (!extraLarge || FAILED(extraLarge->GetIconSize(&width, &height))) return 0;
    return width;
}

std::shared_ptr<IconTexture> IconLoader::load(const ItemIdList& item) {
    if (item.empty()) return nullptr;
    // A worker's thread is in an apartment of its own already, and then stays there.
    const ComApartment apartment(ComApartment::Kind::Multi);
    const int index = imageIndexOf(item);
    const std::shared_ptr<Textures> now = currentTextures();
    if (index < 0 || !now) return nullptr;
    return now->cache.obtain(index, [&] { return makeTexture(now->device.get(), index); });
}

std::shared_ptr<IconTexture> IconLoader::makeTexture(ID3D11Device* device, int imageIndex) {
    if (!extraLarge) return nullptr;
    const IconImage image = imageAt(*extraLarge.get(), imageIndex);
    if (image.pixels.empty()) return nullptr;
    std::shared_ptr<IconTexture> texture = createTexture(device, image);
    if (texture) ++made;
    return texture;
}

}  // namespace varnelo
