#include "views/grid_virtual_window.h"

#include <numeric>

#include "host/views/grid_test.h"
#include "views/grid_scroll.h"

namespace varnelo {
namespace {

using Rows = std::unordered_set<std::uint64_t>;

class GridVirtualTest : public GridTest {
protected:
    // Four columns in a pane of two rows and a bit.
    void SetUp() override { givenPane(4 * kCellWidth + 30, 250); }
    void givenList() {
        grid.listMode.listEnabled = true;
        givenSource(1000);
    }
    void scrollTo(float y) {
        grid.scrollY = y;
        frame();
    }
};

TEST_F(GridVirtualTest, OnlyTheRowsInSightAndThreeMoreAreHeld) {
    givenSource(1000000);
    EXPECT_EQ(grid.layoutMode, LayoutMode::Flat);
    EXPECT_EQ(grid.tabKind, TabKind::Search);
    EXPECT_EQ(grid.cells.size(), (2u + 3) * 4);
    EXPECT_EQ(grid.windowFirst, 0u);
    EXPECT_EQ(grid.contentHeight, 250000 * kCellHeight + 10);
}

TEST_F(GridVirtualTest, APaneLowerThanARowHoldsThreeRows) {
    givenPane(4 * kCellWidth + 30, 100);
    givenSource(1000);
    EXPECT_EQ(grid.cells.size(), 3u * 4);
}

TEST_F(GridVirtualTest, TheWindowFollowsTheScrollPosition) {
    givenSource(1000);
    scrollTo(10 * kCellHeight + 10);
    EXPECT_EQ(grid.windowFirst, 9u * 4);
    EXPECT_EQ(cellNames().front(), L"row36");
    EXPECT_EQ(grid.cells[0].y, 9 * kCellHeight + 10);
    EXPECT_EQ(grid.cells[5].x, 10 + kCellWidth);
    EXPECT_EQ(grid.asked.size(), 40u);  // both windows asked for their icons
}

TEST_F(GridVirtualTest, TheMarginAboveTheFirstRowDelaysTheWindow) {
    givenSource(1000);
    scrollTo(2 * kCellHeight + 9);
    EXPECT_EQ(grid.windowFirst, 0u);
    scrollTo(2 * kCellHeight + 10);
    EXPECT_EQ(grid.windowFirst, 4u);
}

TEST_F(GridVirtualTest, AWindowThatDoesNotMoveIsNotAskedAgain) {
    int calls = 0;
    grid.setVirtualSource(1000, [&](std::uint64_t first, std::uint64_t count) {
        ++calls;
        return rows(first, count);
    });
    frames(5);
    grid.scrollY = 20;
    frames(5);
    EXPECT_EQ(calls, 1);
}

TEST_F(GridVirtualTest, TheLastWindowIsCutToTheRowsOfTheSource) {
    givenSource(10);
    EXPECT_EQ(grid.cells.size(), 10u);
    EXPECT_EQ(grid.windowCount, 10u);
}

TEST_F(GridVirtualTest, ASourceIsNeverAskedForNoRows) {
    std::vector<std::uint64_t> counts;
    grid.setVirtualSource(10, [&](std::uint64_t first, std::uint64_t count) {
        counts.push_back(count);
        return rows(first, count);
    });
    grid.scrollY = 100000;
    EXPECT_TRUE(refreshVirtualWindow(grid));
    EXPECT_TRUE(grid.cells.empty());
    EXPECT_EQ(counts, (std::vector<std::uint64_t>{10}));
}

TEST_F(GridVirtualTest, ASourceOfOneRowShowsIt) {
    givenSource(1);
    frame();
    EXPECT_EQ(visibleNames(), (Words{L"row0"}));
}

TEST_F(GridVirtualTest, ASourceWithoutAProviderShowsNothing) {
    grid.setVirtualSource(100, nullptr);
    EXPECT_GE(settle(), 0);
    EXPECT_TRUE(grid.cells.empty());
}

TEST_F(GridVirtualTest, AScrollPositionBeyondTheEndHoldsNothing) {
    givenSource(10);
    grid.scrollY = 100000;
    EXPECT_EQ(wantedWindow(grid).count, 0u);
    EXPECT_EQ(wantedWindow(grid).first, 9u);
    settle();
    EXPECT_FALSE(grid.cells.empty());  // the scroll position came back
    grid.listMode.listEnabled = true;
    givenSource(10);
    grid.scrollY = 11 * 24 + 10 + 26;  // one row behind the last
    EXPECT_EQ(wantedWindow(grid).count, 0u);
    EXPECT_EQ(wantedWindow(grid).first, 9u);
}

TEST_F(GridVirtualTest, RowsOfAListStandUnderTheHeader) {
    givenList();
    EXPECT_EQ(grid.layoutMode, LayoutMode::List);
    EXPECT_EQ(grid.cells.size(), 10u + 3);
    EXPECT_EQ(grid.cells[0].y, 10 + 26);
    EXPECT_EQ(grid.cells[0].x, 10);
    EXPECT_EQ(grid.contentHeight, 1000 * 24 + 26 + 10);
    scrollTo(24 * 100 + 36);
    EXPECT_EQ(grid.windowFirst, 99u);
    EXPECT_EQ(grid.cells[0].y, 99 * 24 + 36);
}

TEST_F(GridVirtualTest, TheSelectionSurvivesTheMoveOfTheWindow) {
    givenList();
    frame();
    click(100, 10 + 26 + 24 + 5);
    EXPECT_EQ(grid.selection.rows, (Rows{1}));
    scrollTo(5000);
    EXPECT_EQ(selectedNames(), Words{});
    scrollTo(0);
    EXPECT_EQ(selectedNames(), (Words{L"row1"}));
}

TEST_F(GridVirtualTest, WhatWasSelectedInAListIsNotSelectedInASource) {
    givenItems({L"a", L"b"});
    frame();
    clickOn(L"b");
    ctrlClickOn(L"a");
    givenSource(100);
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridVirtualTest, ClicksChangeTheRowsOutsideOfTheWindowToo) {
    givenList();
    frame();
    click(100, 41);
    scrollTo(5000);
    hover(100, 100);
    const std::uint64_t row = grid.windowFirst + static_cast<std::uint64_t>(grid.hoverIndex);
    input.ctrlDown = true;
    click(100, 100);
    EXPECT_EQ(grid.selection.rows, (Rows{0, row}));
    click(100, 100);
    EXPECT_EQ(grid.selection.rows, (Rows{0}));
    input.ctrlDown = false;
    click(100, 100);
    EXPECT_EQ(grid.selection.rows, (Rows{row}));
}

TEST_F(GridVirtualTest, TheLassoWritesItsSelectionAtItsEnd) {
    givenSource(6);
    frame();
    press(300, 240);
    drag(120, 130);
    release();
    EXPECT_EQ(grid.selection.rows, (Rows{5}));
}

TEST_F(GridVirtualTest, TheLassoGoesOnWhenTheWindowMoves) {
    givenSource(1000);
    frame();
    press(11, 109);  // between the rows of cells
    ASSERT_TRUE(grid.lasso.active);
    scrollTo(3000);
    drag(200, 200);
    release();
    EXPECT_FALSE(grid.selection.rows.empty());
}

TEST_F(GridVirtualTest, WhatARunningLassoHasSelectedIsKeptWhenTheWindowMoves) {
    givenSource(1000);
    frame();
    press(11, 109);  // between the rows of cells
    ASSERT_TRUE(grid.lasso.active);
    drag(20, 130);
    ASSERT_EQ(selectedNames(), (Words{L"row4"}));
    scrollTo(3000);
    EXPECT_EQ(grid.selection.rows, (Rows{4}));
}

TEST_F(GridVirtualTest, APressedRowJustBehindTheNewWindowIsPressedNoMore) {
    givenList();
    frame();
    scrollTo(24 * 3 + 36);
    ASSERT_EQ(grid.windowFirst, 2u);
    const IconCell& last = cell(L"row13");
    press(100, last.y + 5 - grid.scrollY);
    ASSERT_EQ(grid.pressedIndex, 11);
    scrollTo(0);
    ASSERT_EQ(grid.cells.size(), 13u);  // rows 0 to 12
    EXPECT_EQ(grid.pressedIndex, -1);
    release();
}

TEST_F(GridVirtualTest, ThePressedRowIsFollowedWhenTheWindowMoves) {
    givenList();
    frame();
    press(100, 41);
    scrollTo(24 * 3 + 36);
    ASSERT_EQ(grid.windowFirst, 2u);
    EXPECT_EQ(grid.pressedIndex, -1);  // row 0 is gone
    scrollTo(0);
    press(100, 41 + 5 * 24);
    scrollTo(24 * 3 + 36);
    EXPECT_EQ(grid.pressedIndex, 3);
}

TEST_F(GridVirtualTest, ADragEndsWhenTheWindowMoves) {
    givenSource(1000);
    frame();
    const auto [x, y] = iconOf(L"row1");
    press(x, y);
    drag(x + 6, y);
    ASSERT_TRUE(grid.cellDragActive);
    scrollTo(5000);
    EXPECT_FALSE(grid.cellDragActive);
    release();
    EXPECT_FALSE(grid.dirty);
}

TEST_F(GridVirtualTest, NothingHoversAfterTheWindowMoved) {
    givenSource(1000);
    frame();
    hover(50, 30);
    ASSERT_NE(grid.hoverCell(), nullptr);
    scrollTo(5000);
    EXPECT_EQ(grid.hoverCell(), nullptr);
}

TEST_F(GridVirtualTest, ASourceThatRunsDryShrinksTheListAndTheScrollRange) {
    grid.listMode.listEnabled = true;
    grid.setVirtualSource(1000, [this](std::uint64_t first, std::uint64_t count) {
        return first >= 500 ? std::vector<FileEntry>()
                            : rows(first, std::min<std::uint64_t>(count, 500 - first));
    });
    scrollTo(1000 * 24);
    EXPECT_LT(grid.virtualCount, 1000u);
    EXPECT_LE(grid.scrollY, maxScroll(grid));  // the frame that learns it pulls the position back
    const float before = grid.contentHeight;
    settle();
    EXPECT_LE(grid.contentHeight, before);
    EXPECT_LE(grid.scrollY, grid.contentHeight);
    for (int i = 0; i < 200; ++i) frame();
    EXPECT_EQ(grid.virtualCount, 500u);
    EXPECT_EQ(cellNames().back(), L"row499");
}

TEST_F(GridVirtualTest, AProviderThatReturnsNothingAtTheVeryEndLowersTheCount) {
    grid.listMode.listEnabled = true;
    grid.setVirtualSource(100, [this](std::uint64_t first, std::uint64_t count) {
        return first > 80 ? std::vector<FileEntry>() : rows(first, count);
    });
    grid.scrollY = 100 * 24;
    EXPECT_TRUE(frame());
    EXPECT_LT(grid.virtualCount, 100u);
}

TEST_F(GridVirtualTest, AProviderThatReturnsTooMuchIsCutToWhatWasAsked) {
    grid.setVirtualSource(10, [this](std::uint64_t, std::uint64_t) { return rows(0, 500); });
    EXPECT_EQ(grid.cells.size(), 10u);
}

TEST_F(GridVirtualTest, AProviderThatNeverReturnsAnythingEndsInAnEmptyPane) {
    grid.setVirtualSource(1000, [](std::uint64_t, std::uint64_t) { return std::vector<FileEntry>(); });
    EXPECT_GE(settle(), 0);
    EXPECT_EQ(grid.cells.size(), 0u);
    EXPECT_EQ(grid.virtualCount, 0u);
}

TEST_F(GridVirtualTest, AProviderMayWriteToItsArguments) {
    grid.setVirtualSource(100, [this](std::uint64_t& first, std::uint64_t& count) {
        auto result = rows(first, count);
        first = count = 999;
        return result;
    });
    frame();
    EXPECT_EQ(grid.windowFirst, 0u);
    EXPECT_EQ(grid.windowCount, 20u);
}

TEST_F(GridVirtualTest, AnEmptySourceClearsTheSelection) {
    givenSource(100);
    grid.cells[3].selected = true;
    givenSource(100);
    EXPECT_EQ(selectedNames(), (Words{L"row3"}));
    givenSource(0);
    EXPECT_TRUE(grid.selection.rows.empty());
    EXPECT_TRUE(grid.cells.empty());
    EXPECT_FALSE(frame());
}

TEST_F(GridVirtualTest, ASourceReplacesAListAndItsFolder) {
    EntryList list;
    list.entries = {item(L"a", cluster(L"G"))};
    list.folder = idOf(L"Desktop");
    grid.setEntries(list, TabKind::Desktop);
    givenSource(10);
    EXPECT_TRUE(grid.groups.empty());
    EXPECT_TRUE(grid.folderIdList.empty());
}

TEST_F(GridVirtualTest, AListReplacesASource) {
    givenSource(1000);
    grid.cells[3].selected = true;
    givenItems({L"a", L"b"});
    EXPECT_FALSE(grid.virtualMode);
    EXPECT_EQ(selectedNames(), Words{});
    frame();
    EXPECT_EQ(cellNames(), (Words{L"a", L"b"}));
    EXPECT_EQ(grid.contentHeight, kCellHeight + 10);
}

TEST_F(GridVirtualTest, AnEmptySourceLeavesNothingToScrollAtOnce) {
    givenSource(1000);
    scrollTo(3000);
    givenSource(0);
    EXPECT_EQ(grid.contentHeight, 10);
    EXPECT_EQ(grid.windowFirst, 0u);
    EXPECT_EQ(grid.windowCount, 0u);
}

TEST_F(GridVirtualTest, AListLetsGoOfTheSource) {
    const auto held = std::make_shared<int>(0);
    grid.setVirtualSource(
        10, [this, held](std::uint64_t first, std::uint64_t count) { return rows(first, count); });
    ASSERT_GT(held.use_count(), 1);
    givenItems({L"a"});
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(grid.virtualCount, 0u);
}

TEST_F(GridVirtualTest, AfterASplitterMoveTheWindowIsBuiltAnewOnTheNextFrame) {
    givenSource(1000);
    frame();
    click(50, 30);
    grid.cells[2].selected = true;
    const ViewRect rect{0, 0, 2 * kCellWidth + 30, 250};
    ViewRect result;
    grid.setViewRect(rect, false, 0, result);
    EXPECT_EQ(grid.pressedIndex, -1);
    EXPECT_EQ(grid.windowFirst, ~std::uint64_t{0});
    EXPECT_EQ(grid.windowCount, 0u);
    frame();
    EXPECT_EQ(grid.windowFirst, 0u);
    EXPECT_EQ(grid.cells.size(), 10u);
    EXPECT_EQ(grid.cells[2].y, 10 + kCellHeight);
    EXPECT_EQ(selectedNames(), (Words{L"row0", L"row2"}));
}

TEST_F(GridVirtualTest, AfterASplitterMoveTheWindowOfAListIsBuiltAnewToo) {
    givenList();
    frame();
    ViewRect result;
    grid.setViewRect({0, 0, 300, 500}, false, 0, result);
    EXPECT_TRUE(grid.cells.empty());
    EXPECT_EQ(grid.windowFirst, ~std::uint64_t{0});
    frame();
    EXPECT_EQ(grid.cells.size(), 20u + 3);
}

TEST_F(GridVirtualTest, TheRowsOfAScrolledWindowStayInPlaceWhenTheIconsGrow) {
    givenSource(1000);
    scrollTo(3000);
    settings.iconScale = 1.5f;
    settle();
    for (std::size_t i = 0; i < grid.cells.size(); ++i) {
        const std::uint64_t row = grid.windowFirst + i;
        EXPECT_EQ(nameOf(grid.cells[i].entry.pidl), L"row" + std::to_wstring(row));
        EXPECT_EQ(grid.cells[i].targetY,
                  static_cast<float>(row / static_cast<std::uint64_t>(grid.columns)) * grid.cellHeight + 10);
    }
}

TEST_F(GridVirtualTest, AWindowThatHoldsTheSameRowsIsLaidOutWhenTheIconsGrow) {
    givenSource(1000);
    frame();
    const std::uint64_t count = grid.windowCount;
    settings.iconScale = 1.05f;
    frame();
    ASSERT_EQ(grid.windowCount, count);
    EXPECT_FLOAT_EQ(grid.cells[1].targetX, 10 + 1.05f * 48 + 46);
}

TEST_F(GridVirtualTest, SingleChangesAreLeftToTheSource) {
    givenSource(10);
    FileEntry entry = grid.cells[0].entry;
    const Words before = cellNames();
    grid.asked.clear();
    grid.removeEntry(entry);
    grid.addEntry(item(L"new"));
    entry.pidl = idOf(L"renamed");
    grid.updateEntry(entry);
    grid.renameEntry(entry);
    EXPECT_EQ(cellNames(), before);
    EXPECT_FALSE(grid.dirty);
    EXPECT_TRUE(grid.asked.empty());
}

}  // namespace
}  // namespace varnelo
