#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/glass_reference.h"
#include "support/surface_window_win.h"

namespace varnelo {
namespace {

using reference::Color;
using reference::Difference;
using reference::greatestDifference;
using reference::Picture;

constexpr int kWidth = 160;
constexpr int kHeight = 120;
constexpr int kAllowedSteps = 2;
// A place between the pixels, so that every tap falls between them as well.
constexpr GlassQuad kQuad{41.3F, 27.6F, 57.6F};

class GlassPixels : public ::testing::Test {
protected:
    // One device for all cases: making one takes longer than most of them.
    static void SetUpTestSuite() { shared = std::make_unique<SurfaceWindow>(kWidth, kHeight); }
    static void TearDownTestSuite() { shared.reset(); }
    void SetUp() override { ASSERT_TRUE(window.ready); }

    // The back buffer after a frame with the given wallpaper and one icon.
    Picture drawn(const Picture& wallpaper, const Picture& icon, const GlassLook& look,
                  const GlassQuad& quad = kQuad) {
        window.surface.backgroundSRV = window.upload(wallpaper);
        startFrame();
        window.glass.begin();
        window.glass.drawGlass(quad, window.uploadIcon(icon), window.surface.backgroundSRV.get(), look);
        return window.backBuffer();
    }

    Picture expected(const Picture& wallpaper, const Picture& icon, const GlassLook& look,
                     const GlassQuad& quad = kQuad) {
        Picture picture = wallpaper;
        drawGlass(picture, icon, wallpaper, {quad.x, quad.y, quad.size, look.selected, look.dimmed});
        return picture;
    }

    void startFrame() {
        window.layer.clear();
        window.surface.drawBackground();
    }

    void expectSame(const Picture& actual, const Picture& wanted, const std::string& what) {
        const Difference difference = greatestDifference(actual, wanted);
        EXPECT_LE(difference.steps, kAllowedSteps) << what << " at " << difference.x << ", " << difference.y;
    }

    // Noise of one alpha; below 0 the alpha rises from left to right.
    static Picture icon(float alpha) {
        Picture picture = reference::busyPicture(48, 48, 7);
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 48; ++x) {
                Color color = picture.at(x, y);
                color.a = alpha < 0 ? static_cast<float>(x) / 47 : alpha;
                picture.set(x, y, color);
            }
        return picture;
    }

