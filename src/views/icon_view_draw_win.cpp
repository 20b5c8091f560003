// What an IconView draws, in the order in which it lies on the screen.

#include <algorithm>
#include <cmath>

#include "app/settings.h"
#include "views/base_view_win.h"
#include "views/grid_groups.h"
#include "views/grid_scroll.h"
#include "views/icon_view_win.h"
#include "views/render_surface_win.h"

namespace varnelo {

namespace {

constexpr float kLabelGap = 8;        // from the icon to its label
constexpr float kUnderlineGap = 2;    // from the header to the line under it
constexpr float kHeaderOverhang = 8;  // how far a header's glow and line reach beyond it, at most
constexpr float kLeastScrollBarAlpha = 0.01F;

float wholePixel(float value) { return std::floor(value + 0.5F); }

LONG truncated(float value) { return static_cast<LONG>(value); }

}  // namespace

void IconView::draw(bool toScene) {
    if (layoutMode == LayoutMode::List) return;
    if (!render.d2dRT || !render.context) {
        // What is on its way arrives all the same, or update() would ask for frames without end.
        for (IconCell& cell : cells) advanceScale(cell);
        return;
    }
    pictures.beginFrame();
    if (layoutMode == LayoutMode::Grouped) {
        drawGrouped(toScene);
    } else {
        drawFlat();
    }
    drawLasso(toScene ? render.sceneD2DRT.get() : render.d2dRT.get());
    drawScrollBar();
}

void IconView::drawGrouped(bool toScene) {
    const bool withDragged = !toScene && cellDragActive;
    for (const IconGroup& group : groups) drawGroupTexts(group);
    if (withDragged) drawPaneLabels(true);

    glass.begin();
    for (const IconGroup& group : groups) drawGroupIcons(group);
    if (withDragged) drawIcons(Cells::Dragged, render.sceneSRV.get());
}

void IconView::drawFlat() {
    glass.begin();
    glass.beginScissor(paneScissor(viewRect));
    drawIcons(Cells::Resting, render.backgroundSRV.get());
    if (cellDragActive) drawIcons(Cells::Dragged, render.sceneSRV.get());
    glass.endScissor();
    drawPaneLabels(false);
}

ScissorEdges IconView::groupArea(const IconGroup& group) const {
    return groupScissor(viewRect, group.y, groupHeaderHeight, group.height, scrollY);
}

void IconView::drawGroupTexts(const IconGroup& group) {
    const float top = group.y - scrollY;
    if (top - kHeaderOverhang < viewRect.bottom() && top + groupHeaderHeight + kHeaderOverhang > viewRect.y) {
        glass.beginScissor(paneScissor(viewRect));
        drawHeader(group);
        quads.flush();
        glass.endScissor();
    }
    const ScissorEdges area = groupArea(group);
    if (area.bottom <= area.top) return;
    glass.beginScissor(area);
    for (const std::int32_t index : group.cells) {
        IconCell& cell = cells[static_cast<std::size_t>(index)];
        if (cell.visible && !cell.dragged) drawLabel(cell);
    }
    quads.flush();
    glass.endScissor();
}

void IconView::drawGroupIcons(const IconGroup& group) {
    const ScissorEdges area = groupArea(group);
    if (area.bottom <= area.top) return;
    glass.beginScissor(area);
    for (const std::int32_t index : group.cells) {
        IconCell& cell = cells[static_cast<std::size_t>(index)];
        if (cell.visible && !cell.dragged) drawIcon(cell, render.backgroundSRV.get());
    }
    glass.endScissor();
}

void IconView::drawHeader(const IconGroup& group) {
    const float x = marginX + viewRect.x;
    const float y = wholePixel(wholePixel(group.y) - scrollY);
    writeGroupHeader(group, columns, headerText);
    if (const auto text = pictures.header(headerText, wholePixel(x), y)) quads.add(*text);
    const float lineY = group.y + groupHeaderHeight + kUnderlineGap - scrollY;
    if (const auto line = pictures.underline(x, lineY)) quads.add(*line);
}

void IconView::drawLabel(IconCell& cell) {
    const float x = wholePixel(cell.shakeX + cell.x);
    const float y = wholePixel(cell.shakeY + cell.y + iconSize + kLabelGap);
    const std::wstring& name = cell.entry.name(services.shell);
    const auto label =
        pictures.label(name, {cellWidth, cell.dragged, cell.selected}, x, wholePixel(y - scrollY));
    if (label) quads.add(*label);
}

void IconView::drawPaneLabels(bool draggedOnly) {
    glass.beginScissor(paneScissor(viewRect));
    for (IconCell& cell : cells) {
        if (cell.visible && (cell.dragged || !draggedOnly)) drawLabel(cell);
    }
    quads.flush();
    glass.endScissor();
}

void IconView::drawIcons(Cells which, ID3D11ShaderResourceView* source) {
    for (IconCell& cell : cells) {
        if (cell.visible && cell.dragged == (which == Cells::Dragged)) drawIcon(cell, source);
    }
}

void IconView::drawIcon(IconCell& cell, ID3D11ShaderResourceView* source) {
    if (!cell.texture) return;
    advanceScale(cell);
    const GlassQuad quad =
        glassQuad({cell.x, cell.y, cell.shakeX, cell.shakeY}, cell.scale, iconSize, cellWidth, scrollY);
    glass.drawGlass(quad, *cell.texture, source, {cell.selected, cell.dimmed, cell.dragged});
}

void IconView::advanceScale(IconCell& cell) const {
    cell.scale = easedScale(cell.scale, cell.dragged, cell.hovered, services.settings.hoverMode);
}

bool IconView::createLassoBrushes(ID2D1RenderTarget* target) {
    if (lassoFillBrush && lassoOutlineBrush) return true;
    const auto create = [&](const LassoSelector::Colour& colour, ComRef<ID2D1SolidColorBrush>& brush) {
        target->CreateSolidColorBrush(D2D1_COLOR_F{colour.red, colour.green, colour.blue, colour.alpha},
                                      brush.put());
    };
    create(LassoSelector::kFill, lassoFillBrush);
    create(LassoSelector::kOutline, lassoOutlineBrush);
    return lassoFillBrush && lassoOutlineBrush;
}

void IconView::drawLasso(ID2D1RenderTarget* target) {
    if (!lasso.active || !target || !createLassoBrushes(target)) return;
    const D2D1_RECT_F band{std::min(lasso.startX, lasso.endX), std::min(lasso.startY, lasso.endY),
                           std::max(lasso.startX, lasso.endX), std::max(lasso.startY, lasso.endY)};
    const D2D1_RECT_F pane{viewRect.x, viewRect.y, viewRect.right(), viewRect.bottom()};
    const D2D1_MATRIX_3X2_F identity{1, 0, 0, 1, 0, 0};
    const D2D1_MATRIX_3X2_F scrolled{1, 0, 0, 1, 0, -scrollY};
    target->BeginDraw();
    target->PushAxisAlignedClip(&pane, D2D1_ANTIALIAS_MODE_PER_PRIMITIVE);
    target->SetTransform(&scrolled);
    target->FillRectangle(&band, lassoFillBrush.get());
    target->DrawRectangle(&band, lassoOutlineBrush.get(), LassoSelector::kOutlineWidth, nullptr);
    target->SetTransform(&identity);
    target->PopAxisAlignedClip();
    target->EndDraw();
}

void IconView::drawScrollBar() {
    if (scrollBarAlpha < kLeastScrollBarAlpha) return;
    const std::optional<ScrollThumb> thumb = scrollThumb(*this);
    if (!thumb) return;
    RECT track{truncated(viewRect.right() - scrollBarWidth), truncated(viewRect.y),
               truncated(viewRect.right()), truncated(viewRect.bottom())};
    baseView.drawBlurRect(track, render.backgroundSRV.get(), scrollBarTrackTint(scrollBarAlpha));
    RECT grip = track;
    grip.top = truncated(viewRect.y + thumb->top);
    grip.bottom = truncated(viewRect.y + thumb->top + thumb->height);
    baseView.drawBlurRect(grip, render.backgroundSRV.get(), scrollBarThumbTint(scrollBarAlpha));
}

}  // namespace varnelo
