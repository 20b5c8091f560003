#include "views/grid_list_mode.h"

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

using SortColumn = GridListMode::SortColumn;
using SortState = GridListMode::SortState;

class GridListTest : public GridTest {
protected:
    std::deque<SearchFileInfo> found;

    void SetUp() override { givenPane(544, 400); }  // columns share 500 pixels

    FileEntry result(const std::wstring& name, std::uint64_t size, std::uint64_t time) {
        FileEntry entry = item(name);
        SearchFileInfo& info = found.emplace_back();
        info.fileSize = size;
        info.lastWriteTime = time;
        entry.metaData = &info;
        return entry;
    }
    void givenResults(std::vector<FileEntry> entries) {
        grid.setEntries({std::move(entries), {}}, TabKind::Search);
        grid.layoutMode = LayoutMode::List;
        settle();
    }
    void clickColumn(SortColumn column) {
        for (const auto& each : grid.listMode.columns(grid.viewRect, grid.marginX, grid.scrollBarWidth)) {
            if (each.column == column) click(each.x + 5, grid.viewRect.y + 5);
        }
    }
};

TEST_F(GridListTest, RowsStandBelowEachOtherUnderTheHeader) {
    givenPane(544, 400, 20, 30);
    givenResults({item(L"a"), item(L"b")});
    EXPECT_EQ(cell(L"a").targetX, 30);
    EXPECT_EQ(cell(L"a").targetY, 30 + 10 + 26);
    EXPECT_EQ(cell(L"b").targetY, 30 + 10 + 26 + 24);
    EXPECT_EQ(grid.contentHeight, 2 * 24 + 26 + 10);
}

TEST_F(GridListTest, TheColumnsShareTheWidthBesideTheIconBandAndTheScrollBar) {
    const auto columns = grid.listMode.columns({100, 0, 544, 400}, 10, 10);
    EXPECT_FLOAT_EQ(columns[0].x, 134);
    EXPECT_FLOAT_EQ(columns[0].width, 150);
    EXPECT_FLOAT_EQ(columns[1].x, 284);
    EXPECT_FLOAT_EQ(columns[1].width, 175);
    EXPECT_FLOAT_EQ(columns[2].x, 459);
    EXPECT_FLOAT_EQ(columns[2].width, 75);
    EXPECT_FLOAT_EQ(columns[3].x, 534);
    EXPECT_FLOAT_EQ(columns[3].width, 100);
}

TEST_F(GridListTest, TheLeftEdgeBelongsToAColumnAndTheRightOneToTheNext) {
    const ViewRect view{100, 0, 544, 400};
    EXPECT_EQ(grid.listMode.columnAt(133.5f, view, 10, 10), std::nullopt);
    EXPECT_EQ(grid.listMode.columnAt(134, view, 10, 10), SortColumn::Name);
    EXPECT_EQ(grid.listMode.columnAt(284, view, 10, 10), SortColumn::Path);
    EXPECT_EQ(grid.listMode.columnAt(633.5f, view, 10, 10), SortColumn::Date);
    EXPECT_EQ(grid.listMode.columnAt(634, view, 10, 10), std::nullopt);
}

TEST_F(GridListTest, APressInTheIconBandOrBesideTheColumnsIsIgnored) {
    givenResults({item(L"b"), item(L"a")});
    click(20, 5);
    click(540, 5);
    EXPECT_EQ(grid.listMode.sortState, SortState::None);
    EXPECT_EQ(cellNames(), (Words{L"b", L"a"}));
}

TEST_F(GridListTest, AClickSortsAscendingASecondDescending) {
    givenResults({item(L"b"), item(L"C"), item(L"a")});
    clickColumn(SortColumn::Name);
    EXPECT_EQ(cellNames(), (Words{L"a", L"b", L"C"}));
    EXPECT_EQ(grid.listMode.sortState, SortState::Ascending);
    clickColumn(SortColumn::Name);
    EXPECT_EQ(cellNames(), (Words{L"C", L"b", L"a"}));
    EXPECT_EQ(grid.listMode.sortState, SortState::Descending);
}

TEST_F(GridListTest, AThirdClickLeavesTheRowsDescendingWhileTheArrowGoes) {
    givenResults({item(L"b"), item(L"c"), item(L"a")});
    for (int i = 0; i < 3; ++i) clickColumn(SortColumn::Name);
    EXPECT_EQ(cellNames(), (Words{L"c", L"b", L"a"}));
    EXPECT_EQ(grid.listMode.sortColumn, SortColumn::None);
    EXPECT_EQ(grid.listMode.sortState, SortState::None);
    clickColumn(SortColumn::Name);
    EXPECT_EQ(cellNames(), (Words{L"a", L"b", L"c"}));
}

TEST_F(GridListTest, NoColumnIsNoClick) {
    givenResults({item(L"b"), item(L"a")});
    clickColumn(SortColumn::Name);
    grid.listMode.clickColumn(SortColumn::None, grid.cells, shell);
    EXPECT_EQ(grid.listMode.sortColumn, SortColumn::Name);
    EXPECT_EQ(grid.listMode.sortState, SortState::Ascending);
    EXPECT_EQ(cellNames(), (Words{L"a", L"b"}));
}

