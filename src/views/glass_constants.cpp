#include "views/glass_constants.h"

#include <algorithm>

namespace varnelo {

namespace {

constexpr float kScaleAtRest = 1.0F;
constexpr float kScaleHovered = 1.07F;
constexpr float kScaleHoveredEnlarge = 1.15F;
constexpr float kScaleDragged = 1.2F;
constexpr float kScaleEasing = 0.15F;
constexpr float kDragMarkDragged = 0.95F;

// Toward zero. Far beyond any surface the value stands still, so that the conversion is always defined.
int truncated(float pixels) {
    constexpr float kFarAway = 1.0e6F;
    if (!(pixels > -kFarAway)) return static_cast<int>(-kFarAway);
    return static_cast<int>(std::min(pixels, kFarAway));
}

}  // namespace

float scaleTarget(bool dragged, bool hovered, int hoverMode) {
    if (dragged) return kScaleDragged;
    if (!hovered) return kScaleAtRest;
    return hoverMode == kHoverEnlarges ? kScaleHoveredEnlarge : kScaleHovered;
}

float easedScale(float scale, bool dragged, bool hovered, int hoverMode) {
    return scale + (scaleTarget(dragged, hovered, hoverMode) - scale) * kScaleEasing;
}

GlassQuad glassQuad(const GlassPlace& place, float scale, float iconSize, float cellWidth, float scrollY) {
    const float size = scale * iconSize;
    return {place.shakeX + place.x + (cellWidth - size) / 2, place.shakeY + place.y - scrollY, size};
}

PerObject glassPerObject(const GlassQuad& quad, Float2 screenSize, const GlassLook& look) {
    PerObject constants;
    constants.screenSize = screenSize;
    constants.iconPos = {quad.x, quad.y};
    constants.iconSize = {quad.size, quad.size};
    constants.dragMark = look.dragged ? kDragMarkDragged : 1.0F;
    return constants;
}

GlassCB glassConstants(const GlassQuad& quad, Float2 screenSize, const GlassLook& look) {
    GlassCB constants;
    constants.iconCenterUV = {(quad.x + quad.size / 2) / screenSize.x,
                              (quad.y + quad.size / 2) / screenSize.y};
    constants.iconSizeUV = {quad.size / screenSize.x, quad.size / screenSize.y};
    constants.maxBlur = kGlassMaxBlur;
    constants.refraction = kGlassRefraction;
    constants.screenSize = screenSize;
    constants.highlight = look.selected ? 1.0F : 0.0F;
    constants.alpha = look.dimmed ? kDimmedAlpha : 1.0F;
    return constants;
}

ScissorEdges paneScissor(const ViewRect& pane) {
    return {truncated(pane.x), truncated(pane.y), truncated(pane.x + pane.w), truncated(pane.y + pane.h)};
}

ScissorEdges groupScissor(const ViewRect& pane, float groupY, float groupHeaderHeight, float groupHeight,
                          float scrollY) {
    ScissorEdges edges = paneScissor(pane);
    edges.top = std::max(edges.top, truncated(groupY + groupHeaderHeight - scrollY));
    edges.bottom = std::min(edges.bottom, truncated(groupY + groupHeaderHeight + groupHeight - scrollY));
    return edges;
}

BlurTint scrollBarTrackTint(float scrollBarAlpha) { return {3, {0, 0, 0, 0.7F * scrollBarAlpha}}; }

BlurTint scrollBarThumbTint(float scrollBarAlpha) { return {3, {1, 1, 1, 0.7F * scrollBarAlpha}}; }

}  // namespace varnelo
