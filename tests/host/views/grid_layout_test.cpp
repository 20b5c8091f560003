#include "views/grid_layout.h"

#include <cmath>

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridLayoutTest : public GridTest {};

TEST_F(GridLayoutTest, ANewPaneIsEmptyAtRestAndOfStandardMeasures) {
    EXPECT_EQ(grid.layoutMode, LayoutMode::None);
    EXPECT_EQ(grid.tabKind, TabKind::Desktop);
    EXPECT_EQ(grid.columns, 15);
    EXPECT_EQ(grid.cellWidth, 60);  // until the first layout
    EXPECT_EQ(grid.cellHeight, 60);
    EXPECT_EQ(grid.iconSize, 48);
    EXPECT_EQ(grid.baseIconSize, 48);
    EXPECT_EQ(grid.contentHeight, 0);
    EXPECT_EQ(grid.pressedIndex, -1);
    EXPECT_EQ(grid.hoverIndex, -1);
    EXPECT_EQ(grid.hoverGroup, -1);
    EXPECT_EQ(grid.selection.lastMatch, -1);
    EXPECT_EQ(grid.scrollBarHoldSeconds, 1);
    EXPECT_EQ(grid.lastScrollActivity, clock.steady);
    EXPECT_EQ(grid.lastWheelActivity, clock.steady);
    EXPECT_TRUE(grid.selectable);
    EXPECT_FALSE(grid.dirty);
    EXPECT_FALSE(frame());
    EXPECT_EQ(grid.contentHeight, 0);  // nothing is laid out before there is a list
}

TEST_F(GridLayoutTest, AStandardCellIs94By110Pixels) {
    givenPane(400, 300);
    EXPECT_EQ(grid.cellWidth, 94);
    EXPECT_EQ(grid.cellHeight, 110);
}

TEST_F(GridLayoutTest, AnEmptyPaneHasOneColumnNoScrollBarAndTheHeightOfItsMargin) {
    givenItems({});
    EXPECT_EQ(grid.layoutMode, LayoutMode::Flat);
    EXPECT_EQ(grid.columns, 1);
    EXPECT_EQ(grid.contentHeight, grid.marginY);
    givenPane(100, 50);
    cursorTo(95, 20);
    grid.onMouseMove(false);
    EXPECT_FALSE(grid.scrollBarHovered);
}

TEST_F(GridLayoutTest, APaneNarrowerThanACellHasOneColumn) {
    givenPane(30, 300);
    givenItems({L"a", L"b"});
    EXPECT_EQ(grid.columns, 1);
    EXPECT_EQ(cell(L"b").targetY, 10 + kCellHeight);
}

TEST_F(GridLayoutTest, TheMarginIsNoPartOfAColumn) {
    givenPane(2 * kCellWidth + 9, 300);
    givenItems({L"a", L"b"});
    EXPECT_EQ(grid.columns, 1);
    givenPane(2 * kCellWidth + 10, 300);
    EXPECT_EQ(grid.columns, 2);
}

TEST_F(GridLayoutTest, SnappingWidensANarrowPaneToOneCellAndItsMargin) {
    ViewRect rect{0, 0, 30, 300};
    grid.setViewRect(rect, true, 0);
    EXPECT_EQ(rect, (ViewRect{0, 0, kCellWidth + 10, 300}));
    EXPECT_EQ(grid.viewRect, rect);
}

TEST_F(GridLayoutTest, SnappingHugsWholeColumns) {
    ViewRect rect{50, 0, 400, 300};
    grid.setViewRect(rect, true, 0);
    EXPECT_EQ(rect, (ViewRect{50, 0, 4 * kCellWidth + 10, 300}));
}

TEST_F(GridLayoutTest, APaneAnchoredAtTheRightKeepsItsRightEdgeWhenItSnaps) {
    ViewRect rect{50, 0, 500, 300};
    grid.setViewRect(rect, true, 1);
    EXPECT_EQ(rect.w, 5 * kCellWidth + 10);
    EXPECT_EQ(rect.x + rect.w, 550);
}

