#include "views/grid_groups.h"

#include <string_view>

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridGroupsTest : public GridTest {
protected:
    void givenLanguage(const std::string& text) {
        language.loadText(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    }
};

TEST_F(GridGroupsTest, ACellWithoutAGroupJoinsNoneAndIsNotSeenBesideGroups) {
    givenPane(400, 900);
    EntryList list;
    list.entries = {item(L"loose"), item(L"a", cluster(L"G"))};
    grid.setEntries(list, TabKind::Desktop);
    frame();
    EXPECT_EQ(grid.layoutMode, LayoutMode::Grouped);
    EXPECT_EQ(groupOfCell(grid, indexOf(L"loose")), kNoGroup);
    EXPECT_EQ(visibleNames(), (Words{L"a"}));
}

TEST_F(GridGroupsTest, WithoutAnyGroupThePaneIsFlat) {
    givenItems({L"a", L"b"});
    EXPECT_EQ(grid.layoutMode, LayoutMode::Flat);
    EXPECT_TRUE(grid.groups.empty());
}

TEST_F(GridGroupsTest, NewGroupsAreCollapsed) {
    givenGroups({{L"G", 3}, {L"H", 3}});
    for (const IconGroup& g : grid.groups) EXPECT_TRUE(g.collapsed);
}

TEST_F(GridGroupsTest, KeysWithOneNameAreOneGroup) {
    EntryList list;
    list.entries = {item(L"a", GroupKey{GroupCategory::Files, FileGroup::MediaImages}),
                    item(L"b", cluster(L"Images"))};
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(grid.groups.size(), 1u);
}

TEST_F(GridGroupsTest, AGroupShowsTheWordOfItsKeyOrTheKeyItself) {
    givenLanguage("DOWNLOADS = Fetched\n");
    EntryList list;
    list.entries = {item(L"a", special(SpecialGroup::Downloads)), item(L"b", special(SpecialGroup::Older))};
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(groupNames(), (Words{L"Fetched", L"OLDER"}));
}

TEST_F(GridGroupsTest, ALanguageChangeRenamesTheGroupsButNotTheClusters) {
    EntryList list;
    list.entries = {item(L"a", special(SpecialGroup::Downloads)), item(L"b", cluster(L"Holiday"))};
    grid.setEntries(list, TabKind::Desktop);
    givenLanguage("DOWNLOADS = Geladen\n");
    grid.refreshGroupNames();
    EXPECT_EQ(groupNames(), (Words{L"Geladen", L"Holiday"}));
}

TEST_F(GridGroupsTest, AHeaderShowsAnArrowOnlyIfTheGroupHasMoreThanARow) {
    IconGroup group;
    group.name = L"Music";
    group.cells = {0, 1, 2, 3};
    std::wstring text = L"left over";
    const auto header = [&](int columns) {
        writeGroupHeader(group, columns, text);
        return text;
    };
    EXPECT_EQ(header(4), L"Music");
    EXPECT_EQ(header(3), L"\x25B6 Music");
    group.collapsed = false;
    EXPECT_EQ(header(3), L"\x25BC Music");
    group.cells = {0};
    EXPECT_EQ(header(1), L"Music");
}

TEST_F(GridGroupsTest, AHeaderClickOpensOneGroupAndClosesTheOthers) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}, {L"H", 6}});
    clickHeader(L"G");
    EXPECT_FALSE(group(L"G").collapsed);
    settle();
    clickHeader(L"H");
    EXPECT_TRUE(group(L"G").collapsed);
    EXPECT_FALSE(group(L"H").collapsed);
}

TEST_F(GridGroupsTest, AClickOnTheHeaderOfTheOnlyOpenGroupLeavesAllCollapsed) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}, {L"H", 6}});
    clickHeader(L"G");
    settle();
    clickHeader(L"G");
    for (const IconGroup& g : grid.groups) EXPECT_TRUE(g.collapsed);
}

TEST_F(GridGroupsTest, APressOnAHeaderCountsBeforeAFrameHasSeenTheCursor) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}});
    settle();
    const auto [x, y] = headerOf(L"G");
    click(x, y);
    EXPECT_FALSE(group(L"G").collapsed);
}

TEST_F(GridGroupsTest, AClickBesideAHeaderThatWasHoveredTogglesNothing) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}});
    const auto [x, y] = headerOf(L"G");
    hover(x, y);
    frame();
    click(x + 200, y);
    EXPECT_TRUE(group(L"G").collapsed);
}

TEST_F(GridGroupsTest, OnlyTheLeftPartOfAHeaderIsHit) {
    givenPane(400, 900, 100, 0);
    givenGroups({{L"G", 6}});
    const float y = group(L"G").y;
    const auto groupAt = [&](float x, float cursorY) {
        cursorTo(x, cursorY);
        frame();
        return grid.hoverGroup;
    };
    EXPECT_EQ(groupAt(109.5f, y), kNoGroup);
    EXPECT_EQ(groupAt(110, y), 0);
    EXPECT_EQ(groupAt(250, y + 24), 0);
    EXPECT_EQ(groupAt(250.5f, y + 24), kNoGroup);
    EXPECT_EQ(groupAt(110, y - 0.5f), kNoGroup);
    EXPECT_EQ(groupAt(110, y + 24.5f), kNoGroup);
}

TEST_F(GridGroupsTest, NoHeaderIsHoveredInAnotherLayout) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}});
    const auto [x, y] = headerOf(L"G");
    hover(x, y);
    frame();
    ASSERT_EQ(grid.hoverGroup, 0);
    for (const LayoutMode mode : {LayoutMode::List, LayoutMode::Flat}) {
        grid.hoverGroup = 0;
        grid.layoutMode = mode;
        frame();
        EXPECT_EQ(grid.hoverGroup, kNoGroup);
    }
}

TEST_F(GridGroupsTest, OfTwoHeadersUnderTheCursorTheFirstIsHit) {
    givenPane(400, 900);
    givenGroups({{L"G", 1}, {L"H", 1}});
    group(L"G").height = 0;  // the headers meet while a group folds
    settle();
    group(L"G").height = 0;
    group(L"H").y = group(L"G").y + 24;
    cursorTo(20, group(L"H").y);
    frame(0);
    EXPECT_EQ(grid.hoverGroup, 0);
}

}  // namespace
}  // namespace varnelo
