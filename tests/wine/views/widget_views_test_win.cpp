#include <string>
#include <vector>

#include "support/device_calls_win.h"
#include "support/widget_fixture_win.h"
#include "views/menu_bar.h"
#include "views/menu_bar_view_win.h"
#include "views/progress_bar.h"
#include "views/progress_bar_view_win.h"
#include "views/splitter_arrow.h"
#include "views/splitter_arrow_view_win.h"
#include "views/tab_strip.h"
#include "views/tab_strip_view_win.h"

namespace varnelo {
namespace {

// The bars are 40 pixels high at 96 DPI.
constexpr float kHeights[] = {40, 60};

class TabStripViewTest : public WidgetFixture {
protected:
    void given(float height, const std::vector<std::wstring>& labels) {
        strip = {};
        strip.place({15, 20, 390, height});
        for (const std::wstring& label : labels) strip.addTab(label, [] {});
        strip.activeIndex = 1;
        strip.hoverIndex = 2;
    }
    Picture shown() {
        return frame([this] { view.draw(false); });
    }
    Picture glass() {
        Picture picture = wallpaper;
        for (std::size_t i = 0; i < strip.tabs.size(); ++i)
            blurOn(picture, wallpaper, strip.tabs[i].rect, strip.tint(i));
        return picture;
    }

    TabStrip strip;
    TabStripView view{canvas, strip};
};

TEST_F(TabStripViewTest, EveryTabHasTheGlassOfItsState) {
    for (const float height : kHeights) {
        given(height, {L"", L"", L"", L""});
        expectSame(shown(), glass());
    }
}

TEST_F(TabStripViewTest, LabelsStandInsideTheirTabs) {
    for (const float height : kHeights) {
        given(height,
              {L"Desktop", L"\u30C7\u30B9\u30AF", L"System", L"A label that is much too long for it"});
        const Picture picture = shown();
        for (const TabStrip::Tab& tab : strip.tabs) EXPECT_TRUE(hasInk(picture, tab.rect)) << height;
        EXPECT_EQ(differing(picture, wallpaper, strip.rect, Where::Outside), 0);
    }
}

TEST_F(TabStripViewTest, ALabelLooksAsIfItWereDrawnTwiceDirectly) {
    given(40, {L"Desktop", L"Overview", L"System", L"Search"});
    const Picture fromPictures = shown();
    const auto format = canvas.makeFormat(16, DWRITE_TEXT_ALIGNMENT_CENTER);
    const auto white = canvas.makeBrush({1, 1, 1, 1});
    const auto black = canvas.makeBrush({0, 0, 0, 0.75F});
    TabStrip plain = strip;
    for (TabStrip::Tab& tab : plain.tabs) tab.label.clear();
    TabStripView glassOnly(canvas, plain);
    const Picture direct = frame([&] {
        glassOnly.draw(false);
        const DrawScope scope(*window.surface.d2dRT);
        for (const TabStrip::Tab& tab : strip.tabs) {
            const auto layout = canvas.layOut(tab.label, format.get(), tab.rect.w, tab.rect.h);
            for (ID2D1Brush* brush : {black.get(), white.get()})
                scope->DrawTextLayout({tab.rect.x, tab.rect.y}, layout.get(), brush,
                                      D2D1_DRAW_TEXT_OPTIONS_NONE);
        }
    });
    expectSame(fromPictures, direct, 6);
    EXPECT_GT(differing(direct, glass(), strip.rect, Where::Inside), 100);
}

TEST_F(TabStripViewTest, AtRestNothingIsCreated) {
    given(40, {L"Desktop", L"Overview", L"System", L"Search"});
    const Picture first = shown();
    const WidgetStatistics before = canvas.made;
    EXPECT_EQ(before.pictures, 4U);
    {
        const DeviceCalls calls(window.surface.device);
        frame([&] {
            strip.activeIndex = 2;  // glass alone
            view.draw(false);
        });
        EXPECT_LE(calls.created(), 1) << "beside the copy that the case reads";
    }
    EXPECT_EQ(canvas.made, before);
    strip.setLabel(0, L"Schreibtisch");
    shown();
    EXPECT_EQ(canvas.made.pictures, 5U);
    EXPECT_EQ(canvas.made.formats, before.formats);
}

TEST_F(TabStripViewTest, WithoutATargetNothingIsDrawn) {
    given(40, {L"Desktop"});
    expectSame(frame([this] { view.draw(true); }), wallpaper, 0);
    window.surface.d2dRT.reset();
    expectSame(shown(), wallpaper, 0);
}

TEST_F(TabStripViewTest, InTheScenePassTheSceneIsDrawnTo) {
    given(40, {L"Desktop", L"Overview", L"System", L"Search"});
    const Picture direct = shown();
    const Picture windowPicture = frame([this] { window.surface.renderScene([this] { view.draw(true); }); });
    expectSame(windowPicture, wallpaper, 0);
    expectSame(window.contentOf(window.surface.sceneSRV.get()), direct, 0);
}

TEST_F(TabStripViewTest, AnotherHeightMakesAnotherFont) {
    given(40, {L"Desktop"});
    shown();
    strip.place({15, 20, 390, 60});
    const Picture tall = shown();
    EXPECT_EQ(canvas.made.formats, 2U);
    EXPECT_TRUE(hasInk(tall, strip.rect));
    view.releaseResources();
    expectSame(shown(), tall, 0);
}

class MenuBarViewTest : public WidgetFixture {
protected:
    void given(float height, const std::vector<std::wstring>& labels) {
        view.releaseResources();
        menu = {};
        menu.place(30, 10, height);
        for (const std::wstring& label : labels) menu.addItem(label, [] {});
        view.createResources();
    }
    Picture shown() {
        return frame([this] { view.draw(false); });
    }
    ViewRect whole() const {
        const ViewRect panel = menu.panelRect();
        return {menu.rect.x, menu.rect.y, std::max(menu.rect.w, panel.w), menu.rect.h + panel.h};
    }

