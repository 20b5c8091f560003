#pragma once

#include <d3d11.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/com_ref.h"
#include "views/picture_shelf.h"
#include "views/quad_batch_win.h"
#include "views/text_formats_win.h"
#include "views/text_ink_win.h"

namespace varnelo {

// The labels and headers of a pane as pictures: laid out and drawn when they are first asked for, and kept
// while they are in use. They depend on the device alone, so they outlive a change of the window's size.
//
// A picture stands on whole pixels, as text on the screen does: moved by a fraction, its stems would blur and
// flicker while the pane scrolls. Belongs to the user-interface thread.
class TextPictures {
public:
    // `surface` must outlive this object.
    explicit TextPictures(RenderSurface& surface) : render(surface), ink(surface, statistics) {}

    // After the surface's initialisation. What cannot be made stays away, and texts undrawn.
    void init();
    void release();

    // What is asked for from now on stays at least until the next frame begins.
    void beginFrame() { shelf.beginFrame(); }

    // Ready to be drawn with the text's origin at (x, y) of the surface, whole pixels. Nothing when the text
    // shows nothing or cannot be drawn.
    struct LabelLook {
        float width = 0;
        bool dragged = false, selected = false;
    };
    std::optional<QuadBatch::Quad> label(const std::wstring& text, const LabelLook& look, float x, float y);
    std::optional<QuadBatch::Quad> header(const std::wstring& text, float x, float y);
    // A line of one pixel, its middle at `y`: between two rows it is shared out among them.
    std::optional<QuadBatch::Quad> underline(float x, float y);

    const DrawStatistics& drawStatistics() const { return statistics; }

private:
    struct PageTexture {
        int width = 0, height = 0;
        ComRef<ID3D11RenderTargetView> target;
        ComRef<ID3D11ShaderResourceView> view;
    };

    void keep(const ComRef<IDWriteTextLayout>& layout);
    const PicturePlace* drawLabel(const PictureLook& look, const std::wstring& text);
    const PicturePlace* drawHeader(const PictureLook& look, const std::wstring& text);
    const PicturePlace* drawUnderline(const PictureLook& look);
    const PicturePlace* giveUp(const PictureLook& look, const std::wstring& text);
    // The texture of the page that `place` lies on, made if need be; null if the device refuses.
    ID3D11RenderTargetView* pageTarget(const PicturePlace& place);
    std::optional<QuadBatch::Quad> quadAt(const PicturePlace* place, float x, float y) const;

    RenderSurface& render;
    DrawStatistics statistics;
    TextFormats formats;
    PictureShelf shelf;
    std::vector<PageTexture> textures;  // by page
    TextInk ink;

    // The layouts drawn last. A text engine may forget a font, and every glyph that it rasterised, with the
    // last layout that uses it; the next text would pay for them again.
    std::array<ComRef<IDWriteTextLayout>, 16> recentLayouts;
    std::size_t nextRecent = 0;
};

}  // namespace varnelo
