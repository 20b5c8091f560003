#include "views/grid_scroll.h"

#include <cmath>

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridScrollTest : public GridTest {
protected:
    // 100 items in 10 rows of 10: 1110 pixels in a pane of 300.
    void SetUp() override {
        givenPane(10 * kCellWidth + 10, 300);
        givenItems(Words(100, L"x"));
        cursorTo(300, 150);
    }
    float right() const { return grid.viewRect.right(); }
};

TEST_F(GridScrollTest, ANotchOfTheWheelAdds600PixelsPerSecond) {
    grid.onMouseWheel(-120);
    EXPECT_EQ(grid.scrollVelocity, -600);
    grid.onMouseWheel(-60);
    EXPECT_EQ(grid.scrollVelocity, -900);
    EXPECT_EQ(grid.scrollBarAlphaTarget, 1);
}

TEST_F(GridScrollTest, TheWheelOutsideOfThePaneDoesNothing) {
    cursorTo(300, 301);
    grid.onMouseWheel(-120);
    EXPECT_EQ(grid.scrollVelocity, 0);
    EXPECT_EQ(grid.scrollBarAlphaTarget, 0);
}

TEST_F(GridScrollTest, ContentMovesByItsSpeedWhichThenLosesEightTimesItselfPerSecond) {
    grid.scrollVelocity = -600;
    frame(0.01f);
    EXPECT_FLOAT_EQ(grid.scrollY, 6);
    EXPECT_FLOAT_EQ(grid.scrollVelocity, -600 + 600 * 8 * 0.01f);
}

TEST_F(GridScrollTest, AFrameReadsTheCursorBeforeTheContentMoves) {
    grid.scrollY = 100;
    grid.scrollVelocity = -600;
    frame(0.01f);
    EXPECT_EQ(grid.scrollY, 106);
    EXPECT_EQ(grid.mouseY, 150 + 100);
}

TEST_F(GridScrollTest, ASpeedBelowAPixelPerSecondIsNone) {
    grid.scrollY = 100;
    grid.scrollVelocity = -1.05f;
    frame(0.01f);
    EXPECT_EQ(grid.scrollVelocity, 0);
}

TEST_F(GridScrollTest, ASpeedOfMoreThanAPixelPerSecondIsKept) {
    grid.scrollY = 100;
    grid.scrollVelocity = -1.5f;
    frame(0.01f);
    EXPECT_FLOAT_EQ(grid.scrollVelocity, -1.5f * 0.92f);
}

TEST_F(GridScrollTest, ContentThatStandsBetweenTheEndsAndItsFirstPixelGoesOn) {
    grid.scrollVelocity = -50;
    frame(0.01f);
    EXPECT_FLOAT_EQ(grid.scrollY, 0.5f);
    EXPECT_FLOAT_EQ(grid.scrollVelocity, -46);
}

TEST_F(GridScrollTest, AFrameOfNoTimeKeepsTheSpeedOfATurnAtTheTop) {
    grid.onMouseWheel(-120);
    frame(0);
    EXPECT_EQ(grid.scrollY, 0);
    EXPECT_EQ(grid.scrollVelocity, -600);
}

TEST_F(GridScrollTest, TheEndsOfTheContentStopIt) {
    grid.scrollVelocity = 5000;
    frame(0.1f);
    EXPECT_EQ(grid.scrollY, 0);
    EXPECT_EQ(grid.scrollVelocity, 0);
    grid.scrollVelocity = -50000;
    frame(0.1f);
    EXPECT_EQ(grid.scrollY, 1110 - 300);
    EXPECT_EQ(grid.scrollVelocity, 0);
}

TEST_F(GridScrollTest, ContentThatShrinksWithItsIconsStopsInTheSameFrame) {
    grid.scrollY = 700;
    grid.scrollVelocity = -60;
    settings.iconScale = 0.5f;
    frame(0.01f);
    EXPECT_EQ(grid.scrollY, maxScroll(grid));
    EXPECT_LT(grid.scrollY, 700);
    EXPECT_EQ(grid.scrollVelocity, 0);
}

TEST_F(GridScrollTest, ContentThatFitsDoesNotScroll) {
    givenItems({L"a"});
    grid.onMouseWheel(-120);
    frame(0.1f);
    EXPECT_EQ(grid.scrollY, 0);
    EXPECT_EQ(grid.scrollVelocity, 0);
}

