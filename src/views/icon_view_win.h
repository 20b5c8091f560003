#pragma once

#include <d2d1.h>

#include <atomic>

#include "platform/com_ref.h"
#include "views/glass_pipeline_win.h"
#include "views/icon_grid_manager.h"
#include "views/icon_loader_win.h"
#include "views/quad_batch_win.h"
#include "views/text_pictures_win.h"

namespace varnelo {

class BaseView;
class RenderSurface;

// A pane of icons on a surface: loads the shell's icons on the pane's workers and draws headers, labels,
// icons, lasso and scroll bar. User-interface thread only; a worker touches the loader and hands its texture
// to the grid's queue.
class IconView : public IconGridManager {
public:
    // Both must outlive this object.
    IconView(GridServices services, RenderSurface& surface, BaseView& base, TabKind kind);
    // Waits for the running loads. Nothing of the device may be left by then: call destroy() before.
    ~IconView() override;

    // After the surface's initialisation; `rect`, `snapToColumns` and `anchor` as for setViewRect().
    void init(ViewRect& rect, bool snapToColumns, int anchor, bool isSelectable);

    // Draws the pane into the bound target: the window, or with `toScene` the scene behind a dragged cell.
    // Creates something only for a text that was not shown lately.
    void draw(bool toScene);

    // The window is woken when the texture is there.
    void loadIcon(int index) override;
    // Shows the shell's own menu of the desktop at the cursor. Returns when it closes.
    bool forwardShellMenu() override;

    // Before a resize: what belongs to the window's Direct2D target. It comes back with the next draw.
    void releaseResources();
    // Around the loss of the device: everything made from it goes, and comes again from the new one. The
    // icons are loaded anew.
    void releaseDevice();
    void restoreDevice();
    // Releases every texture and device object. After stopIconWorker().
    void destroy();
    // Ends the pool without starting what is still queued.
    void stopIconWorker();

    const DrawStatistics& drawStatistics() const { return pictures.drawStatistics(); }
    std::uint64_t iconTexturesMade() const { return loader.texturesMade(); }

private:
    enum class Cells { Resting, Dragged };

    void drawGrouped(bool toScene);
    void drawFlat();
    void drawGroupTexts(const IconGroup& group);
    void drawGroupIcons(const IconGroup& group);
    void drawHeader(const IconGroup& group);
    void drawLabel(IconCell& cell);
    void drawPaneLabels(bool draggedOnly);
    void drawIcons(Cells which, ID3D11ShaderResourceView* source);
    void drawIcon(IconCell& cell, ID3D11ShaderResourceView* source);
    void advanceScale(IconCell& cell) const;
    void drawLasso(ID2D1RenderTarget* target);
    bool createLassoBrushes(ID2D1RenderTarget* target);
    void drawScrollBar();

    ScissorEdges groupArea(const IconGroup& group) const;

    RenderSurface& render;
    BaseView& baseView;
    GlassPipeline glass;
    IconLoader loader;
    TextPictures pictures;
    QuadBatch quads;
    std::wstring headerText;  // of the header that is drawn
    ComRef<ID2D1SolidColorBrush> lassoFillBrush;
    ComRef<ID2D1SolidColorBrush> lassoOutlineBrush;
    std::atomic<bool> stopping{false};
};

}  // namespace varnelo
