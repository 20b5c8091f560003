#include "views/grid_drag.h"

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridDragTest : public GridTest {
protected:
    void givenFlat() {
        givenPane(4 * kCellWidth + 30, 400);
        givenItems({L"a", L"b", L"c", L"d", L"e", L"f"});
        frame();
    }
    void givenTwoGroups() {
        givenPane(4 * kCellWidth + 30, 900);
        givenGroups({{L"G", 4}, {L"H", 3}});
        frame();
    }
    // Presses on the icon and moves beyond the threshold.
    void takeHoldOf(const std::wstring& name) {
        const auto [x, y] = iconOf(name);
        press(x, y);
        drag(x + 6, y);
    }
    void dragOver(const std::wstring& name) {
        const IconCell& c = cell(name);
        drag(c.targetX + kCellWidth / 2, c.targetY + 20 - grid.scrollY);
    }
};

TEST_F(GridDragTest, APressThatMovesFivePixelsIsStillAClick) {
    givenFlat();
    const auto [x, y] = iconOf(L"a");
    press(x, y);
    drag(x + 3, y + 4);
    EXPECT_FALSE(grid.mouseDragging);
    EXPECT_FALSE(grid.cellDragActive);
    drag(x + 4, y + 4);
    EXPECT_TRUE(grid.mouseDragging);
    EXPECT_TRUE(grid.cellDragActive);
}

TEST_F(GridDragTest, ADraggedCellFollowsTheCursorWhereItWasGrabbed) {
    givenFlat();
    const IconCell before = cell(L"a");
    takeHoldOf(L"a");
    EXPECT_EQ(cell(L"a").x, before.x);  // the way to the threshold is not made up for
    drag(input.cursorX + 30, input.cursorY + 7);
    EXPECT_FLOAT_EQ(cell(L"a").x, before.x + 30);
    EXPECT_FLOAT_EQ(cell(L"a").y, before.y + 7);
}

TEST_F(GridDragTest, TheOtherCellsDoNotFollowTheCursor) {
    givenFlat();
    const IconCell before = cell(L"b");
    takeHoldOf(L"a");
    drag(input.cursorX + 5, input.cursorY + 7);
    EXPECT_EQ(cell(L"b").x, before.x);
    EXPECT_EQ(cell(L"b").y, before.y);
}

TEST_F(GridDragTest, ADragGoesOnWhereItBegan) {
    givenFlat();
    const IconCell before = cell(L"a");
    const auto [x, y] = iconOf(L"a");
    press(x, y);
    drag(x + 6, y);
    drag(x + 40, y);
    drag(x + 1, y);  // nearer to the press than the threshold
    EXPECT_FLOAT_EQ(cell(L"a").x, before.x - 5);
}

TEST_F(GridDragTest, AfterADropTheNextPressIsAClickUntilItMovesFar) {
    givenFlat();
    takeHoldOf(L"a");
    release();
    settle();
    const auto [x, y] = iconOf(L"b");
    press(x, y);
    drag(x + 3, y);
    EXPECT_FALSE(grid.cellDragActive);
    drag(x + 6, y);
    EXPECT_TRUE(cell(L"b").dragged);
}

TEST_F(GridDragTest, WhatWasDraggedStaysSelectedAfterTheDrop) {
    givenFlat();
    clickOn(L"a");
    ctrlClickOn(L"b");
    takeHoldOf(L"b");
    release();
    EXPECT_EQ(selectedNames().size(), 2u);
}

TEST_F(GridDragTest, ADragFromALabelEndsWithTheSelectionThatItBeganWith) {
    givenFlat();
    clickOn(L"a");
    ctrlClickOn(L"b");
    const IconCell& b = cell(L"b");
    press(b.x + 47, b.y + 80);
    drag(b.x + 47, b.y + 90);
    release();
    EXPECT_EQ(selectedNames(), (Words{L"a", L"b"}));
}

TEST_F(GridDragTest, ADragThatBeganOnALabelTakesHoldOfNoIconOnItsWay) {
    givenFlat();
    const IconCell& a = cell(L"a");
    press(a.x + 47, a.y + 80);
    drag(a.x + 47, a.y + 90);
    drag(a.x + 47, a.y + 20);  // on its icon
    EXPECT_TRUE(grid.mouseDragging);
    EXPECT_FALSE(grid.cellDragActive);
}

