#pragma once

#include <cstddef>

#include "views/view_rect.h"

namespace varnelo {

// HLSL packs constants into registers of 16 bytes and lets no field straddle two of them; a field that would
// starts the next register. The structures below are laid out so that this rule and C++ agree byte for byte:
// every float2 starts at a multiple of 8, every float4 at a multiple of 16, and the float3 at the end of
// GlassCB shares the register of `alpha`. The assertions keep it so.

struct Float2 {
    float x = 0, y = 0;
};

struct Float4 {
    float r = 0, g = 0, b = 0, a = 0;
};

// Register b0 of the vertex stage: where the unit quad lies on the surface, in pixels.
struct PerObject {
    Float2 screenSize;
    Float2 iconPos;
    Float2 iconSize;
    float dragMark = 1;  // 0.95 for a dragged icon; no shader reads it
    float padding = 0;
};
static_assert(sizeof(PerObject) == 32);
static_assert(offsetof(PerObject, iconPos) == 8 && offsetof(PerObject, iconSize) == 16);

// Register b1 of the pixel stage: the glass of one icon. Places and sizes are fractions of the surface.
struct GlassCB {
    Float2 iconCenterUV;
    Float2 iconSizeUV;
    float maxBlur = 0;     // distance of the blur's taps, pixels
    float refraction = 0;  // how far the edge is pushed outward, fraction of the surface per icon width
    Float2 screenSize;     // pixels
    float cornerRadius = 0;
    float cubeDepth = 0;
    float ior = 0;
    float highlight = 0;  // above 0.5: selected
    float alpha = 1;
    float padding[3] = {0, 0, 0};
};
static_assert(sizeof(GlassCB) == 64);
static_assert(offsetof(GlassCB, iconSizeUV) == 8 && offsetof(GlassCB, maxBlur) == 16);
static_assert(offsetof(GlassCB, refraction) == 20 && offsetof(GlassCB, screenSize) == 24);
static_assert(offsetof(GlassCB, cornerRadius) == 32 && offsetof(GlassCB, cubeDepth) == 36);
static_assert(offsetof(GlassCB, ior) == 40 && offsetof(GlassCB, highlight) == 44);
static_assert(offsetof(GlassCB, alpha) == 48 && offsetof(GlassCB, padding) == 52);

// Register b0 of the pixel stage: one blurred, tinted rectangle.
struct BlurCB {
    Float2 screenSize;  // pixels
    float offset = 0;   // distance of the taps, pixels
    float padding = 0;
    Float4 tintColor;  // a: how much of the tint replaces the blurred scene
};
static_assert(sizeof(BlurCB) == 32);
static_assert(offsetof(BlurCB, offset) == 8 && offsetof(BlurCB, tintColor) == 16);

inline constexpr float kGlassMaxBlur = 2.0F;
inline constexpr float kGlassRefraction = 0.03F;
inline constexpr float kDimmedAlpha = 0.5F;

// A square of glass on the surface, pixels.
struct GlassQuad {
    float x = 0, y = 0, size = 0;
};

struct GlassLook {
    bool selected = false;
    bool dimmed = false;
    bool dragged = false;
};

// The place of a cell in content coordinates (scroll not applied), pixels.
struct GlassPlace {
    float x = 0, y = 0;
    float shakeX = 0, shakeY = 0;
};

// The value of the setting `hoverMode`; any other means the shake.
inline constexpr int kHoverEnlarges = 1;

// The draw scale that an icon goes to.
float scaleTarget(bool dragged, bool hovered, int hoverMode);
// The draw scale after one more drawn frame: 15 % of the way to the target, whatever the frame time.
float easedScale(float scale, bool dragged, bool hovered, int hoverMode);

// The icon stands in the middle of the cell's width and at the cell's top, so a scaled one grows downward.
GlassQuad glassQuad(const GlassPlace& place, float scale, float iconSize, float cellWidth, float scrollY);

PerObject glassPerObject(const GlassQuad& quad, Float2 screenSize, const GlassLook& look);
GlassCB glassConstants(const GlassQuad& quad, Float2 screenSize, const GlassLook& look);

// Edges in whole pixels, right and bottom excluded. An area of no height has bottom <= top.
struct ScissorEdges {
    int left = 0, top = 0, right = 0, bottom = 0;
};

ScissorEdges paneScissor(const ViewRect& pane);
// What is visible of a group's cells: below its header, inside the pane.
ScissorEdges groupScissor(const ViewRect& pane, float groupY, float groupHeaderHeight, float groupHeight,
                          float scrollY);

// Offset and tint of a blurred rectangle.
struct BlurTint {
    float offset = 0;
    Float4 color;
};

BlurTint scrollBarTrackTint(float scrollBarAlpha);
BlurTint scrollBarThumbTint(float scrollBarAlpha);

inline constexpr BlurTint kSplitterBarTint{4, {1, 1, 1, 0.16F}};
inline constexpr BlurTint kSplitterBarHoveredTint{5, {1, 1, 1, 0.22F}};
inline constexpr BlurTint kSplitterBarDraggedTint{6, {1, 1, 1, 0.28F}};
inline constexpr BlurTint kProgressTrackTint{6, {0.15F, 0.15F, 0.15F, 0.5F}};
inline constexpr BlurTint kProgressFillTint{4, {0.27F, 0.51F, 0.71F, 0.75F}};
inline constexpr BlurTint kMenuButtonTint{5, {0.08F, 0.08F, 0.08F, 0.7F}};
inline constexpr BlurTint kMenuButtonHoveredTint{6, {0.2F, 0.2F, 0.2F, 0.75F}};
inline constexpr BlurTint kMenuPanelTint{6, {0.08F, 0.08F, 0.08F, 0.8F}};
inline constexpr BlurTint kMenuHotRowTint{5, {0.25F, 0.25F, 0.25F, 0.7F}};
inline constexpr BlurTint kTextFieldTint{6, {0.1F, 0.1F, 0.1F, 0.5F}};
inline constexpr BlurTint kTabTint{6, {0.08F, 0.08F, 0.08F, 0.7F}};
inline constexpr BlurTint kTabActiveTint{6, {0.15F, 0.15F, 0.15F, 0.85F}};
inline constexpr BlurTint kTabHoveredTint{6, {0.2F, 0.2F, 0.2F, 0.75F}};

}  // namespace varnelo