TEST_F(GridListTest, AnotherColumnStartsAscendingAgain) {
    givenResults({result(L"a", 3, 1), result(L"b", 1, 2), result(L"c", 2, 3)});
    clickColumn(SortColumn::Name);
    clickColumn(SortColumn::Name);
    clickColumn(SortColumn::Size);
    EXPECT_EQ(grid.listMode.sortState, SortState::Ascending);
    EXPECT_EQ(cellNames(), (Words{L"b", L"c", L"a"}));
    clickColumn(SortColumn::Date);
    EXPECT_EQ(cellNames(), (Words{L"a", L"b", L"c"}));
    clickColumn(SortColumn::Path);
    clickColumn(SortColumn::Path);
    EXPECT_EQ(cellNames(), (Words{L"c", L"b", L"a"}));
}

TEST_F(GridListTest, ThePathsColumnSortsByWholePathsAndTheNamesColumnByNamesAlone) {
    std::vector<FileEntry> entries;
    for (const auto& [path, name] :
         {std::pair{L"X:\\c\\a", L"a"}, {L"X:\\B\\b", L"b"}, {L"X:\\a\\C", L"C"}}) {
        entries.push_back(item(path));
        entries.back().displayName = name;
    }
    givenResults(std::move(entries));
    clickColumn(SortColumn::Name);
    EXPECT_EQ(cellNames(), (Words{L"X:\\c\\a", L"X:\\B\\b", L"X:\\a\\C"}));
    clickColumn(SortColumn::Path);
    EXPECT_EQ(cellNames(), (Words{L"X:\\a\\C", L"X:\\B\\b", L"X:\\c\\a"}));
}

TEST_F(GridListTest, ARowOfNoSearchResultSortsAsZero) {
    givenResults({result(L"big", 5, 5), item(L"none"), result(L"empty", 0, 9)});
    clickColumn(SortColumn::Size);
    EXPECT_EQ(cellNames(), (Words{L"none", L"empty", L"big"}));
    clickColumn(SortColumn::Date);
    EXPECT_EQ(cellNames(), (Words{L"none", L"big", L"empty"}));
}

TEST_F(GridListTest, EqualRowsKeepTheirOrderInBothDirections) {
    std::vector<FileEntry> entries;
    for (int i = 0; i < 100; ++i) {
        entries.push_back(result(L"n" + std::to_wstring(i), static_cast<std::uint64_t>(i % 3), 0));
    }
    givenResults(std::move(entries));
    Words ascending;
    Words descending;
    for (int size = 0; size < 3; ++size) {
        for (int i = size; i < 100; i += 3) ascending.push_back(L"n" + std::to_wstring(i));
        for (int i = 2 - size; i < 100; i += 3) descending.push_back(L"n" + std::to_wstring(i));
    }
    clickColumn(SortColumn::Size);
    EXPECT_EQ(cellNames(), ascending);
    givenResults([this] {
        std::vector<FileEntry> again;
        for (int i = 0; i < 100; ++i)
            again.push_back(result(L"n" + std::to_wstring(i), static_cast<std::uint64_t>(i % 3), 0));
        return again;
    }());
    clickColumn(SortColumn::Size);
    EXPECT_EQ(cellNames(), descending);
}

TEST_F(GridListTest, WithASortOfTheSourceTheCellsAreNotTouched) {
    givenResults({item(L"b"), item(L"a")});
    std::vector<std::pair<SortColumn, bool>> calls;
    grid.listMode.onSort = [&](SortColumn column, bool descending) {
        calls.emplace_back(column, descending);
    };
    for (int i = 0; i < 3; ++i) clickColumn(SortColumn::Name);
    EXPECT_EQ(cellNames(), (Words{L"b", L"a"}));
    EXPECT_EQ(calls, (std::vector<std::pair<SortColumn, bool>>{{SortColumn::Name, false},
                                                               {SortColumn::Name, true}}));
}

TEST_F(GridListTest, AClickOnTheHeaderGoesToTheTop) {
    std::vector<FileEntry> entries;
    for (int i = 0; i < 100; ++i) entries.push_back(item(std::to_wstring(i)));
    givenResults(std::move(entries));
    grid.scrollY = 500;
    clickColumn(SortColumn::Name);
    EXPECT_EQ(grid.scrollY, 0);
    EXPECT_EQ(grid.cells[1].targetY, 10 + 26 + 24);
}

TEST_F(GridListTest, AClickOnTheHeaderLaysTheRowsOutInTheirNewOrderAtOnce) {
    givenResults({result(L"b", 1, 1), result(L"a", 2, 2)});
    ASSERT_EQ(cell(L"b").targetY, 10 + 26);
    clickColumn(SortColumn::Name);
    EXPECT_EQ(cell(L"a").targetY, 10 + 26);
    EXPECT_EQ(cell(L"b").targetY, 10 + 26 + 24);
}

TEST_F(GridListTest, AfterAClickOnTheHeaderNoRowIsPressedOrHovered) {
    givenResults({result(L"b", 1, 1), result(L"a", 2, 2)});
    click(100, 40);
    ASSERT_EQ(selectedNames(), (Words{L"b"}));
    hover(100, 40);
    clickColumn(SortColumn::Name);
    EXPECT_EQ(grid.pressedIndex, -1);
    EXPECT_EQ(selectedNames(), Words{});  // and not the row that came to the place of the pressed one
    EXPECT_EQ(grid.hoverCell(), nullptr);
}

TEST_F(GridListTest, TheHeaderCoversTheRowsThatScrolledUnderIt) {
    std::vector<FileEntry> entries;
    for (int i = 0; i < 100; ++i) entries.push_back(item(std::to_wstring(i)));
    givenResults(std::move(entries));
    grid.scrollY = 500;
    frame();
    press(20, 26);  // in the icon band
    EXPECT_EQ(selectedNames(), Words{});
    press(20, 26.5f);
    EXPECT_EQ(selectedNames().size(), 1u);
}

}  // namespace
}  // namespace varnelo