    static std::unique_ptr<SurfaceWindow> shared;
    SurfaceWindow& window = *shared;
    const Picture busy = reference::busyPicture(kWidth, kHeight, 1);
};

std::unique_ptr<SurfaceWindow> GlassPixels::shared;

TEST_F(GlassPixels, TheWallpaperIsDrawnPixelByPixel) {
    window.surface.backgroundSRV = window.upload(busy);
    startFrame();
    EXPECT_EQ(greatestDifference(window.backBuffer(), busy).steps, 0);
}

TEST_F(GlassPixels, EveryKindOfIconIsWhatTheReferenceComputes) {
    for (const float alpha : {1.0F, 0.5F, 0.0F, -1.0F})
        for (const bool selected : {false, true})
            for (const bool dimmed : {false, true}) {
                const GlassLook look{selected, dimmed, false};
                expectSame(drawn(busy, icon(alpha), look), expected(busy, icon(alpha), look),
                           "alpha " + std::to_string(alpha) + (selected ? " selected" : "") +
                               (dimmed ? " dimmed" : ""));
            }
}

TEST_F(GlassPixels, AnIconAtTheEdgeOfTheSurfaceRepeatsTheWallpapersEdge) {
    for (const GlassQuad& quad : {GlassQuad{-20.4F, -13.3F, 48}, GlassQuad{130.2F, 95.7F, 48}})
        expectSame(drawn(busy, icon(0.25F), {}, quad), expected(busy, icon(0.25F), {}, quad), "edge");
}

TEST_F(GlassPixels, ADraggedIconRefractsTheSceneUnderIt) {
    const Picture under = icon(0.5F);
    const GlassQuad underQuad{70, 40, 48};
    window.surface.backgroundSRV = window.upload(busy);
    startFrame();
    window.surface.renderScene([&] {
        window.glass.begin();
        window.glass.drawGlass(underQuad, window.uploadIcon(under), window.surface.backgroundSRV.get(), {});
    });
    window.glass.begin();
    window.glass.drawGlass(kQuad, window.uploadIcon(icon(-1)), window.surface.sceneSRV.get(),
                           {false, false, true});

    const Picture scene = expected(busy, under, {}, underQuad);
    expectSame(window.contentOf(window.surface.sceneSRV.get()), scene, "scene");
    Picture wanted = busy;
    drawGlass(wanted, icon(-1), scene, {kQuad.x, kQuad.y, kQuad.size, false, false});
    expectSame(window.backBuffer(), wanted, "dragged");
}

TEST_F(GlassPixels, AnOpaqueIconShowsNoGlass) {
    const Picture dark(kWidth, kHeight, {0, 0, 0, 1});
    const Picture overBusy = drawn(busy, icon(1), {});
    const Picture overDark = drawn(dark, icon(1), {});
    for (int y = 30; y < 80; ++y)
        for (int x = 43; x < 97; ++x) ASSERT_EQ(overBusy.at(x, y).g, overDark.at(x, y).g) << x << ", " << y;
}

TEST_F(GlassPixels, ATransparentIconShowsOnlyGlass) {
    const Picture white(48, 48, {1, 1, 1, 0});
    const Picture black(48, 48, {0, 0, 0, 0});
    EXPECT_LE(greatestDifference(drawn(busy, white, {}), drawn(busy, black, {})).steps, 1);
    EXPECT_GT(greatestDifference(drawn(busy, white, {}), busy).steps, 50);
}

TEST_F(GlassPixels, ASelectedIconAndItsGlassAreHalfBlue) {
    const Picture black(kWidth, kHeight, {0, 0, 0, 1});
    const Picture white(kWidth, kHeight, {1, 1, 1, 1});
    const Picture overBlack = drawn(black, Picture(48, 48, {1, 1, 1, 1}), {true, false, false});
    EXPECT_NEAR(overBlack.at(70, 55).r, 0.5F, 0.01F);
    EXPECT_NEAR(overBlack.at(70, 55).g, 0.75F, 0.01F);
    EXPECT_NEAR(overBlack.at(70, 55).b, 1, 0.01F);
    const Picture overWhite = drawn(white, Picture(48, 48, {0, 0, 0, 0}), {true, false, false});
    EXPECT_NEAR(overWhite.at(70, 55).r, 0.5F, 0.01F);
    EXPECT_NEAR(overWhite.at(70, 55).g, 0.75F, 0.01F);
    EXPECT_NEAR(overWhite.at(70, 55).b, 1, 0.01F);
}

TEST_F(GlassPixels, DimmingHalvesTheAlphaOfIconAndGlassTogether) {
    const Picture black(kWidth, kHeight, {0, 0, 0, 1});
    const Picture opaque = drawn(black, Picture(48, 48, {1, 1, 1, 1}), {false, true, false});
    EXPECT_NEAR(opaque.at(70, 55).r, 0.5F, 0.01F);
    EXPECT_NEAR(opaque.at(70, 55).a, 0.5F, 0.01F);
    const Picture glass = drawn(busy, Picture(48, 48, {0, 0, 0, 0}), {false, true, false});
    EXPECT_NEAR(glass.at(70, 55).a, 0.5F, 0.01F);
}

TEST_F(GlassPixels, AScaledIconGrowsDownwardFromTheCellsTop) {
    const Picture black(kWidth, kHeight, {0, 0, 0, 1});
    const Picture white(48, 48, {1, 1, 1, 1});
    const GlassPlace place{20, 20, 0, 0};
    const Picture picture = drawn(black, white, {false, false, true}, glassQuad(place, 1.2F, 50, 94, 0));
    EXPECT_EQ(picture.at(67, 19).r, 0);
    EXPECT_EQ(picture.at(67, 20).r, 1);
    EXPECT_EQ(picture.at(67, 79).r, 1);
    EXPECT_EQ(picture.at(67, 80).r, 0);
    EXPECT_EQ(picture.at(36, 50).r, 0);
    EXPECT_EQ(picture.at(37, 50).r, 1);
    EXPECT_EQ(picture.at(96, 50).r, 1);
    EXPECT_EQ(picture.at(97, 50).r, 0);
}

TEST_F(GlassPixels, TheScissorClipsAnIconToItsGroup) {
    const Picture black(kWidth, kHeight, {0, 0, 0, 1});
    window.surface.backgroundSRV = window.upload(black);
    startFrame();
    window.glass.begin();
    window.glass.beginScissor({50, 40, 70, 60});
    const IconTexture white = window.uploadIcon(Picture(8, 8, {1, 1, 1, 1}));
    window.glass.drawGlass({40, 30, 48}, white, window.surface.backgroundSRV.get(), {});
    window.glass.endScissor();
    window.glass.drawGlass({120, 90, 10}, white, window.surface.backgroundSRV.get(), {});
    const Picture picture = window.backBuffer();
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const bool clipped = x >= 50 && x < 70 && y >= 40 && y < 60;
            const bool free = x >= 120 && x < 130 && y >= 90 && y < 100;
            ASSERT_EQ(picture.at(x, y).r, clipped || free ? 1 : 0) << x << ", " << y;
        }
}

TEST_F(GlassPixels, ABlurredRectangleIsWhatTheReferenceComputes) {
    const BlurTint tints[] = {{0, {0, 0, 0, 0}},
                              {3, {0, 0, 0, 0.7F}},
                              {3, {1, 1, 1, 0.35F}},
                              {4, {0.27F, 0.51F, 0.71F, 0.75F}},
                              {5.5F, {0.2F, 0.9F, 0.4F, 0}},
                              {6, {0.15F, 0.15F, 0.15F, 0.5F}}};
    window.surface.backgroundSRV = window.upload(busy);
    for (const BlurTint& tint : tints) {
        startFrame();
        window.base.drawBlurRect({-5, 17, 93, 130}, window.surface.backgroundSRV.get(), tint);
        Picture wanted = busy;
        drawBlur(wanted, busy,
                 {-5, 17, 93, 130, tint.offset, {tint.color.r, tint.color.g, tint.color.b, tint.color.a}});
        expectSame(window.backBuffer(), wanted, "offset " + std::to_string(tint.offset));
    }
}

TEST_F(GlassPixels, ABlurredRectangleLetsGoOfItsSource) {
    window.surface.backgroundSRV = window.upload(busy);
    startFrame();
    window.base.drawBlurRect({0, 0, 50, 50}, window.surface.backgroundSRV.get(), {3, {0, 0, 0, 0.5F}});
    ComRef<ID3D11ShaderResourceView> bound;
    window.layer.context->PSGetShaderResources(0, 1, bound.put());
    EXPECT_FALSE(bound);
}

TEST_F(GlassPixels, AnIconWithoutATextureDrawsNothing) {
    window.surface.backgroundSRV = window.upload(busy);
    startFrame();
    window.glass.begin();
    window.glass.drawGlass(kQuad, IconTexture{}, window.surface.backgroundSRV.get(), {});
    EXPECT_EQ(greatestDifference(window.backBuffer(), busy).steps, 0);
}

}  // namespace
}  // namespace varnelo
