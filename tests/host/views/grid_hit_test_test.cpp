#include "views/grid_hit_test.h"

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridHitTest : public GridTest {
protected:
    void standAt(float x, float y) {
        grid.cells[0].x = x;
        grid.cells[0].y = y;
    }
    bool seenAt(float x, float y) {
        standAt(x, y);
        markVisible(grid);
        return grid.cells[0].visible;
    }
};

TEST_F(GridHitTest, ACellIsSeenFromAnIconAndAHalfBesideThePane) {
    givenPane(400, 300, 100, 50);
    givenItems({L"a"});
    const float s = grid.iconSize;
    EXPECT_TRUE(seenAt(100 - 1.5f * s, 100));
    EXPECT_FALSE(seenAt(100 - 1.5f * s - 0.5f, 100));
    EXPECT_TRUE(seenAt(500 - s / 2, 100));
    EXPECT_FALSE(seenAt(500 - s / 2 + 0.5f, 100));
}

TEST_F(GridHitTest, ACellIsSeenFromOneIconAboveThePaneToItsLowerEdge) {
    givenPane(400, 300, 100, 50);
    givenItems({L"a"});
    const float s = grid.iconSize;
    EXPECT_TRUE(seenAt(200, 50 - s));
    EXPECT_FALSE(seenAt(200, 50 - s - 0.5f));
    EXPECT_TRUE(seenAt(200, 350));
    EXPECT_FALSE(seenAt(200, 350.5f));
    grid.scrollY = 1000;
    EXPECT_TRUE(seenAt(200, 1350));
    EXPECT_FALSE(seenAt(200, 350));
}

TEST_F(GridHitTest, InAGroupTheTargetMustReachIntoTheAreaOfTheGroup) {
    givenPane(400, 900);
    givenGroups({{L"G", 1}});
    IconCell& only = grid.cells[0];
    const float top = group(L"G").y + grid.groupHeaderHeight;
    const auto seen = [&](float targetY) {
        only.targetY = targetY;
        markVisible(grid);
        return only.visible;
    };
    EXPECT_TRUE(seen(top - kCellHeight));
    EXPECT_FALSE(seen(top - kCellHeight - 0.5f));
    EXPECT_TRUE(seen(top + group(L"G").height));
    EXPECT_FALSE(seen(top + group(L"G").height + 0.5f));
}

TEST_F(GridHitTest, ACellIsHitInItsWidthAndDownToItsLabel) {
    givenPane(600, 300);
    givenItems({L"a"});
    frame();
    const auto hit = [&](float x, float y) {
        hover(x, y);
        return grid.hoverIndex;
    };
    EXPECT_EQ(hit(10, 10), 0);
    EXPECT_EQ(hit(10 + kCellWidth, 10 + 48 + 8 + 40), 0);
    EXPECT_EQ(hit(9.5f, 20), -1);
    EXPECT_EQ(hit(20, 9.5f), -1);
    EXPECT_EQ(hit(10 + kCellWidth + 0.5f, 20), -1);
    EXPECT_EQ(hit(20, 10 + 96.5f), -1);
}

TEST_F(GridHitTest, OnASharedEdgeTheFirstCellIsHit) {
    givenPane(600, 300);
    givenItems({L"a", L"b"});
    frame();
    hover(10 + kCellWidth, 20);
    EXPECT_EQ(grid.hoverIndex, 0);
}

TEST_F(GridHitTest, ACellIsHitWhereItIsNowAndNotWhereItGoes) {
    givenPane(600, 300);
    givenItems({L"a"});
    standAt(300, 100);
    markVisible(grid);
    hover(320, 120);
    EXPECT_EQ(grid.hoverIndex, 0);
    hover(20, 20);
    EXPECT_EQ(grid.hoverIndex, -1);
}

TEST_F(GridHitTest, WhatIsNotSeenIsNotHit) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}, {L"H", 1}});
    frame();
    const IconCell& hidden = cell(L"G4");
    hover(hidden.x + 5, hidden.y + 30);
    EXPECT_NE(grid.hoverIndex, indexOf(L"G4"));
}

TEST_F(GridHitTest, TheScrollOffsetCounts) {
    givenPane(10 + kCellWidth, 200);
    givenItems({L"a", L"b", L"c", L"d"});
    grid.scrollY = kCellHeight;
    frame(0);
    hover(20, 20);
    EXPECT_EQ(grid.hoverIndex, 1);
}

TEST_F(GridHitTest, ARowOfAListIsHitOverTheWholeWidthButNotUnderTheScrollBar) {
    givenPane(400, 300, 50, 0);
    givenItems({L"a", L"b"});
    grid.layoutMode = LayoutMode::List;
    settle();
    const auto hit = [&](float x, float y) {
        hover(x, y);
        return grid.hoverIndex;
    };
    const float first = 10 + 26;
    EXPECT_EQ(hit(50, first), 0);
    EXPECT_EQ(hit(440, first + 24), 0);
    EXPECT_EQ(hit(440.5f, first + 5), -1);
    EXPECT_EQ(hit(100, first + 25), 1);
    EXPECT_EQ(hit(100, first - 1), -1);
}

TEST_F(GridHitTest, ACursorOutsideOfThePaneHoversNothing) {
    givenPane(600, 300);
    givenItems({L"a"});
    frame();
    hoverOver(L"a");
    ASSERT_EQ(grid.hoverCell(), &grid.cells[0]);
    hover(-1, 20);
    EXPECT_EQ(grid.hoverIndex, -1);
    EXPECT_EQ(grid.hoverCell(), nullptr);
}

TEST_F(GridHitTest, AnIconIsTakenHoldOfInTheWholePixelsOfItsTarget) {
    givenPane(600, 300);
    givenItems({L"a"});
    IconCell& only = grid.cells[0];
    only.targetX = 10.7f;
    only.targetY = 20.6f;
    only.x = 200;  // where it stands now does not count
    const auto held = [&](float x, float y) {
        grid.mouseX = x;
        grid.mouseY = y;
        return cursorOnIcon(grid, only);
    };
    EXPECT_TRUE(held(34, 20));  // 10.7 + 24 and 20.6, both cut
    EXPECT_FALSE(held(33.5f, 20));
    EXPECT_TRUE(held(82, 68));  // 34.7 + 48 and 68.6, both cut
    EXPECT_FALSE(held(82.5f, 68));
    EXPECT_FALSE(held(82, 68.5f));
    grid.iconSize = 48.8f;
    EXPECT_TRUE(held(83, 69));  // 83.9 and 69.4: the far edges are cut on their own
    EXPECT_FALSE(held(83.5f, 69));
}

}  // namespace
}  // namespace varnelo
