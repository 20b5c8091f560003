#include "views/grid_animation.h"

#include <cmath>

#include "host/views/grid_test.h"
#include "views/glass_constants.h"

namespace varnelo {
namespace {

float closed(float rate, float seconds) { return 1 - std::exp(-rate * seconds); }

class GridAnimationTest : public GridTest {
protected:
    void SetUp() override {
        givenPane(10 * kCellWidth + 10, 400);
        givenItems({L"a", L"b", L"c", L"d", L"e", L"f"});
        settle();
    }
    // The share of its way that each cell covers in one frame.
    std::vector<float> shares(float seconds) {
        for (IconCell& c : grid.cells) c.x = c.targetX - 100;
        animateCells(grid, 0, seconds);
        std::vector<float> result;
        for (const IconCell& c : grid.cells) result.push_back(1 - (c.targetX - c.x) / 100);
        return result;
    }
};

TEST_F(GridAnimationTest, WithoutADragEveryCellEasesAtTheBaseRate) {
    for (const float share : shares(0.05f)) EXPECT_NEAR(share, closed(18, 0.05f), 1e-5);
}

TEST_F(GridAnimationTest, EasingDoesNotDependOnTheFrameRate) {
    IconCell& a = cell(L"a");
    a.x = a.targetX - 100;
    frame(0.1f);
    const float once = a.x;
    a.x = a.targetX - 100;
    for (int i = 0; i < 10; ++i) frame(0.01f);
    EXPECT_NEAR(a.x, once, 0.01);
}

TEST_F(GridAnimationTest, CellsNearADraggedOneMakeRoomFasterAndThoseBehindItFastest) {
    grid.cells[3].dragged = true;
    const std::vector<float> share = shares(0.05f);
    EXPECT_NEAR(share[0], closed(18 + 5.0f / 4, 0.05f), 1e-5);
    EXPECT_NEAR(share[1], closed(18 + 5.0f / 3, 0.05f), 1e-5);
    EXPECT_NEAR(share[2], closed(18 + 5.0f / 2, 0.05f), 1e-5);
    EXPECT_EQ(share[3], 0);  // it follows the cursor
    EXPECT_NEAR(share[4], closed(18 + 5, 0.05f), 1e-5);
    EXPECT_NEAR(share[5], closed(18 + 5, 0.05f), 1e-5);
}

// The rule as it is told: a minimum that runs over all cells and is never reset.
TEST_F(GridAnimationTest, TheNearestDistanceIsTheRunningMinimumForAnyDraggedCells) {
    for (int pattern = 1; pattern < 64; ++pattern) {
        for (std::size_t i = 0; i < 6; ++i) grid.cells[i].dragged = pattern >> i & 1;
        const std::vector<float> share = shares(0.05f);
        float nearest = std::numeric_limits<float>::max();
        for (int i = 0; i < 6; ++i) {
            for (int j = 0; j < 6; ++j) {
                if (pattern >> j & 1) nearest = std::min(nearest, static_cast<float>(std::abs(i - j)));
            }
            if (pattern >> i & 1) continue;
            EXPECT_NEAR(share[static_cast<std::size_t>(i)], closed(5 / (nearest + 1) + 18, 0.05f), 1e-5)
                << pattern << i;
        }
    }
}

TEST_F(GridAnimationTest, HalfAPixelFromTheTargetNeedsNoFrame) {
    IconCell& a = cell(L"a");
    a.x = a.targetX - 0.5f;
    EXPECT_FALSE(frame(0));
    a.x = a.targetX - 0.6f;
    EXPECT_TRUE(frame(0));
    a.x = a.targetX;
    a.y = a.targetY + 0.6f;
    EXPECT_TRUE(frame(0));
}

TEST_F(GridAnimationTest, ANewCellDoesNotShake) {
    EXPECT_EQ(IconCell().shakeTime, 99);
    grid.addEntry(item(L"new"));
    EXPECT_FALSE(frame());
    EXPECT_EQ(cell(L"new").shakeX, 0);
}

TEST_F(GridAnimationTest, AHoveredCellShakesForHalfASecond) {
    hoverOver(L"b");
    EXPECT_TRUE(frame(0.1f));
    const IconCell& b = cell(L"b");
    EXPECT_TRUE(b.hovered);
    EXPECT_FLOAT_EQ(b.shakeX, std::sin(20 * 0.1f) * 0.8f * 5);
    EXPECT_FLOAT_EQ(b.shakeY, std::sin(22 * 0.1f) * 0.8f * 5);
    EXPECT_TRUE(frame(0.3f));
    EXPECT_FALSE(frame(0.2f));
    EXPECT_EQ(b.shakeX, 0);
    EXPECT_EQ(b.shakeY, 0);
    EXPECT_TRUE(b.hovered);
    EXPECT_EQ(cell(L"a").shakeX, 0);
}

TEST_F(GridAnimationTest, AShakeGoesOnWhenTheCursorLeavesAndStartsAnewWhenItComesBack) {
    hoverOver(L"b");
    frame(0.1f);
    hover(10, 390);
    EXPECT_TRUE(frame(0.1f));
    EXPECT_FALSE(cell(L"b").hovered);
    EXPECT_FLOAT_EQ(cell(L"b").shakeTime, 0.2f);
    hoverOver(L"b");
    frame(0.1f);
    EXPECT_FLOAT_EQ(cell(L"b").shakeTime, 0.1f);
}

TEST_F(GridAnimationTest, AnUnknownHoverModeShakes) {
    settings.hoverMode = 77;
    hoverOver(L"b");
    frame(0.1f);
    EXPECT_NE(cell(L"b").shakeX, 0);
}

TEST_F(GridAnimationTest, AnEnlargedCellDoesNotShakeAndNeedsFramesUntilItsScaleIsThere) {
    settings.hoverMode = 1;
    IconCell& b = cell(L"b");
    b.texture = someTexture();
    hoverOver(L"b");
    EXPECT_TRUE(frame());
    EXPECT_TRUE(b.hovered);
    EXPECT_EQ(b.shakeX, 0);
    int count = 0;
    for (; frame(); ++count) b.scale = easedScale(b.scale, b.dragged, b.hovered, 1);
    EXPECT_NEAR(b.scale, 1.15f, 0.001f);
    EXPECT_GT(count, 20);
    hover(10, 390);
    EXPECT_TRUE(frame());
    EXPECT_FALSE(b.hovered);
}

TEST_F(GridAnimationTest, ACellThatIsNotDrawnAsksForNoFrames) {
    settings.hoverMode = 1;
    hoverOver(L"b");
    EXPECT_FALSE(frame());  // no icon, so nothing grows
    cell(L"b").texture = someTexture();
    EXPECT_TRUE(frame());
    cell(L"b").y = cell(L"b").targetY = -1000;
    markVisible(grid);
    ASSERT_FALSE(cell(L"b").visible);
    EXPECT_FALSE(animateCells(grid, 1, kFrame));
}

TEST_F(GridAnimationTest, AShakeThatIsOverAsksForNoFrame) {
    hoverOver(L"b");
    frame(0.25f);
    EXPECT_FALSE(frame(0.25f));
}

TEST_F(GridAnimationTest, AChangeToTheEnlargingModeEndsAShake) {
    hoverOver(L"b");
    frame(0.1f);
    ASSERT_NE(cell(L"b").shakeX, 0);
    settings.hoverMode = 1;
    frame(0.1f);
    EXPECT_EQ(cell(L"b").shakeX, 0);
    EXPECT_EQ(cell(L"b").shakeY, 0);
}

TEST_F(GridAnimationTest, NothingHoversInAList) {
    grid.layoutMode = LayoutMode::List;
    settle();
    hover(100, 40);
    ASSERT_NE(grid.hoverIndex, -1);
    EXPECT_FALSE(frame());
    EXPECT_FALSE(grid.hoverCell()->hovered);
}

TEST_F(GridAnimationTest, ADraggedCellIsHeldStillAndShakesOnceWhereItLands) {
    hoverOver(L"b");
    frame(0.1f);
    IconCell& b = cell(L"b");
    b.dragged = true;
    frame(0.1f);
    EXPECT_FALSE(b.hovered);
    EXPECT_EQ(b.shakeTime, 0);
    EXPECT_EQ(b.shakeX, 0);
    EXPECT_EQ(b.shakeY, 0);
    b.dragged = false;
    grid.clearHover();
    EXPECT_TRUE(frame(0.1f));
    EXPECT_NE(b.shakeX, 0);
}

TEST_F(GridAnimationTest, AFrameSeesTheCellsBeforeItMovesTheGroups) {
    givenPane(400, 900);
    givenGroups({{L"G", 5}, {L"H", 1}});
    clickHeader(L"G");
    frame(0.1f);
    EXPECT_GT(group(L"G").height, kCellHeight + grid.groupHeaderGap);
    EXPECT_FALSE(cell(L"G4").visible);  // the second row was still behind the clip
    frame(0);
    EXPECT_TRUE(cell(L"G4").visible);
}

TEST_F(GridAnimationTest, AFrameMovesTheGroupsBeforeTheirCells) {
    givenPane(400, 900);
    givenGroups({{L"G", 5}, {L"H", 1}});
    clickHeader(L"G");
    const float before = cell(L"H0").y;
    frame();
    EXPECT_GT(cell(L"H0").y, before);
    EXPECT_EQ(cell(L"H0").targetY, group(L"H").y + grid.groupHeaderHeight + grid.groupHeaderGap);
}

TEST_F(GridAnimationTest, AGroupWithinHalfAPixelOfItsHeightNeedsNoFrame) {
    givenGroups({{L"G", 3}});
    settle();
    group(L"G").height = kCellHeight - 0.5f;
    EXPECT_FALSE(frame(0));
    group(L"G").height = kCellHeight - 0.6f;
    EXPECT_TRUE(frame(0));
}

}  // namespace
}  // namespace varnelo
