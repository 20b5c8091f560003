#include "views/glass_constants.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

namespace varnelo {
namespace {

constexpr Float2 kScreen{800, 400};

template <class T>
std::vector<float> asFloats(const T& constants) {
    std::vector<float> values(sizeof(T) / sizeof(float));
    std::memcpy(values.data(), &constants, sizeof(T));
    return values;
}

TEST(EasedScale, MovesFifteenPercentOfTheGapPerDrawnFrame) {
    EXPECT_FLOAT_EQ(easedScale(1, true, false, 0), 1.03F);
    EXPECT_FLOAT_EQ(easedScale(1.03F, true, false, 0), 1.0555F);
    EXPECT_FLOAT_EQ(easedScale(1.2F, false, false, 0), 1.17F);
}

TEST(EasedScale, StandsStillAtItsTarget) {
    EXPECT_EQ(easedScale(1, false, false, 0), 1);
    EXPECT_EQ(easedScale(1, false, false, 1), 1);
}

TEST(EasedScale, HoverEnlargesMoreInTheEnlargingMode) {
    EXPECT_FLOAT_EQ(easedScale(1, false, true, 1), 1 + 0.15F * 0.15F);
    EXPECT_FLOAT_EQ(easedScale(1, false, true, 0), 1 + 0.07F * 0.15F);
    EXPECT_FLOAT_EQ(easedScale(1, false, true, 2), 1 + 0.07F * 0.15F);
}

TEST(EasedScale, DraggingCountsMoreThanHovering) {
    EXPECT_EQ(easedScale(1, true, true, 1), easedScale(1, true, false, 0));
}

TEST(GlassQuad, CentresTheIconInTheCellsWidthAndLeavesItAtTheCellsTop) {
    const GlassQuad quad = glassQuad({100, 300, 0, 0}, 1, 48, 94, 250);
    EXPECT_FLOAT_EQ(quad.x, 123);
    EXPECT_FLOAT_EQ(quad.y, 50);
    EXPECT_FLOAT_EQ(quad.size, 48);
}

TEST(GlassQuad, AScaledIconKeepsItsMiddleInXAndItsTopInYSoThatItGrowsDownward) {
    const GlassPlace place{100, 300, 0, 0};
    const GlassQuad rest = glassQuad(place, 1, 50, 94, 0);
    const GlassQuad dragged = glassQuad(place, 1.2F, 50, 94, 0);
    EXPECT_FLOAT_EQ(dragged.x + dragged.size / 2, rest.x + rest.size / 2);
    EXPECT_FLOAT_EQ(dragged.y, rest.y);
    EXPECT_FLOAT_EQ(dragged.y + dragged.size, rest.y + rest.size + 10);
}

TEST(GlassQuad, TheShakeMovesIt) {
    const GlassQuad quad = glassQuad({0, 0, 3, -2}, 1, 48, 48, 0);
    EXPECT_FLOAT_EQ(quad.x, 3);
    EXPECT_FLOAT_EQ(quad.y, -2);
}

TEST(GlassConstants, PerObjectHasTheShadersOrder) {
    EXPECT_EQ(asFloats(glassPerObject({10, 20, 48}, kScreen, {})),
              (std::vector<float>{800, 400, 10, 20, 48, 48, 1, 0}));
}

TEST(GlassConstants, ADraggedIconIsMarkedInPerObject) {
    GlassLook look;
    look.dragged = true;
    EXPECT_FLOAT_EQ(glassPerObject({10, 20, 48}, kScreen, look).dragMark, 0.95F);
}

TEST(GlassConstants, GlassHasTheShadersOrder) {
    EXPECT_EQ(asFloats(glassConstants({100, 50, 40}, kScreen, {})),
              (std::vector<float>{0.15F, 0.175F, 0.05F, 0.1F,  // centre, size
                                  2, 0.03F, 800, 400,          // blur, refraction, screen
                                  0, 0, 0, 0,                  // corner, depth, ior, highlight
                                  1, 0, 0, 0}));               // alpha, padding
}

TEST(GlassConstants, SelectionHighlightsAndDimmingHalvesTheAlpha) {
    GlassLook look;
    look.selected = true;
    EXPECT_EQ(glassConstants({0, 0, 48}, kScreen, look).highlight, 1);
    EXPECT_EQ(glassConstants({0, 0, 48}, kScreen, look).alpha, 1);
    look = {};
    look.dimmed = true;
    EXPECT_EQ(glassConstants({0, 0, 48}, kScreen, look).highlight, 0);
    EXPECT_EQ(glassConstants({0, 0, 48}, kScreen, look).alpha, 0.5F);
}

std::vector<int> edgesOf(const ScissorEdges& edges) {
    return {edges.left, edges.top, edges.right, edges.bottom};
}

constexpr ViewRect kPane{10, 20, 300, 200};

TEST(Scissor, OfThePaneIsThePane) {
    EXPECT_EQ(edgesOf(paneScissor(kPane)), (std::vector<int>{10, 20, 310, 220}));
}

TEST(Scissor, OfAGroupBeginsBelowItsHeader) {
    EXPECT_EQ(edgesOf(groupScissor(kPane, 50, 24, 110, 0)), (std::vector<int>{10, 74, 310, 184}));
}

TEST(Scissor, OfAGroupStaysInsideThePane) {
    EXPECT_EQ(edgesOf(groupScissor(kPane, 50, 24, 500, 100)), (std::vector<int>{10, 20, 310, 220}));
}

TEST(Scissor, OfAGroupIsTruncatedAfterScrolling) {
    EXPECT_EQ(edgesOf(groupScissor(kPane, 50.5F, 24, 110.75F, 1.25F)), (std::vector<int>{10, 73, 310, 184}));
}

TEST(Scissor, OfAGroupOutsideThePaneHasNoHeight) {
    const ScissorEdges below = groupScissor(kPane, 500, 24, 110, 0);
    EXPECT_GE(below.top, below.bottom);
    const ScissorEdges above = groupScissor(kPane, 50, 24, 110, 1000);
    EXPECT_GE(above.top, above.bottom);
}

TEST(Scissor, SurvivesPlacesThatAreNoPixels) {
    const float infinite = std::numeric_limits<float>::infinity();
    const float undefined = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(groupScissor(kPane, -infinite, 24, 110, 0).top, 20);
    EXPECT_EQ(groupScissor(kPane, infinite, 24, 110, 0).bottom, 220);
    EXPECT_EQ(groupScissor(kPane, undefined, 24, 110, 0).top, 20);
    EXPECT_EQ(groupScissor(kPane, 3.0e38F, 24, 110, 0).top, 1000000);
}

TEST(BlurTints, TheScrollBarFades) {
    const BlurTint track = scrollBarTrackTint(0.5F);
    EXPECT_EQ(track.offset, 3);
    EXPECT_EQ(track.color.r, 0);
    EXPECT_FLOAT_EQ(track.color.a, 0.35F);
    const BlurTint thumb = scrollBarThumbTint(1);
    EXPECT_EQ(thumb.offset, 3);
    EXPECT_EQ(thumb.color.g, 1);
    EXPECT_FLOAT_EQ(thumb.color.a, 0.7F);
}

TEST(BlurTints, OfTheWidgetsAreThoseOfTheDesign) {
    const auto expectTint = [](const BlurTint& tint, float offset, float r, float g, float b, float a) {
        EXPECT_EQ(tint.offset, offset);
        EXPECT_EQ(tint.color.r, r);
        EXPECT_EQ(tint.color.g, g);
        EXPECT_EQ(tint.color.b, b);
        EXPECT_EQ(tint.color.a, a);
    };
    expectTint(kSplitterBarTint, 4, 1, 1, 1, 0.16F);
    expectTint(kSplitterBarHoveredTint, 5, 1, 1, 1, 0.22F);
    expectTint(kSplitterBarDraggedTint, 6, 1, 1, 1, 0.28F);
    expectTint(kProgressTrackTint, 6, 0.15F, 0.15F, 0.15F, 0.5F);
    expectTint(kProgressFillTint, 4, 0.27F, 0.51F, 0.71F, 0.75F);
    expectTint(kMenuButtonTint, 5, 0.08F, 0.08F, 0.08F, 0.7F);
    expectTint(kMenuButtonHoveredTint, 6, 0.2F, 0.2F, 0.2F, 0.75F);
    expectTint(kMenuPanelTint, 6, 0.08F, 0.08F, 0.08F, 0.8F);
    expectTint(kMenuHotRowTint, 5, 0.25F, 0.25F, 0.25F, 0.7F);
    expectTint(kTextFieldTint, 6, 0.1F, 0.1F, 0.1F, 0.5F);
    expectTint(kTabTint, 6, 0.08F, 0.08F, 0.08F, 0.7F);
    expectTint(kTabActiveTint, 6, 0.15F, 0.15F, 0.15F, 0.85F);
    expectTint(kTabHoveredTint, 6, 0.2F, 0.2F, 0.2F, 0.75F);
}

}  // namespace
}  // namespace varnelo
