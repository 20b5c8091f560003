#include "views/text_pictures_win.h"

#include <algorithm>
#include <cmath>

#include "views/render_surface_win.h"
#include "views/texture_shape_win.h"

namespace varnelo {

namespace {

// Around a layout's own box: the halo, what glyphs reach beyond their box, and the selection.
constexpr int kLabelMarginX = 6;
constexpr int kLabelMarginY = 4;
constexpr int kHeaderMargin = 5;
constexpr float kPlateX = 4;  // the selection is wider than the text by this on either side
constexpr float kPlateY = 2;

// A header is as wide as its text; slots of a few widths keep the pages together.
constexpr int kHeaderSlotStep = 128;
constexpr int kMaxHeaderWidth = 4096;
constexpr float kHeaderLayoutHeight = 24;

int roundedUp(int value, int step) { return (value + step - 1) / step * step; }

}  // namespace

void TextPictures::init() {
    release();
    formats.create(render.dwriteFactory.get());
    ink.init();
}

void TextPictures::release() {
    shelf.clear();
    textures.clear();
    ink.release();
    recentLayouts = {};
    formats.release();
}

std::optional<QuadBatch::Quad> TextPictures::label(const std::wstring& text, const LabelLook& look, float x,
                                                   float y) {
    if (text.empty() || look.width <= 0) return {};
    const PictureLook key{PictureKind::Label, look.dragged, look.selected, look.width};
    const PicturePlace* place = shelf.find(key, text);
    if (!place) place = drawLabel(key, text);
    return quadAt(place, x, y);
}

std::optional<QuadBatch::Quad> TextPictures::header(const std::wstring& text, float x, float y) {
    if (text.empty()) return {};
    const PictureLook key{PictureKind::Header, false, false, 0};
    const PicturePlace* place = shelf.find(key, text);
    if (!place) place = drawHeader(key, text);
    return quadAt(place, x, y);
}

std::optional<QuadBatch::Quad> TextPictures::underline(float x, float y) {
    const PictureLook key{PictureKind::Underline, false, false, 0};
    const PicturePlace* place = shelf.find(key, {});
    if (!place) place = drawUnderline(key);
    std::optional<QuadBatch::Quad> quad = quadAt(place, x, y - 0.5F);
    if (!quad) return quad;
    // Drawn between pixels, a pixel is mixed from two texels: keep clear of the neighbouring pictures.
    quad->source = {quad->source.x + 1, quad->source.y + 1, quad->source.w - 2, quad->source.h - 2};
    quad->left += 1;
    quad->top += 1;
    return quad;
}

void TextPictures::keep(const ComRef<IDWriteTextLayout>& layout) {
    recentLayouts[nextRecent] = layout;
    nextRecent = (nextRecent + 1) % recentLayouts.size();
}

const PicturePlace* TextPictures::drawLabel(const PictureLook& look, const std::wstring& text) {
    PictureExtent extent;
    D2D1_RECT_F plate{};
    const int boxWidth = static_cast<int>(std::ceil(look.width));
    const int boxHeight = static_cast<int>(std::ceil(formats.labelBoxHeight()));
    const ComRef<IDWriteTextLayout> layout = formats.layOutLabel(text, look.width, statistics.layouts);
    DWRITE_TEXT_METRICS metrics{};
    if (layout && SUCCEEDED(layout->GetMetrics(&metrics))) {
        const float right = metrics.left + metrics.width;
        const float bottom = metrics.top + metrics.height;
        if (look.selected) {
            plate = {metrics.left - kPlateX, metrics.top - kPlateY, right + kPlateX, bottom + kPlateY};
        }
        extent.left = std::max(static_cast<int>(std::floor(metrics.left)), 0) - kLabelMarginX;
        extent.top = -kLabelMarginY;
        extent.width = std::min(static_cast<int>(std::ceil(right)), boxWidth) + kLabelMarginX - extent.left;
        extent.height = std::min(static_cast<int>(std::ceil(bottom)), boxHeight) + kLabelMarginY - extent.top;
    }
    const PicturePlace& place =
        shelf.place(look, text, extent, {boxWidth + 2 * kLabelMarginX, boxHeight + 2 * kLabelMarginY});
    if (extent.empty()) return nullptr;
    keep(layout);
    return ink.drawText(look, place, layout.get(), plate, pageTarget(place)) ? &place : giveUp(look, text);
}

const PicturePlace* TextPictures::drawHeader(const PictureLook& look, const std::wstring& text) {
    PictureExtent extent;
    // Without wrapping and from the left the width has no say.
    const ComRef<IDWriteTextLayout> layout =
        formats.layOutHeader(text, kMaxHeaderWidth, kHeaderLayoutHeight, statistics.layouts);
    DWRITE_TEXT_METRICS metrics{};
    if (layout && SUCCEEDED(layout->GetMetrics(&metrics))) {
        const float textWidth = std::min(metrics.widthIncludingTrailingWhitespace, float{kMaxHeaderWidth});
        extent.left = extent.top = -kHeaderMargin;
        extent.width = std::min(static_cast<int>(std::ceil(textWidth)) + 2 * kHeaderMargin, kMaxHeaderWidth);
        extent.height = static_cast<int>(std::ceil(metrics.height)) + 2 * kHeaderMargin;
    }
    const PicturePlace& place = shelf.place(
        look, text, extent, {roundedUp(extent.width, kHeaderSlotStep), roundedUp(extent.height, 8)});
    if (extent.empty()) return nullptr;
    keep(layout);
    return ink.drawText(look, place, layout.get(), {}, pageTarget(place)) ? &place : giveUp(look, text);
}

const PicturePlace* TextPictures::drawUnderline(const PictureLook& look) {
    const PictureExtent extent{-2, -2, static_cast<int>(TextInk::kUnderlineLength) + 4, 5};
    const PicturePlace& place = shelf.place(look, {}, extent, {extent.width, extent.height});
    return ink.drawUnderline(place, pageTarget(place)) ? &place : giveUp(look, {});
}

// A picture that could not be drawn shows nothing and is not tried again in every frame.
const PicturePlace* TextPictures::giveUp(const PictureLook& look, const std::wstring& text) {
    shelf.place(look, text, {}, {});
    return nullptr;
}

ID3D11RenderTargetView* TextPictures::pageTarget(const PicturePlace& place) {
    if (!render.device) return nullptr;
    if (textures.size() < shelf.pageCount()) textures.resize(shelf.pageCount());
    PageTexture& texture = textures[place.page];
    const PictureShelf::Page& page = shelf.page(place.page);
    if (texture.target && texture.width == page.width() && texture.height == page.height()) {
        return texture.target.get();
    }
    texture = {};
    const D3D11_TEXTURE2D_DESC description =
        bgraTexture(static_cast<UINT>(page.width()), static_cast<UINT>(page.height()), kTargetAndSource);
    ComRef<ID3D11Texture2D> created;
    if (FAILED(render.device->CreateTexture2D(&description, nullptr, created.put())) ||
        FAILED(render.device->CreateRenderTargetView(created.get(), nullptr, texture.target.put())) ||
        FAILED(render.device->CreateShaderResourceView(created.get(), nullptr, texture.view.put()))) {
        texture = {};
        return nullptr;
    }
    texture.width = page.width();
    texture.height = page.height();
    ++statistics.textures;
    return texture.target.get();
}

std::optional<QuadBatch::Quad> TextPictures::quadAt(const PicturePlace* place, float x, float y) const {
    if (!place || place->extent.empty() || place->page >= textures.size()) return {};
    const PageTexture& texture = textures[place->page];
    if (!texture.view) return {};
    const PictureExtent& extent = place->extent;
    return QuadBatch::Quad{texture.view.get(),
                           static_cast<float>(texture.width),
                           static_cast<float>(texture.height),
                           {static_cast<float>(place->x), static_cast<float>(place->y),
                            static_cast<float>(extent.width), static_cast<float>(extent.height)},
                           x + static_cast<float>(extent.left),
                           y + static_cast<float>(extent.top)};
}

}  // namespace varnelo