TEST_F(GridLayoutTest, AnyOtherAnchorIsTheLeftEdge) {
    for (const int anchor : {0, 2, -1}) {
        ViewRect rect{50, 0, 500, 300};
        grid.setViewRect(rect, true, anchor);
        EXPECT_EQ(rect, (ViewRect{50, 0, 5 * kCellWidth + 10, 300}));
    }
}

TEST_F(GridLayoutTest, WithoutSnappingTheRectangleStaysAsItIs) {
    ViewRect rect{50, 5, 471, 300};
    grid.setViewRect(rect, false, 1);
    EXPECT_EQ(rect, (ViewRect{50, 5, 471, 300}));
}

TEST_F(GridLayoutTest, AfterASplitterMoveTheOutcomeIsWrittenAside) {
    givenItems({L"a"});
    const ViewRect rect{100, 0, 480, 300};
    ViewRect result;
    grid.setViewRect(rect, true, 1, result);
    EXPECT_EQ(result, (ViewRect{100, 0, 480, 300}));
    EXPECT_EQ(grid.viewRect, result);
    EXPECT_EQ(cell(L"a").targetX, 110);
}

TEST_F(GridLayoutTest, FlatCellsFillRowsFromTheLeft) {
    givenPane(4 * kCellWidth + 10, 300, 100, 20);
    givenItems({L"a", L"b", L"c", L"d", L"e"});
    EXPECT_EQ(grid.columns, 4);
    EXPECT_EQ(cell(L"a").targetX, 100 + 10);
    EXPECT_EQ(cell(L"a").targetY, 20 + 10);
    EXPECT_EQ(cell(L"d").targetX, 100 + 10 + 3 * kCellWidth);
    EXPECT_EQ(cell(L"e").targetX, 100 + 10);
    EXPECT_EQ(cell(L"e").targetY, 20 + 10 + kCellHeight);
    EXPECT_EQ(grid.contentHeight, 2 * kCellHeight + 10);
}

TEST_F(GridLayoutTest, AFreshListStandsInItsPlaceAtOnce) {
    givenPane(400, 900);
    givenGroups({{L"Music", 6}, {L"Letters", 2}});
    for (const IconCell& c : grid.cells) {
        EXPECT_EQ(c.x, c.targetX);
        EXPECT_EQ(c.y, c.targetY);
    }
    const float before = cell(L"Letters0").y;
    frame();
    EXPECT_EQ(cell(L"Letters0").y, before);
}

TEST_F(GridLayoutTest, ACollapsedGroupIsOneRowHighAndTheNextHeaderOverlapsItsLastTenPixels) {
    givenPane(400, 900, 0, 40);
    givenGroups({{L"Music", 6}, {L"Letters", 2}});
    const IconGroup& music = group(L"Music");
    EXPECT_EQ(music.y, 50);
    EXPECT_EQ(music.height, kCellHeight);
    EXPECT_EQ(cell(L"Music0").targetY, 50 + 24 + 10);
    EXPECT_EQ(group(L"Letters").y, 50 + 24 + kCellHeight);
    const float cellsEnd = cell(L"Music0").targetY + kCellHeight;
    EXPECT_EQ(cellsEnd - group(L"Letters").y, 10);
    EXPECT_EQ(grid.contentHeight, 10 + 2 * (24 + kCellHeight));
}

TEST_F(GridLayoutTest, CellsBeyondTheFirstRowOfACollapsedGroupKeepTheirPlace) {
    givenPane(400, 900);
    givenGroups({{L"Music", 6}});
    ASSERT_EQ(grid.columns, 4);
    EXPECT_EQ(cell(L"Music5").targetX, 10 + kCellWidth);
    EXPECT_EQ(cell(L"Music5").targetY, 10 + 24 + 10 + kCellHeight);
    frame();
    EXPECT_EQ(visibleNames(), (Words{L"Music0", L"Music1", L"Music2", L"Music3"}));
}

