#include "views/grid_selection.h"

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridSelectionTest : public GridTest {
protected:
    // Four columns: a b c d / e f g h
    void SetUp() override {
        givenPane(4 * kCellWidth + 30, 400);
        givenItems({L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"});
        frame();
    }
    static constexpr float kEmptyX = 10, kEmptyY = 390;  // below the cells
};

TEST_F(GridSelectionTest, AClickSelectsOneCell) {
    clickOn(L"b");
    EXPECT_EQ(selectedNames(), (Words{L"b"}));
    clickOn(L"f");
    EXPECT_EQ(selectedNames(), (Words{L"f"}));
}

TEST_F(GridSelectionTest, CtrlClickTogglesACell) {
    clickOn(L"b");
    ctrlClickOn(L"f");
    EXPECT_EQ(selectedNames(), (Words{L"b", L"f"}));
    ctrlClickOn(L"b");
    EXPECT_EQ(selectedNames(), (Words{L"f"}));
}

TEST_F(GridSelectionTest, APressOnASelectedCellKeepsTheOthersUntilTheRelease) {
    clickOn(L"b");
    ctrlClickOn(L"f");
    const auto [x, y] = iconOf(L"f");
    press(x, y);
    EXPECT_EQ(selectedNames(), (Words{L"b", L"f"}));
    release();
    EXPECT_EQ(selectedNames(), (Words{L"f"}));
}

TEST_F(GridSelectionTest, APressOnAnotherCellSelectsItAtOnce) {
    clickOn(L"b");
    const auto [x, y] = iconOf(L"f");
    press(x, y);
    EXPECT_EQ(selectedNames(), (Words{L"f"}));
}

TEST_F(GridSelectionTest, APressOnEmptySpaceDeselectsAllUnlessCtrlIsDown) {
    clickOn(L"b");
    input.ctrlDown = true;
    click(kEmptyX, kEmptyY);
    EXPECT_EQ(selectedNames(), (Words{L"b"}));
    input.ctrlDown = false;
    click(kEmptyX, kEmptyY);
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridSelectionTest, AReleaseAfterAPressOutsideDeselectsAll) {
    clickOn(L"b");
    click(10, 1000);
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridSelectionTest, APaneThatIsNotSelectableClearsEverySelectionOnAPress) {
    clickOn(L"b");
    grid.selectable = false;
    const auto [x, y] = iconOf(L"f");
    click(x, y);
    EXPECT_EQ(selectedNames(), Words{});
    press(kEmptyX, kEmptyY);
    EXPECT_FALSE(grid.lasso.active);
}

TEST_F(GridSelectionTest, TheLassoSelectsWhatItTouches) {
    press(kEmptyX, kEmptyY);
    EXPECT_TRUE(grid.lasso.active);
    drag(cell(L"f").x + 1, cell(L"f").y + 50);
    EXPECT_EQ(selectedNames(), (Words{L"e", L"f"}));
    drag(cell(L"f").x + 1, cell(L"b").y + 50);
    EXPECT_EQ(selectedNames(), (Words{L"a", L"b", L"e", L"f"}));
    drag(kEmptyX, kEmptyY);
    EXPECT_EQ(selectedNames(), Words{});
    release();
    EXPECT_FALSE(grid.lasso.active);
}

TEST_F(GridSelectionTest, ALassoWhoseReleaseWentElsewhereKeepsWhatItSelected) {
    press(kEmptyX, kEmptyY);
    drag(cell(L"f").x + 1, cell(L"f").y + 50);
    hover(kEmptyX, kEmptyY);
    EXPECT_FALSE(grid.lasso.active);
    EXPECT_EQ(selectedNames(), (Words{L"e", L"f"}));
}

TEST_F(GridSelectionTest, TheLassoTakesHoldOfNoCellThatItSelects) {
    press(kEmptyX, kEmptyY);
    const auto [x, y] = iconOf(L"f");
    drag(x, y);
    drag(x + 1, y);
    EXPECT_FALSE(grid.cellDragActive);
    EXPECT_FALSE(grid.mouseDragging);
    EXPECT_EQ(selectedNames(), (Words{L"e", L"f"}));
}

TEST_F(GridSelectionTest, TheLassoMustOverlapACellAndNotOnlyTouchItsEdge) {
    press(kEmptyX, kEmptyY);
    drag(cell(L"f").x, cell(L"e").y + 10);
    EXPECT_EQ(selectedNames(), (Words{L"e"}));
    drag(cell(L"f").x + 0.5f, cell(L"e").y + 96);
    EXPECT_EQ(selectedNames(), Words{});  // a cell ends 48 pixels below its icon
    drag(cell(L"f").x + 0.5f, cell(L"e").y + 95.5f);
    EXPECT_EQ(selectedNames(), (Words{L"e", L"f"}));
}

TEST_F(GridSelectionTest, NoEdgeOfACellsBoxBelongsToItForTheLasso) {
    std::vector<IconCell> cells(1);
    cells[0].visible = true;
    cells[0].x = cells[0].y = 100;
    const auto hit = [&](float x1, float y1, float x2, float y2) {
        LassoSelector lasso;
        lasso.begin(x1, y1, cells);
        lasso.update(x2, y2, false, 94, 96, cells);
        return static_cast<bool>(cells[0].selected);
    };
    EXPECT_FALSE(hit(0, 120, 100, 130));
    EXPECT_TRUE(hit(0, 120, 100.5f, 130));
    EXPECT_FALSE(hit(194, 120, 300, 130));
    EXPECT_TRUE(hit(193.5f, 120, 300, 130));
    EXPECT_FALSE(hit(120, 0, 130, 100));
    EXPECT_TRUE(hit(120, 0, 130, 100.5f));
    EXPECT_FALSE(hit(120, 196, 130, 300));
    EXPECT_TRUE(hit(120, 195.5f, 130, 300));
}

TEST_F(GridSelectionTest, TheLassoWithCtrlTurnsOverWhatWasSelectedAtItsStart) {
    clickOn(L"e");
    ctrlClickOn(L"h");
    input.ctrlDown = true;
    press(kEmptyX, kEmptyY);
    drag(cell(L"f").x + 1, cell(L"f").y + 50);
    EXPECT_EQ(selectedNames(), (Words{L"f", L"h"}));
    drag(kEmptyX, kEmptyY);
    EXPECT_EQ(selectedNames(), (Words{L"e", L"h"}));
    release();
}

TEST_F(GridSelectionTest, ALassoWithCtrlTurnsTheFirstCellOverToo) {
    clickOn(L"a");
    input.ctrlDown = true;
    press(kEmptyX, kEmptyY);
    drag(cell(L"a").x + 50, cell(L"a").y + 50);
    EXPECT_EQ(selectedNames(), (Words{L"e"}));
}

TEST_F(GridSelectionTest, RowsThatAreNoLongerSelectedAreForgotten) {
    std::vector<IconCell> cells(2);
    GridSelection selection;
    cells[0].selected = cells[1].selected = true;
    selection.store(7, cells);
    cells[1].selected = false;
    selection.store(7, cells);
    cells[1].selected = true;
    selection.restore(7, cells);
    EXPECT_TRUE(cells[0].selected);
    EXPECT_FALSE(cells[1].selected);
}

TEST_F(GridSelectionTest, LettingCtrlGoDuringTheLassoSelectsPlainly) {
    clickOn(L"e");
    input.ctrlDown = true;
    press(kEmptyX, kEmptyY);
    input.ctrlDown = false;
    drag(cell(L"f").x + 1, cell(L"f").y + 50);
    EXPECT_EQ(selectedNames(), (Words{L"e", L"f"}));
}

TEST_F(GridSelectionTest, CtrlDuringALassoThatBeganWithoutItTurnsNothingOver) {
    clickOn(L"e");
    press(kEmptyX, kEmptyY);
    input.ctrlDown = true;
    drag(cell(L"f").x + 1, cell(L"f").y + 50);
    EXPECT_EQ(selectedNames(), (Words{L"e", L"f"}));
    drag(kEmptyX, kEmptyY);
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridSelectionTest, TheLassoLeavesCellsAloneThatAreNotSeen) {
    grid.cells[0].selected = true;
    press(kEmptyX, kEmptyY);
    grid.cells[0].selected = true;
    grid.cells[0].visible = false;
    drag(12, 385);
    EXPECT_EQ(selectedNames(), (Words{L"a"}));
}

TEST_F(GridSelectionTest, ACellThatComesOrGoesDuringTheLassoLeavesTheOthersRight) {
    clickOn(L"h");
    input.ctrlDown = true;
    press(kEmptyX, kEmptyY);
    grid.removeEntry(cell(L"a").entry);
    grid.addEntry(item(L"i"));
    settle();
    drag(kEmptyX + 1, 389);
    EXPECT_EQ(selectedNames(), (Words{L"h"}));
    release();
}

TEST_F(GridSelectionTest, AListThatReplacesAnotherEndsTheLasso) {
    press(kEmptyX, kEmptyY);
    givenItems({L"x"});
    EXPECT_FALSE(grid.lasso.active);
    drag(12, 12);
    release();
}

TEST_F(GridSelectionTest, AHeaderIsPressedTogetherWithTheStartOfALasso) {
    givenGroups({{L"G", 9}});
    settle();
    const auto [x, y] = headerOf(L"G");
    hover(x, y);
    frame();
    press(x, y);
    EXPECT_TRUE(grid.lasso.active);
    EXPECT_FALSE(group(L"G").collapsed);
    release();
}

TEST_F(GridSelectionTest, OnlyThePaneThatTookThePressIsActive) {
    IconGridManager::activeGrid = nullptr;
    press(10, 1000);
    EXPECT_EQ(IconGridManager::activeGrid, nullptr);
    press(10, 10);
    EXPECT_EQ(IconGridManager::activeGrid, &grid);
    {
        WordGrid other({input, clock, shell, settings, language, nullptr}, TabKind::Software);
        ViewRect rect{0, 0, 100, 100};
        other.setViewRect(rect, false, 0);
        other.onMouseDown();
        EXPECT_EQ(IconGridManager::activeGrid, &other);
    }
    EXPECT_EQ(IconGridManager::activeGrid, nullptr);
}

TEST_F(GridSelectionTest, ThePaneThatTookThePressStaysActiveWhenAnotherOneGoes) {
    press(10, 10);
    { const WordGrid other({input, clock, shell, settings, language, nullptr}, TabKind::Software); }
    EXPECT_EQ(IconGridManager::activeGrid, &grid);
}

}  // namespace
}  // namespace varnelo