TEST_F(GridScrollTest, ScrollingNeedsFramesUntilTheBarHasFaded) {
    grid.onMouseWheel(-120);
    EXPECT_TRUE(frame());
    const int count = settle();
    EXPECT_GT(count, 60);   // the bar stays for a second
    EXPECT_LT(count, 200);  // and goes then
    EXPECT_LE(grid.scrollBarAlpha, 0.001f);
    EXPECT_EQ(grid.scrollVelocity, 0);
    EXPECT_FALSE(frame());
}

TEST_F(GridScrollTest, TheBarOfAGroupedPaneNeedsFramesTooUntilItHasFaded) {
    givenGroups({{L"G", 30}, {L"H", 30}, {L"I", 30}});
    settle();
    grid.onMouseWheel(-1);
    EXPECT_TRUE(frame());
    grid.scrollVelocity = 0;
    EXPECT_TRUE(frame());
    settle();
    EXPECT_LE(grid.scrollBarAlpha, 0.001f);
}

TEST_F(GridScrollTest, TheBarFadesInAtItsRate) {
    grid.onMouseWheel(-1);
    frame(0.05f);
    EXPECT_FLOAT_EQ(grid.scrollBarAlpha, 1 - std::exp(-18 * 0.05f));
}

TEST_F(GridScrollTest, TheBarStaysWhileTheCursorIsOnIt) {
    hover(right() - 5, 100);
    EXPECT_TRUE(grid.scrollBarHovered);
    for (int i = 0; i < 300; ++i) EXPECT_TRUE(frame());
    EXPECT_GT(grid.scrollBarAlpha, 0.99f);
    hover(200, 100);
    EXPECT_FALSE(grid.scrollBarHovered);
    settle();
    EXPECT_LE(grid.scrollBarAlpha, 0.001f);
}

TEST_F(GridScrollTest, TheBarStaysWhileItsThumbIsDragged) {
    grid.scrollBarDragging = true;
    grid.scrollBarHovered = false;
    grid.scrollBarAlphaTarget = 1;
    EXPECT_TRUE(fadeScrollBar(grid, grid.lastScrollActivity + 5, kFrame));
    EXPECT_EQ(grid.scrollBarAlphaTarget, 1);
    grid.scrollBarDragging = false;
    fadeScrollBar(grid, grid.lastScrollActivity + 5, kFrame);
    EXPECT_EQ(grid.scrollBarAlphaTarget, 0);
}

TEST_F(GridScrollTest, AThumbWhoseReleaseWentElsewhereIsLetGoAtTheNextMove) {
    grid.scrollBarDragging = true;
    hover(200, 100);
    EXPECT_FALSE(grid.scrollBarDragging);
}

TEST_F(GridScrollTest, TheBarStaysForASecondAfterTheLastActivity) {
    hover(right() - 5, 100);
    frames(30);
    hover(200, 100);
    clock.steady = grid.lastScrollActivity + 0.99;
    input.deltaTime = kFrame;
    grid.update();
    EXPECT_EQ(grid.scrollBarAlphaTarget, 1);
    clock.steady = grid.lastScrollActivity + 1.01;
    grid.update();
    EXPECT_EQ(grid.scrollBarAlphaTarget, 0);
}

TEST_F(GridScrollTest, TheBarStaysForASecondAfterEitherKindOfActivity) {
    const auto targetAfter = [&](double scrollAge, double wheelAge) {
        grid.scrollBarAlphaTarget = 1;
        grid.lastScrollActivity = clock.steady - scrollAge;
        grid.lastWheelActivity = clock.steady - wheelAge;
        fadeScrollBar(grid, clock.steady, kFrame);
        return grid.scrollBarAlphaTarget;
    };
    EXPECT_EQ(targetAfter(0.5, 5), 1);
    EXPECT_EQ(targetAfter(5, 0.5), 1);
    EXPECT_EQ(targetAfter(5, 5), 0);
}