TEST_F(GridLayoutTest, GroupsBelowSlideWithTheAnimatedHeight) {
    givenPane(400, 900);
    givenGroups({{L"Music", 6}, {L"Letters", 2}});
    clickHeader(L"Music");
    frame();
    const IconGroup& music = group(L"Music");
    EXPECT_EQ(music.targetHeight, 2 * kCellHeight);
    EXPECT_GT(music.height, kCellHeight);
    EXPECT_LT(music.height, 2 * kCellHeight);
    EXPECT_EQ(group(L"Letters").y, music.y + 24 + music.height);
}

TEST_F(GridLayoutTest, TheHeightOfAGroupClosesAShareOfItsGapThatDependsOnTimeAlone) {
    givenPane(400, 900);
    givenGroups({{L"Music", 6}});
    clickHeader(L"Music");
    frame(0.1f);
    EXPECT_NEAR(group(L"Music").height, kCellHeight + (1 - std::exp(-0.8f)) * kCellHeight, 0.01f);
    for (int i = 0; i < 10; ++i) frame(0.01f);
    EXPECT_NEAR(group(L"Music").height, kCellHeight + (1 - std::exp(-1.6f)) * kCellHeight, 0.01f);
}

TEST_F(GridLayoutTest, AnIconScaleChangedByAHundredthAtMostIsIgnored) {
    givenPane(400, 900);
    givenItems({L"a", L"b"});
    settings.iconScale = 1.005f;
    frame();
    EXPECT_EQ(grid.iconSize, 48);
    EXPECT_EQ(cell(L"b").targetX, 10 + kCellWidth);
}

TEST_F(GridLayoutTest, AnIconScaleChangedByMoreLaysTheGridOutOnTheNextFrame) {
    givenPane(400, 900);
    givenItems({L"a", L"b"});
    settings.iconScale = 1.02f;
    EXPECT_TRUE(frame());
    EXPECT_FLOAT_EQ(grid.iconSize, 1.02f * 48);
    EXPECT_FLOAT_EQ(cell(L"b").targetX, 10 + 1.02f * 48 + 46);
}

TEST_F(GridLayoutTest, AnIconScaleChangedByALittleOverAHundredthCounts) {
    givenPane(400, 900);
    givenItems({L"a", L"b"});
    settings.iconScale = 1.0105f;
    frame();
    EXPECT_FLOAT_EQ(grid.iconSize, 1.0105f * 48);
}

TEST_F(GridLayoutTest, AnIconScaleChangedByExactlyAHundredthIsIgnored) {
    givenPane(400, 900);
    givenItems({L"a", L"b"});
    grid.baseIconSize = 100;
    frame();
    ASSERT_EQ(grid.iconSize, 100);
    settings.iconScale = 1.01f;
    frame();
    EXPECT_EQ(grid.iconSize, 100);
}

TEST_F(GridLayoutTest, AnIconScaleChangeLaysOutGroupsToo) {
    givenPane(400, 900);
    givenGroups({{L"Music", 2}});
    settings.iconScale = 2;
    frame();
    EXPECT_EQ(grid.cellHeight, 96 + 62);
    EXPECT_EQ(cell(L"Music1").targetX, 10 + 96 + 46);
    EXPECT_EQ(group(L"Music").targetHeight, 96 + 62);
}

TEST_F(GridLayoutTest, AScaleThatIsNoSizeLeavesAUsableGrid) {
    givenPane(400, 900);
    givenItems({L"a", L"b"});
    for (const float scale : {std::nanf(""), -3.0f, 0.0f, INFINITY, 3e38f}) {
        settings.iconScale = scale;
        frame();
        EXPECT_GT(grid.cellWidth, 0) << scale;
        EXPECT_TRUE(std::isfinite(cell(L"b").targetX)) << scale;
        EXPECT_GE(grid.columns, 1) << scale;
    }
}

TEST_F(GridLayoutTest, EveryCellOfAFlatPaneStandsWhereFlatCellSays) {
    givenPane(700, 900, 30, 60);
    givenItems(Words(50, L"x"));
    for (std::size_t i = 0; i < grid.cells.size(); ++i) {
        const CellPosition place = flatCell(i, grid.columns, grid);
        EXPECT_EQ(grid.cells[i].targetX, place.x);
        EXPECT_EQ(grid.cells[i].targetY, place.y);
    }
}

}  // namespace
}  // namespace varnelo