TEST_F(GridDragTest, APressOnALabelMovesNothingAndEndsAsItBegan) {
    givenFlat();
    const IconCell& a = cell(L"a");
    press(a.x + 47, a.y + 80);
    drag(a.x + 47, a.y + 90);
    EXPECT_TRUE(grid.mouseDragging);
    EXPECT_FALSE(grid.cellDragActive);
    drag(300, 200);
    release();
    EXPECT_EQ(cellNames(), (Words{L"a", L"b", L"c", L"d", L"e", L"f"}));
    EXPECT_EQ(selectedNames(), (Words{L"a"}));
    EXPECT_FALSE(grid.dirty);
}

TEST_F(GridDragTest, InAFlatPaneTheCellMovesToTheIndexUnderTheCursor) {
    givenFlat();
    takeHoldOf(L"a");
    dragOver(L"c");
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"a", L"d", L"e", L"f"}));
    EXPECT_EQ(cell(L"b").targetX, 10);
    dragOver(L"e");
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"d", L"e", L"a", L"f"}));
    release();
    EXPECT_FALSE(cell(L"a").dragged);
    EXPECT_FALSE(grid.cellDragActive);
    EXPECT_TRUE(grid.dirty);
    settle();
    EXPECT_NEAR(cell(L"a").x, 10, 0.5);
    EXPECT_NEAR(cell(L"a").y, 10 + kCellHeight, 0.5);
}

TEST_F(GridDragTest, InAFlatPaneTheCursorCountsFromTheCornerOfTheClientArea) {
    givenPane(4 * kCellWidth + 30, 400, kCellWidth, 0);
    givenItems({L"a", L"b", L"c", L"d"});
    frame();
    takeHoldOf(L"a");  // it stands at index 0, but one cell to the right
    EXPECT_EQ(cellNames(), (Words{L"b", L"a", L"c", L"d"}));
}

TEST_F(GridDragTest, InAFlatPaneTheRowCountsFromTheTopOfTheClientArea) {
    givenPane(4 * kCellWidth + 30, 400, 0, kCellHeight);
    givenItems({L"a", L"b", L"c", L"d", L"e", L"f"});
    frame();
    takeHoldOf(L"a");  // it stands at index 0, but one row down
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"d", L"e", L"a", L"f"}));
}

TEST_F(GridDragTest, InAFlatPaneTheMarginBelongsToNoColumnAndNoRow) {
    givenFlat();
    takeHoldOf(L"a");
    drag(10 + kCellWidth - 1, 10 + kCellHeight - 1);
    EXPECT_EQ(indexOf(L"a"), 0);
    drag(10 + kCellWidth + 1, 10 + kCellHeight - 1);
    EXPECT_EQ(indexOf(L"a"), 1);
    drag(10 + kCellWidth + 1, 10 + kCellHeight + 1);
    EXPECT_EQ(indexOf(L"a"), 5);
}

TEST_F(GridDragTest, InAGroupTheColumnsCountFromTheMarginOfThePane) {
    givenPane(4 * kCellWidth + 30, 900, 50, 0);
    givenGroups({{L"G", 4}});
    frame();
    takeHoldOf(L"G0");
    drag(50 + 10 + kCellWidth - 1, input.cursorY);
    EXPECT_EQ(orderOf(L"G")[0], L"G0");
    drag(50 + 10 + kCellWidth + 1, input.cursorY);
    EXPECT_EQ(orderOf(L"G")[1], L"G0");
}

TEST_F(GridDragTest, AnIndexOutOfRangeEndsAFlatMoveWithoutAnyChange) {
    givenFlat();
    takeHoldOf(L"a");
    dragOver(L"c");
    drag(200, 390);
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"a", L"d", L"e", L"f"}));
    drag(cell(L"c").targetX + kCellWidth + 47, cell(L"e").targetY + 20);  // one behind the last
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"a", L"d", L"e", L"f"}));
    EXPECT_TRUE(grid.cellDragActive);
    drag(-5000, -5000);
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"a", L"d", L"e", L"f"}));
}

TEST_F(GridDragTest, AllSelectedCellsAreDraggedByTheIconOfOne) {
    givenFlat();
    clickOn(L"a");
    ctrlClickOn(L"b");
    takeHoldOf(L"b");
    EXPECT_TRUE(cell(L"a").dragged);
    EXPECT_TRUE(cell(L"b").dragged);
    EXPECT_FALSE(cell(L"c").dragged);
    dragOver(L"e");
    release();
    EXPECT_EQ(cellNames(), (Words{L"c", L"d", L"e", L"a", L"b", L"f"}));
}

