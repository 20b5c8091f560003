// Where a pane draws what: against a wallpaper of one colour.

#include <gtest/gtest.h>

#include <optional>

#include "support/icon_pane_win.h"
#include "views/grid_groups.h"
#include "views/grid_scroll.h"

namespace varnelo {
namespace {

using reference::Color;
using reference::Picture;

constexpr int kWidth = 640;
constexpr int kHeight = 480;
constexpr Color kWall{0.2F, 0.4F, 0.6F, 1};
constexpr float kStep = 1.5F / 255;

class IconViewDraw : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(pane.window.ready);
        pane.window.surface.backgroundSRV = pane.window.upload(Picture(kWidth, kHeight, kWall));
    }

    // In a column of their own each, without files and so without icons of the shell.
    void givenNames(const std::vector<std::wstring>& names, const std::wstring& group = {}) {
        std::vector<FileEntry> entries;
        for (const std::wstring& name : names) entries.push_back(pane.named(name, group));
        pane.show(std::move(entries));
        pane.settle();
    }
    void givenIcon(std::size_t cell, const Color& color) {
        pane.view.cells[cell].texture =
            std::make_shared<IconTexture>(pane.window.uploadIcon(Picture(48, 48, color)));
    }
    // As in a frame, but with the pane as it stands.
    Picture drawn() {
        pane.window.layer.clear();
        pane.window.surface.drawBackground();
        pane.view.draw(false);
        return pane.picture();
    }
    static void expectColor(const Picture& picture, int x, int y, const Color& wanted) {
        const Color color = picture.at(x, y);
        EXPECT_NEAR(color.r, wanted.r, kStep) << x << ", " << y;
        EXPECT_NEAR(color.g, wanted.g, kStep) << x << ", " << y;
        EXPECT_NEAR(color.b, wanted.b, kStep) << x << ", " << y;
    }

    const Color white{1, 1, 1, 1};
    const Color glass{0, 0, 0, 0};
    IconPane pane{kWidth, kHeight};
};

TEST_F(IconViewDraw, AnIconStandsInTheMiddleOfItsCellsWidthAndAtItsTop) {
    givenNames({L"x"});
    givenIcon(0, white);
    const Picture picture = drawn();
    expectColor(picture, 33, 10, white);
    expectColor(picture, 80, 57, white);
    for (const auto& [x, y] : {std::pair{32, 30}, {81, 30}, {50, 9}, {50, 58}})
        expectColor(picture, x, y, kWall);
}

TEST_F(IconViewDraw, HeadersLinesAndLabelsStandOnWholePixels) {
    ViewRect rect{20.4F, 0, 500, kHeight};
    pane.view.setViewRect(rect, false, 0);
    givenNames({L"alpha", L"beta"}, L"Letters");
    const Picture picture = drawn();

    TextPictures pictures(pane.window.surface);
    QuadBatch quads(pane.window.surface);
    pictures.init();
    quads.init();
    pane.window.layer.clear();
    pane.window.surface.drawBackground();
    const auto add = [&](const std::optional<QuadBatch::Quad>& quad) {
        ASSERT_TRUE(quad);
        quads.add(*quad);
    };
    // The header at (30.4, 10), its line 26 below, the labels 56 below cells at 30.4 and 124.4.
    add(pictures.header(L"Letters", 30, 10));
    add(pictures.underline(30.4F, 36));
    quads.flush();
    add(pictures.label(L"alpha", {94, false, false}, 30, 100));
    add(pictures.label(L"beta", {94, false, false}, 124, 100));
    quads.flush();
    const auto difference = reference::greatestDifference(picture, pane.picture());
    EXPECT_EQ(difference.steps, 0) << difference.x << ", " << difference.y;
    pictures.release();
    quads.release();
}

TEST_F(IconViewDraw, AGroupClipsItsIconsToItsAnimatedHeight) {
    givenNames({L"x"}, L"Letters");
    givenIcon(0, white);
    pane.view.groups[0].height = 30;  // the area begins at 34, the icon at 44
    const Picture picture = drawn();
    expectColor(picture, 57, 44, white);
    expectColor(picture, 57, 63, white);
    expectColor(picture, 57, 64, kWall);
    pane.view.groups[0].height = 0;
    expectColor(drawn(), 57, 50, kWall);
}