TEST_F(GridScrollTest, ATurnOfTheWheelKeepsTheBarForASecond) {
    turnWheel(grid, -120, clock.steady);
    fadeScrollBar(grid, clock.steady + 0.99, kFrame);
    EXPECT_EQ(grid.scrollBarAlphaTarget, 1);
    fadeScrollBar(grid, clock.steady + 1.01, kFrame);
    EXPECT_EQ(grid.scrollBarAlphaTarget, 0);
}

TEST_F(GridScrollTest, ASpeedOrAFadeThatIsStillToComeNeedsAFrame) {
    EXPECT_FALSE(fadeScrollBar(grid, clock.steady, 0));
    grid.scrollVelocity = -5;
    EXPECT_TRUE(fadeScrollBar(grid, clock.steady, 0));
    grid.scrollVelocity = 0;
    grid.scrollBarAlphaTarget = 1;
    EXPECT_TRUE(fadeScrollBar(grid, clock.steady, 0));
}

TEST_F(GridScrollTest, TheThumbIsTheShareOfTheContentThatIsSeen) {
    const auto thumb = scrollThumb(grid);
    ASSERT_TRUE(thumb);
    EXPECT_FLOAT_EQ(thumb->height, 300.0f / 1110 * 300);
    EXPECT_FLOAT_EQ(thumb->track, 300 - thumb->height);
    EXPECT_EQ(thumb->top, 0);
    grid.scrollY = maxScroll(grid);
    EXPECT_FLOAT_EQ(scrollThumb(grid)->top, thumb->track);
}

TEST_F(GridScrollTest, TheThumbIsAtLeast20PixelsHigh) {
    givenItems(Words(20000, L"x"));
    EXPECT_EQ(scrollThumb(grid)->height, 20);
}

TEST_F(GridScrollTest, NoBarWhenAllFits) {
    givenItems({L"a"});
    EXPECT_FALSE(scrollThumb(grid));
    EXPECT_FALSE(onScrollBar(grid, right() - 5, 100));
    grid.contentHeight = visibleHeight(grid);
    EXPECT_FALSE(scrollThumb(grid));
}

TEST_F(GridScrollTest, ContentALittleHigherThanThePaneMovesTheThumbToItsEnd) {
    grid.contentHeight = visibleHeight(grid) + 1.5f;
    grid.scrollY = 1.5f;
    EXPECT_FLOAT_EQ(scrollThumb(grid)->top, scrollThumb(grid)->track);
}

TEST_F(GridScrollTest, BothEdgesBelongToTheThumb) {
    const float end = scrollThumb(grid)->height;
    for (const float edge : {0.0f, end}) {
        pressScrollBar(grid, grid.viewRect.y + edge);
        EXPECT_TRUE(grid.scrollBarDragging) << edge;
        EXPECT_EQ(grid.scrollBarGrabY, edge);
        grid.scrollBarDragging = false;
    }
    pressScrollBar(grid, grid.viewRect.y + end + 0.5f);
    EXPECT_FALSE(grid.scrollBarDragging);
}

TEST_F(GridScrollTest, InAListTheThumbFollowsTheCursorFromBelowTheHeader) {
    grid.layoutMode = LayoutMode::List;
    frame();
    pressScrollBar(grid, grid.viewRect.y + 26 + 5);
    ASSERT_TRUE(grid.scrollBarDragging);
    dragThumb(grid, grid.viewRect.y + 26 + 5);
    EXPECT_EQ(grid.scrollY, 0);
    dragThumb(grid, grid.viewRect.y + 26 + 5 + scrollThumb(grid)->track);
    EXPECT_FLOAT_EQ(grid.scrollY, maxScroll(grid));
}

TEST_F(GridScrollTest, InAListTheTrackBeginsBelowTheHeader) {
    grid.layoutMode = LayoutMode::List;
    frame();
    EXPECT_EQ(grid.contentHeight, 100 * 24 + 26 + 10);
    const auto thumb = scrollThumb(grid);
    EXPECT_EQ(thumb->top, 26);
    EXPECT_FLOAT_EQ(thumb->height, (300.0f - 26) / 2436 * (300 - 26));
    EXPECT_EQ(maxScroll(grid), 2436 - (300 - 26));
}