// One after the other to the index under the cursor, so the last of them ends there.
TEST_F(GridDragTest, InAFlatPaneTheDraggedCellsMoveInTheirOrderInThePane) {
    givenFlat();
    clickOn(L"a");
    ctrlClickOn(L"e");
    takeHoldOf(L"a");
    EXPECT_EQ(cellNames(), (Words{L"e", L"a", L"b", L"c", L"d", L"f"}));
    EXPECT_EQ(grid.pressedIndex, indexOf(L"a"));
    EXPECT_EQ(grid.hoverIndex, indexOf(L"a"));
    drag(cell(L"a").targetX + kCellWidth / 2, cell(L"a").targetY + 20);
    EXPECT_EQ(cellNames(), (Words{L"e", L"a", L"b", L"c", L"d", L"f"}));
    dragOver(L"d");
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"d", L"e", L"a", L"f"}));
}

TEST_F(GridDragTest, WhereNothingCanBeSelectedThePressedCellIsDragged) {
    givenFlat();
    grid.selectable = false;
    takeHoldOf(L"a");
    EXPECT_TRUE(cell(L"a").dragged);
    EXPECT_TRUE(grid.cellDragActive);
}

TEST_F(GridDragTest, TheHoverAndThePressFollowACellThatMoves) {
    givenFlat();
    hoverOver(L"a");
    takeHoldOf(L"a");
    dragOver(L"d");
    EXPECT_EQ(grid.pressedIndex, indexOf(L"a"));
    EXPECT_EQ(grid.hoverIndex, indexOf(L"a"));
}

TEST_F(GridDragTest, InAGroupTheOthersMakeRoom) {
    givenTwoGroups();
    takeHoldOf(L"G0");
    dragOver(L"G2");
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G0", L"G3"}));
    EXPECT_EQ(cell(L"G1").targetX, 10);
    EXPECT_EQ(orderOf(L"H"), (Words{L"H0", L"H1", L"H2"}));
}

TEST_F(GridDragTest, ACellNeverLeavesItsGroup) {
    givenTwoGroups();
    takeHoldOf(L"G0");
    dragOver(L"H1");
    release();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G3", L"G0"}));
    EXPECT_EQ(orderOf(L"H"), (Words{L"H0", L"H1", L"H2"}));
}

TEST_F(GridDragTest, FarLeftAndAboveIsTheFirstSlotAndFarBelowTheLast) {
    givenTwoGroups();
    takeHoldOf(L"G2");
    drag(-500, -500);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G2", L"G0", L"G1", L"G3"}));
    drag(5000, 5000);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G3", L"G2"}));
}

TEST_F(GridDragTest, FarToTheRightIsTheLastSlotOfTheRow) {
    givenPane(4 * kCellWidth + 30, 900);
    givenGroups({{L"G", 8}});
    clickHeader(L"G");
    settle();
    takeHoldOf(L"G0");
    drag(5000, cell(L"G0").targetY + 20);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G3", L"G0", L"G4", L"G5", L"G6", L"G7"}));
}

TEST_F(GridDragTest, TheRowsOfAGroupCountFromBelowTheGapUnderItsHeader) {
    givenPane(4 * kCellWidth + 30, 900);
    givenGroups({{L"G", 8}});
    clickHeader(L"G");
    settle();
    takeHoldOf(L"G0");
    const float secondRow = group(L"G").y + grid.groupHeaderHeight + grid.groupHeaderGap + kCellHeight;
    drag(input.cursorX, secondRow - 1);
    EXPECT_EQ(orderOf(L"G")[0], L"G0");
    drag(input.cursorX, secondRow + 1);
    EXPECT_EQ(orderOf(L"G")[4], L"G0");
}

TEST_F(GridDragTest, SeveralDraggedCellsOfAGroupKeepTheirOrder) {
    givenTwoGroups();
    clickOn(L"G0");
    ctrlClickOn(L"G2");
    takeHoldOf(L"G2");  // the cursor is at slot 2, behind both others
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G3", L"G0", L"G2"}));
    dragOver(L"G3");
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G0", L"G2", L"G3"}));
}