TEST_F(IconViewDraw, ADraggedIconShowsTheSceneAndARestingOneTheWallpaper) {
    const Color scene{0.9F, 0.1F, 0.3F, 1};
    pane.window.surface.sceneSRV = pane.window.upload(Picture(kWidth, kHeight, scene));
    for (const wchar_t* group : {L"", L"Letters"}) {
        givenNames({L"a", L"b"}, group);
        givenIcon(0, glass);
        givenIcon(1, glass);
        IconCell& dragged = pane.view.cells[0];
        dragged.dragged = true;
        pane.view.cellDragActive = true;
        const Picture picture = drawn();
        const int y = static_cast<int>(dragged.y) + 20;
        expectColor(picture, 57, y, scene);
        expectColor(picture, 57 + 94, y, kWall);
    }
}

// A group lets go of what is dragged; a plain pane keeps it inside.
TEST_F(IconViewDraw, OnlyAPlainPaneClipsADraggedIcon) {
    for (const wchar_t* group : {L"", L"Letters"}) {
        ViewRect rect{0, 0, 400, 200};
        pane.view.setViewRect(rect, false, 0);
        givenNames({L"a"}, group);
        givenIcon(0, white);
        pane.view.cells[0].dragged = true;
        pane.view.cells[0].y = 180;
        pane.view.cellDragActive = true;
        const Picture picture = drawn();
        expectColor(picture, 57, 195, white);
        expectColor(picture, 57, 205, *group ? white : kWall);
    }
}

TEST_F(IconViewDraw, WithoutAnythingToDrawOnAHoveredIconStillComesToRest) {
    givenNames({L"x"});
    givenIcon(0, white);
    pane.settings.hoverMode = 1;
    pane.window.surface.input.cursorX = 50;
    pane.window.surface.input.cursorY = 30;
    pane.frame();
    pane.view.onMouseMove(false);
    EXPECT_TRUE(pane.frame());
    pane.window.surface.d2dRT.reset();
    int frames = 0;
    while (pane.frame() && frames < 200) ++frames;
    EXPECT_LT(frames, 200);
    EXPECT_NEAR(pane.view.cells[0].scale, 1.15F, 0.01F);
}

TEST_F(IconViewDraw, TheScrollBarIsABlurredThumbOnABlurredTrack) {
    givenNames(std::vector<std::wstring>(100, L"x"));
    const std::optional<ScrollThumb> thumb = scrollThumb(pane.view);
    ASSERT_TRUE(thumb);
    const auto bar = [](const Color& under, float tint) {
        const auto mixed = [&](float wall, float below) {
            const float alpha = 0.3F + 0.7F * 0.7F;
            return (wall * 0.3F + tint * 0.7F) * alpha + below * (1 - alpha);
        };
        return Color{mixed(kWall.r, under.r), mixed(kWall.g, under.g), mixed(kWall.b, under.b), 1};
    };
    const Color track = bar(kWall, 0);
    const Color grip = bar(track, 1);
    pane.view.scrollBarAlpha = 1;
    const Picture picture = drawn();
    const int end = static_cast<int>(thumb->top + thumb->height);
    expectColor(picture, 635, end - 1, grip);
    expectColor(picture, 635, end, track);
    expectColor(picture, 630, kHeight - 1, track);
    expectColor(picture, 629, kHeight - 1, kWall);

    const auto changed = [&](float alpha) {
        pane.view.scrollBarAlpha = 0;
        const Picture without = drawn();
        pane.view.scrollBarAlpha = alpha;
        return reference::greatestDifference(drawn(), without).steps > 0;
    };
    EXPECT_FALSE(changed(0.0099F));
    EXPECT_TRUE(changed(0.01F));
    givenNames({L"x"});  // all fits
    pane.view.scrollBarAlpha = 1;
    expectColor(drawn(), 635, 0, kWall);
}

}  // namespace
}  // namespace varnelo