TEST_F(GridScrollTest, TheStripIsAsWideAsTheBarAtTheRightEdge) {
    EXPECT_TRUE(onScrollBar(grid, right(), 0));
    EXPECT_TRUE(onScrollBar(grid, right() - 10, 300));
    EXPECT_FALSE(onScrollBar(grid, right() - 10.5f, 100));
    EXPECT_FALSE(onScrollBar(grid, right() + 0.5f, 100));
}

TEST_F(GridScrollTest, TheThumbFollowsTheCursor) {
    press(right() - 5, 10);
    EXPECT_TRUE(grid.scrollBarDragging);
    EXPECT_EQ(grid.scrollBarGrabY, 10);
    const float track = scrollThumb(grid)->track;
    drag(right() - 5, 10 + track / 2);
    EXPECT_FLOAT_EQ(grid.scrollY, (1110 - 300) / 2.0f);
    drag(right() + 500, 5000);  // beyond the end, beside the bar
    EXPECT_FLOAT_EQ(grid.scrollY, 1110 - 300);
    release();
    EXPECT_FALSE(grid.scrollBarDragging);
}

TEST_F(GridScrollTest, APressOnTheBarLeavesTheCellsAlone) {
    frame();
    clickOn(L"x");
    const int pressed = grid.pressedIndex;
    press(right() - 5, 10);
    EXPECT_EQ(selectedNames().size(), 1u);
    EXPECT_FALSE(grid.lasso.active);
    EXPECT_EQ(grid.pressedIndex, pressed);
}

TEST_F(GridScrollTest, WhileTheThumbIsDraggedTheCursorHoversAndSelectsNothing) {
    frame();
    clickOn(L"x");
    hover(right() - 5, 10);
    ASSERT_TRUE(grid.scrollBarHovered);
    const int hovered = grid.hoverIndex;
    press(right() - 5, 10);
    drag(300, 60);  // over another cell
    EXPECT_EQ(grid.hoverIndex, hovered);
    EXPECT_TRUE(grid.scrollBarHovered);
    EXPECT_FALSE(grid.mouseDragging);
}

TEST_F(GridScrollTest, TheThumbOfAPaneThatLiesLowerFollowsTheCursorToo) {
    givenPane(10 * kCellWidth + 10, 300, 0, 70);
    pressScrollBar(grid, 70 + 10);
    ASSERT_TRUE(grid.scrollBarDragging);
    EXPECT_EQ(grid.scrollBarGrabY, 10);
    dragThumb(grid, 70 + 10 + scrollThumb(grid)->track / 2);
    EXPECT_FLOAT_EQ(grid.scrollY, maxScroll(grid) / 2);
}

TEST_F(GridScrollTest, APressWhereNoBarIsDoesNothing) {
    givenItems({L"a"});
    pressScrollBar(grid, 5);
    dragThumb(grid, 50);
    EXPECT_FALSE(grid.scrollBarDragging);
    EXPECT_EQ(grid.scrollY, 0);
}

TEST_F(GridScrollTest, APressBesideTheThumbPagesTowardsTheCursor) {
    press(right() - 5, 290);
    EXPECT_FLOAT_EQ(grid.scrollY, 270);
    press(right() - 5, 290);
    EXPECT_FLOAT_EQ(grid.scrollY, 540);
    press(right() - 5, 0);
    EXPECT_FLOAT_EQ(grid.scrollY, 270);
    EXPECT_FALSE(grid.scrollBarDragging);
}

TEST_F(GridScrollTest, PagingStopsAtTheEnds) {
    grid.scrollY = 800;
    press(right() - 5, 299);
    EXPECT_EQ(grid.scrollY, 810);
}

TEST_F(GridScrollTest, APaneLowerThanTheThumbDoesNotDivideByNothing) {
    givenPane(10 * kCellWidth + 10, 20);
    press(right() - 5, 10);
    drag(right() - 5, 15);
    EXPECT_EQ(grid.scrollY, 0);
    givenPane(10 * kCellWidth + 10, 5);
    press(right() - 5, 3);
    drag(right() - 5, 4);
    EXPECT_EQ(grid.scrollY, 0);
}

TEST_F(GridScrollTest, AShorterListPullsTheScrollPositionBack) {
    grid.scrollY = 800;
    givenItems(Words(40, L"x"));
    frame();
    EXPECT_EQ(grid.scrollY, 4 * kCellHeight + 10 - 300);
}

}  // namespace
}  // namespace varnelo
