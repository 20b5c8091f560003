// Double click and right click.

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridActionsTest : public GridTest {
protected:
    void givenPaneOf(TabKind kind) {
        givenPane(600, 400);
        EntryList list;
        list.entries = {item(L"a"), item(L"b"), item(L"c")};
        grid.setEntries(list, kind);
        frame();
    }
    void rightClickOn(const std::wstring& name) {
        hoverOver(name);
        grid.onRightClick();
    }
};

TEST_F(GridActionsTest, ADoubleClickLaunchesTheItemAndStampsItsUse) {
    givenPaneOf(TabKind::Desktop);
    hoverOver(L"b");
    grid.onDoubleClick();
    EXPECT_EQ(actions.done, (Words{L"launch b"}));
    EXPECT_EQ(cell(L"b").entry.metaData->timestamp, clock.unixTime);
    EXPECT_FALSE(grid.dirty);  // no group, no order to save
}

TEST_F(GridActionsTest, ALaunchedItemComesFirstInItsGroupAndItsGroupFirstAmongItsKind) {
    givenPane(600, 900);
    givenGroups({{L"G", 3}, {L"H", 3}});
    for (IconCell& c : grid.cells) c.entry.metaData->timestamp -= 100 * 86400;
    frame();
    hoverOver(L"H2");
    grid.onDoubleClick();
    EXPECT_EQ(orderOf(L"H"), (Words{L"H2", L"H0", L"H1"}));
    EXPECT_EQ(groupNames(), (Words{L"H", L"G"}));
    EXPECT_TRUE(grid.dirty);
    EXPECT_EQ(cell(L"H2").targetX, 10);
    EXPECT_EQ(cell(L"H2").targetY, 10 + grid.groupHeaderHeight + grid.groupHeaderGap);
}

TEST_F(GridActionsTest, ADoubleClickOnNothingDoesNothing) {
    givenPaneOf(TabKind::Desktop);
    hover(10, 390);
    grid.onDoubleClick();
    EXPECT_EQ(actions.done, Words{});
}

TEST_F(GridActionsTest, WithoutActionsNothingIsLaunchedAndNothingStamped) {
    WordGrid bare({input, clock, shell, settings, language, nullptr}, TabKind::Desktop);
    ViewRect rect{0, 0, 600, 400};
    bare.setViewRect(rect, false, 0);
    EntryList list;
    list.entries = {item(L"a", std::nullopt, 5)};
    bare.setEntries(list, TabKind::Desktop);
    bare.update();
    cursorTo(50, 30);
    bare.onMouseMove(false);
    ASSERT_NE(bare.hoverCell(), nullptr);
    bare.onDoubleClick();
    bare.onRightClick();
    EXPECT_EQ(infos.back().timestamp, 5);
    EXPECT_EQ(bare.hoverCell(), nullptr);
}

TEST_F(GridActionsTest, AnItemThatVanishesWhileItIsLaunchedIsNotStamped) {
    givenPaneOf(TabKind::Desktop);
    hoverOver(L"b");
    FileMetaData* data = cell(L"b").entry.metaData;
    actions.meanwhile = [this] { givenItems({}); };
    grid.onDoubleClick();
    EXPECT_EQ(data->timestamp, 0);
}

TEST_F(GridActionsTest, TheSoftwarePaneShowsItsOwnMenu) {
    givenPaneOf(TabKind::Software);
    rightClickOn(L"b");
    EXPECT_EQ(actions.done, (Words{L"item menu b"}));
}

TEST_F(GridActionsTest, TheSystemTabShowsNoMenu) {
    givenPaneOf(TabKind::System);
    rightClickOn(L"b");
    hover(10, 390);
    grid.onRightClick();
    EXPECT_EQ(actions.done, Words{});
    EXPECT_EQ(grid.shellMenus, 0);
}

TEST_F(GridActionsTest, TheOtherPanesShowTheMenuOfTheShell) {
    for (const TabKind kind : {TabKind::Desktop, TabKind::Unassigned, TabKind::Search, TabKind::Overview}) {
        actions.done.clear();
        givenPaneOf(kind);
        rightClickOn(L"b");
        EXPECT_EQ(actions.done, (Words{L"shell menu b"}));
    }
}

TEST_F(GridActionsTest, ARightClickOnASelectedCellIsForAllSelected) {
    givenPaneOf(TabKind::Desktop);
    grid.cells[0].selected = grid.cells[2].selected = true;
    rightClickOn(L"c");
    rightClickOn(L"b");
    EXPECT_EQ(actions.done, (Words{L"shell menu a c", L"shell menu b"}));
}

TEST_F(GridActionsTest, AnItemWithoutAnIdListHasNoMenuOfTheShell) {
    givenPane(600, 400);
    EntryList list;
    list.entries = {FileEntry()};
    grid.setEntries(list, TabKind::Desktop);
    frame();
    hover(50, 30);
    ASSERT_NE(grid.hoverCell(), nullptr);
    grid.onRightClick();
    grid.cells[0].selected = true;
    hover(50, 30);
    grid.onRightClick();
    EXPECT_EQ(actions.done, Words{});
}

TEST_F(GridActionsTest, AfterARightClickNothingIsHovered) {
    for (const TabKind kind : {TabKind::System, TabKind::Software, TabKind::Desktop}) {
        givenPaneOf(kind);
        rightClickOn(L"b");
        EXPECT_EQ(grid.hoverIndex, -1);
    }
}

TEST_F(GridActionsTest, OnlyTheDesktopForwardsAClickOnEmptySpace) {
    for (const TabKind kind : {TabKind::System, TabKind::Software, TabKind::Unassigned, TabKind::Search,
                               TabKind::Overview, TabKind::Desktop}) {
        EXPECT_EQ(grid.shellMenus, 0);
        givenPaneOf(kind);
        hover(10, 390);
        grid.onRightClick();
    }
    EXPECT_EQ(grid.shellMenus, 1);
    EXPECT_EQ(actions.done, Words{});
}

TEST_F(GridActionsTest, ARightClickOutsideOfThePaneDoesNothing) {
    givenPaneOf(TabKind::Desktop);
    hoverOver(L"b");
    cursorTo(10, 1000);
    grid.onRightClick();
    EXPECT_EQ(actions.done, Words{});
    EXPECT_EQ(grid.shellMenus, 0);
    EXPECT_EQ(grid.hoverIndex, indexOf(L"b"));
}

TEST_F(GridActionsTest, AMenuMayReplaceTheContentWhileItIsOpen) {
    givenPaneOf(TabKind::Desktop);
    actions.meanwhile = [this] { givenItems({}); };
    rightClickOn(L"b");
    EXPECT_EQ(actions.done, (Words{L"shell menu b"}));
    EXPECT_EQ(grid.hoverCell(), nullptr);
}

}  // namespace
}  // namespace varnelo