    MenuBar menu;
    MenuBarView view{canvas, menu};
};

TEST_F(MenuBarViewTest, TheClosedMenuIsItsButton) {
    for (const float height : kHeights) {
        given(height, {L"Settings", L"Exit"});
        for (const bool hovered : {false, true}) {
            menu.hovered = hovered;
            const Picture picture = shown();
            EXPECT_EQ(differing(picture, wallpaper, menu.rect, Where::Outside), 0);
            EXPECT_TRUE(hasInk(picture, menu.rect)) << "the glyph";
            Picture glass = wallpaper;
            blurOn(glass, wallpaper, menu.rect, hovered ? kMenuButtonHoveredTint : kMenuButtonTint);
            // The corners hold no glyph.
            EXPECT_NEAR(picture.at(32, 12).g, glass.at(32, 12).g, 0.02F);
        }
    }
}

TEST_F(MenuBarViewTest, TheGlyphLiesOverAShadowHalfAPixelAway) {
    given(40, {});
    const Picture picture = shown();
    const auto format = canvas.makeFormat(24, DWRITE_TEXT_ALIGNMENT_CENTER);
    const auto layout = canvas.layOut(MenuBar::kGlyph, format.get(), 40, 40);
    const auto white = canvas.makeBrush({1, 1, 1, 1});
    const auto black = canvas.makeBrush({0, 0, 0, 0.5F});
    const Picture direct = frame([&] {
        canvas.blur(menu.rect, kMenuButtonTint);
        const DrawScope scope(*window.surface.d2dRT);
        scope->DrawTextLayout({30.5F, 10.5F}, layout.get(), black.get(), D2D1_DRAW_TEXT_OPTIONS_NONE);
        scope->DrawTextLayout({30, 10}, layout.get(), white.get(), D2D1_DRAW_TEXT_OPTIONS_NONE);
    });
    expectSame(picture, direct, 6);
}

TEST_F(MenuBarViewTest, ThePanelsRowsLieBelowTheButton) {
    for (const float height : kHeights) {
        given(height, {L"", L"", L"", L""});
        menu.open = true;
        menu.panelWidth = 150;
        menu.hotRow = 2;
        const Picture picture = shown();
        Picture glass = wallpaper;
        blurOn(glass, wallpaper, menu.panelRect(), kMenuPanelTint);
        blurOn(glass, wallpaper, menu.rowRect(2), kMenuHotRowTint);
        const ViewRect below{0, menu.rect.bottom(), float{kWidth}, kHeight - menu.rect.bottom()};
        EXPECT_EQ(differing(picture, glass, below, Where::Inside), 0) << height;
        EXPECT_EQ(differing(picture, wallpaper, whole(), Where::Outside), 0) << height;
    }
}

TEST_F(MenuBarViewTest, LabelsStandInTheirRowsTenPixelsIn) {
    for (const float height : kHeights) {
        given(height, {L"Settings", L"Monitors", L"Info", L"Exit"});
        menu.open = true;
        const Picture picture = shown();
        for (std::size_t row = 0; row < 4; ++row) {
            EXPECT_TRUE(hasInk(picture, menu.labelRect(row))) << row;
            ViewRect inset = menu.rowRect(row);
            inset.w = MenuBar::kLabelInset;
            EXPECT_FALSE(hasInk(picture, inset)) << row;
        }
        EXPECT_EQ(differing(picture, wallpaper, whole(), Where::Outside), 0);
    }
}

TEST_F(MenuBarViewTest, ThePanelIsAsWideAsItsWidestLabelAndTwentyMore) {
    given(40, {L"Info"});
    const float narrow = menu.panelWidth;
    const auto format = canvas.makeFormat(16, DWRITE_TEXT_ALIGNMENT_LEADING);
    DWRITE_TEXT_METRICS metrics{};
    canvas.layOut(L"Info", format.get(), 1000, 40)->GetMetrics(&metrics);
    EXPECT_FLOAT_EQ(narrow, metrics.width + 20);
    menu.setLabel(0, L"Informationen");
    EXPECT_GT(menu.panelWidth, narrow + 20);
    view.releaseResources();
    EXPECT_EQ(menu.panelWidth, 20);
    view.createResources();
    EXPECT_GT(menu.panelWidth, narrow + 20);
}

TEST_F(MenuBarViewTest, AtRestNothingIsCreated) {
    given(40, {L"Settings", L"Monitors", L"Info", L"Exit"});
    menu.open = true;
    const Picture first = shown();
    const WidgetStatistics before = canvas.made;
    menu.hotRow = 1;
    shown();
    menu.hotRow = -1;
    expectSame(shown(), first, 0);
    EXPECT_EQ(canvas.made, before);
}

TEST_F(MenuBarViewTest, WithoutATargetNothingIsDrawn) {
    given(40, {L"Settings"});
    window.surface.d2dRT.reset();
    expectSame(shown(), wallpaper, 0);
}

class ProgressBarViewTest : public WidgetFixture {
protected:
    ProgressBarViewTest() {
        bar.progress = &progress;
        bar.rect = {0, 270, float{kWidth}, 30};
        progress.active = true;
        progress.total = 4;
        progress.done = 1;
    }
    Picture shown() {
        return frame([this] { view.draw(false); });
    }
    Picture glass(float fill) {
        Picture picture = wallpaper;
        blurOn(picture, wallpaper, bar.rect, kProgressTrackTint);
        if (fill > 0) blurOn(picture, wallpaper, {0, 270, fill, 30}, kProgressFillTint);
        return picture;
    }