TEST_F(GridDragTest, ADropPinsTheWholeGroup) {
    givenTwoGroups();
    takeHoldOf(L"G0");
    dragOver(L"G1");
    release();
    EXPECT_TRUE(grid.dirty);
    const Words order = orderOf(L"G");
    EXPECT_EQ(order, (Words{L"G1", L"G0", L"G2", L"G3"}));
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(cell(order[i]).entry.metaData->slot, static_cast<int>(i));
        EXPECT_EQ(cell(order[i]).entry.metaData->slotTime, clock.unixTime);
    }
    EXPECT_EQ(cell(L"H0").entry.metaData->slotTime, 0);
    EXPECT_EQ(grid.pressedIndex, -1);
}

TEST_F(GridDragTest, WherePlacesAreNotRememberedADroppedCellGoesBackAtOnce) {
    settings.sortTimeoutDays = 0;
    givenTwoGroups();
    takeHoldOf(L"G0");
    dragOver(L"G2");
    ASSERT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G0", L"G3"}));
    release();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G2", L"G3"}));
    EXPECT_EQ(cell(L"G0").targetX, 10);
}

TEST_F(GridDragTest, WhatWasDroppedIsFoundAtTheSamePlaceWhenTheListComesAgain) {
    givenTwoGroups();
    takeHoldOf(L"G0");
    dragOver(L"G3");
    release();
    const Words order = orderOf(L"G");
    EntryList list;
    for (const IconCell& c : grid.cells) list.entries.push_back(c.entry);
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(orderOf(L"G"), order);
}

TEST_F(GridDragTest, ACellWhoseReleaseWentElsewhereIsDroppedAtTheNextMove) {
    givenTwoGroups();
    takeHoldOf(L"G0");
    dragOver(L"G3");
    const Words order = orderOf(L"G");
    hoverOver(L"G1");
    EXPECT_FALSE(grid.cellDragActive);
    EXPECT_EQ(orderOf(L"G"), order);
    EXPECT_EQ(grid.pressedIndex, kNoCell);
}

TEST_F(GridDragTest, HoverIsFrozenWhileCellsAreDragged) {
    givenTwoGroups();
    hoverOver(L"G0");
    takeHoldOf(L"G0");
    const int hovered = grid.hoverIndex;
    dragOver(L"G2");
    EXPECT_EQ(grid.hoverIndex, hovered);
}

TEST_F(GridDragTest, AnOverviewPaneMovesNothing) {
    givenFlat();
    grid.tabKind = TabKind::Overview;
    takeHoldOf(L"a");
    dragOver(L"c");
    EXPECT_TRUE(grid.mouseDragging);
    EXPECT_FALSE(grid.cellDragActive);
    release();
    EXPECT_EQ(cellNames(), (Words{L"a", L"b", L"c", L"d", L"e", L"f"}));
    EXPECT_EQ(selectedNames(), (Words{L"a"}));
}

TEST_F(GridDragTest, AfterADragThatMovedNothingOnlyAPressOnEmptySpaceDeselects) {
    givenFlat();
    grid.tabKind = TabKind::Overview;
    takeHoldOf(L"a");
    grid.pressedIndex = -1;
    release();
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridDragTest, ADraggedCellThatIsRemovedEndsTheDrag) {
    givenTwoGroups();
    takeHoldOf(L"G0");
    grid.removeEntry(cell(L"G0").entry);
    EXPECT_FALSE(grid.cellDragActive);
    drag(200, 200);
    release();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G3"}));
}

TEST_F(GridDragTest, AListThatReplacesAnotherEndsTheDrag) {
    givenTwoGroups();
    takeHoldOf(L"G0");
    givenItems({L"x", L"y"});
    EXPECT_FALSE(grid.cellDragActive);
    frame();
    hoverOver(L"y");
    EXPECT_EQ(grid.hoverIndex, indexOf(L"y"));  // hover is no longer frozen
    release();
    EXPECT_FALSE(grid.dirty);
}

TEST_F(GridDragTest, AScrolledPaneDropsWhereTheCursorIs) {
    givenPane(4 * kCellWidth + 30, 150);
    givenGroups({{L"G", 12}});
    clickHeader(L"G");
    settle();
    grid.scrollY = kCellHeight;
    frame();
    takeHoldOf(L"G4");
    dragOver(L"G6");
    EXPECT_EQ(orderOf(L"G")[6], L"G4");
}

}  // namespace
}  // namespace varnelo