    LoadProgress progress;
    ProgressBar bar;
    ProgressBarView view{canvas, bar};
};

TEST_F(ProgressBarViewTest, TrackAndFillShowHowFarItIs) {
    expectSame(shown(), glass(105));
    progress.done = 4;
    expectSame(shown(), glass(kWidth));
    progress.total = progress.done = 0;
    expectSame(shown(), glass(0));
}

TEST_F(ProgressBarViewTest, TheLabelStandsInTheMiddleOverItsShadow) {
    progress.label = L"Indexing files";
    const Picture picture = shown();
    EXPECT_TRUE(hasInk(picture, {kWidth / 2 - 60, 270, 120, 30}));
    EXPECT_FALSE(hasInk(picture, {0, 270, 100, 30}));
    EXPECT_EQ(differing(picture, wallpaper, bar.rect, Where::Outside), 0);
    const Picture bare = glass(105);
    int darker = 0;
    for (int y = 270; y < 300; ++y)
        for (int x = 110; x < 310; ++x) darker += picture.at(x, y).g < bare.at(x, y).g - 0.1F;
    EXPECT_GT(darker, 30);
}

TEST_F(ProgressBarViewTest, NothingShowsWhileNothingIsActive) {
    progress.active = false;
    expectSame(shown(), wallpaper, 0);
    EXPECT_EQ(canvas.made, WidgetStatistics{});
}

TEST_F(ProgressBarViewTest, OnlyAnotherLabelIsDrawnAnew) {
    progress.label = L"Indexing files";
    shown();
    const WidgetStatistics before = canvas.made;
    progress.done = 3;
    shown();
    EXPECT_EQ(canvas.made, before);
    progress.label = L"Loading extensions";
    shown();
    EXPECT_EQ(canvas.made.pictures, before.pictures + 1);
}

class SplitterArrowViewTest : public WidgetFixture {
protected:
    SplitterArrowView view{canvas};
    const ViewRect bar{200, 0, 4, float{kHeight}};
};

TEST_F(SplitterArrowViewTest, TheArrowIsATriangleThatPointsToTheLeft) {
    const Picture picture = frame([this] { view.draw(bar, false); });
    const ViewRect around{198, 143, 8, 14};
    EXPECT_EQ(differing(picture, wallpaper, around, Where::Outside, 1), 0);
    // White at alpha 0.7 inside.
    const auto expectWhite = [&](int x, int y) {
        EXPECT_NEAR(picture.at(x, y).g, 0.7F + 0.3F * wallpaper.at(x, y).g, 0.02F) << x << ", " << y;
    };
    expectWhite(204, 150);
    expectWhite(201, 150);
    expectWhite(205, 146);
    expectWhite(205, 153);
    EXPECT_NEAR(picture.at(198, 145).g, wallpaper.at(198, 145).g, 0.01F);
    EXPECT_NEAR(picture.at(198, 155).g, wallpaper.at(198, 155).g, 0.01F);
}

TEST_F(SplitterArrowViewTest, ItIsMadeOnceAndMovesWithTheBar) {
    frame([this] { view.draw(bar, false); });
    const WidgetStatistics before = canvas.made;
    EXPECT_EQ(before.brushes, 1U);
    EXPECT_EQ(before.geometries, 1U);
    const Picture moved = frame([this] { view.draw({100, 0, 4, float{kHeight}}, false); });
    EXPECT_EQ(canvas.made, before);
    EXPECT_GT(differing(moved, wallpaper, {98, 143, 8, 14}, Where::Inside), 20);
    EXPECT_EQ(differing(moved, wallpaper, {98, 143, 8, 14}, Where::Outside, 1), 0);
}

}  // namespace
}  // namespace varnelo
