// Lists and single items that come, go and change.

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridContentTest : public GridTest {
protected:
    void SetUp() override { givenPane(600, 900); }

    // Group by group, in order.
    std::vector<std::pair<std::wstring, Words>> shown() {
        std::vector<std::pair<std::wstring, Words>> result;
        for (const std::wstring& name : groupNames()) result.emplace_back(name, orderOf(name));
        return result;
    }
};

TEST_F(GridContentTest, AListAsksForEveryIconInOrder) {
    givenItems({L"a", L"b", L"c"});
    EXPECT_EQ(grid.asked, (std::vector<int>{0, 1, 2}));
}

TEST_F(GridContentTest, AListTakesItsKindAndFolderOver) {
    EntryList list;
    list.folder = idOf(L"Folder");
    grid.setEntries(list, TabKind::Overview);
    EXPECT_EQ(grid.tabKind, TabKind::Overview);
    EXPECT_EQ(grid.folderIdList, idOf(L"Folder"));
}

TEST_F(GridContentTest, ANewItemAppearsInItsPlaceWhileTheOthersMakeRoom) {
    givenGroups({{L"G", 3}});
    settle();
    grid.asked.clear();
    grid.addEntry(item(L"new", cluster(L"G"), clock.unixTime));
    EXPECT_EQ(orderOf(L"G"), (Words{L"new", L"G0", L"G1", L"G2"}));
    EXPECT_EQ(cell(L"new").x, cell(L"new").targetX);
    EXPECT_EQ(cell(L"new").y, cell(L"new").targetY);
    EXPECT_EQ(cell(L"G0").x, 10);
    EXPECT_EQ(cell(L"G0").targetX, 10 + kCellWidth);
    EXPECT_EQ(grid.asked, (std::vector<int>{3}));
    EXPECT_TRUE(frame());
}

TEST_F(GridContentTest, TheFirstItemWithAGroupMakesThePaneGrouped) {
    givenItems({});
    grid.addEntry(item(L"a", cluster(L"G")));
    EXPECT_EQ(grid.layoutMode, LayoutMode::Grouped);
    EXPECT_EQ(cell(L"a").y, group(L"G").y + grid.groupHeaderHeight + grid.groupHeaderGap);
    settle();
    EXPECT_EQ(visibleNames(), (Words{L"a"}));
    grid.removeEntry(cell(L"a").entry);
    EXPECT_EQ(grid.layoutMode, LayoutMode::Flat);
    EXPECT_TRUE(grid.groups.empty());
}

TEST_F(GridContentTest, WhenTheLastGroupGoesTheItemsWithoutOneAreLaidOutAtOnce) {
    EntryList list;
    list.entries = {item(L"g", cluster(L"G")), item(L"a"), item(L"b")};
    grid.setEntries(list, TabKind::Desktop);
    grid.removeEntry(cell(L"g").entry);
    EXPECT_EQ(cell(L"a").targetX, 10);
    EXPECT_EQ(cell(L"b").targetX, 10 + kCellWidth);
}

TEST_F(GridContentTest, BesideTheFirstGroupItemsWithoutOneAreNoLongerSeen) {
    givenItems({L"a"});
    frame();
    ASSERT_EQ(visibleNames(), (Words{L"a"}));
    grid.addEntry(item(L"b", cluster(L"G")));
    settle();
    EXPECT_EQ(visibleNames(), (Words{L"b"}));
}

TEST_F(GridContentTest, ANewGroupSlidesOpen) {
    givenGroups({{L"G", 3}});
    settle();
    grid.addEntry(item(L"a", special(SpecialGroup::System)));
    EXPECT_EQ(groupNames(), (Words{L"SYSTEM", L"G"}));
    EXPECT_EQ(group(L"SYSTEM").height, 0);
    settle();
    EXPECT_NEAR(group(L"SYSTEM").height, kCellHeight, 0.5);
}

TEST_F(GridContentTest, NoHeaderIsHoveredAfterTheGroupsWereSorted) {
    givenGroups({{L"G", 3}});
    const auto [x, y] = headerOf(L"G");
    hover(x, y);
    frame();
    ASSERT_EQ(grid.hoverGroup, 0);
    grid.addEntry(item(L"a", special(SpecialGroup::System)));
    EXPECT_EQ(grid.hoverGroup, -1);
}

TEST_F(GridContentTest, AnItemThatIsShownAlreadyIsNotShownTwice) {
    givenGroups({{L"G", 3}});
    grid.addEntry(cell(L"G1").entry);
    FileEntry sameId = item(L"G2", cluster(L"G"));
    grid.addEntry(sameId);
    EXPECT_EQ(grid.cells.size(), 3u);
    EXPECT_EQ(cell(L"G2").entry.metaData, sameId.metaData);
}

TEST_F(GridContentTest, ARemovedItemLeavesItsGroupAndTheOthersKeepTheirs) {
    givenGroups({{L"G", 3}, {L"H", 2}});
    grid.removeEntry(cell(L"G1").entry);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G2"}));
    EXPECT_EQ(orderOf(L"H"), (Words{L"H0", L"H1"}));
    EXPECT_EQ(cell(L"G2").targetX, 10 + kCellWidth);  // it moves up at once
}

TEST_F(GridContentTest, AGroupWithoutItemsGoesAway) {
    givenGroups({{L"G", 1}, {L"H", 2}});
    const auto [x, y] = headerOf(L"G");
    hover(x, y);
    frame();
    ASSERT_EQ(grid.hoverGroup, 0);
    grid.removeEntry(cell(L"G0").entry);
    EXPECT_EQ(groupNames(), (Words{L"H"}));
    EXPECT_EQ(grid.hoverGroup, -1);
}

TEST_F(GridContentTest, ACellIsMatchedByItsMetadataBeforeItsIdList) {
    givenItems({L"a", L"b"});
    FileEntry entry = cell(L"b").entry;
    entry.pidl = idOf(L"a");
    grid.removeEntry(entry);
    EXPECT_EQ(cellNames(), (Words{L"a"}));
}

TEST_F(GridContentTest, ACellOfAnotherMetadataObjectIsMatchedByTheShell) {
    givenItems({L"a", L"b"});
    grid.removeEntry(item(L"B"));  // the same item in another spelling
    EXPECT_EQ(cellNames(), (Words{L"a"}));
    FileEntry bare;
    bare.pidl = idOf(L"a");
    grid.removeEntry(bare);
    EXPECT_TRUE(grid.cells.empty());
}

TEST_F(GridContentTest, ItemsWithoutMetadataAreToldApartByTheirIdLists) {
    EntryList list;
    for (const wchar_t* name : {L"a", L"b"}) {
        FileEntry bare;
        bare.pidl = idOf(name);
        list.entries.push_back(bare);
    }
    grid.setEntries(list, TabKind::Desktop);
    grid.removeEntry(list.entries[1]);
    EXPECT_EQ(cellNames(), (Words{L"a"}));
}

TEST_F(GridContentTest, AnUnknownItemChangesNothing) {
    givenItems({L"a", L"b"});
    grid.removeEntry(item(L"x"));
    grid.updateEntry(item(L"x"));
    grid.renameEntry(item(L"x"));
    grid.removeEntry(FileEntry());
    grid.updateEntry(FileEntry());
    grid.renameEntry(FileEntry());
    EXPECT_EQ(cellNames(), (Words{L"a", L"b"}));
    EXPECT_FALSE(grid.dirty);
}

TEST_F(GridContentTest, SelectionHoverAndPressStayOnTheirCellsWhenAnotherGoes) {
    givenItems({L"a", L"b", L"c", L"d"});
    frame();
    clickOn(L"c");
    hoverOver(L"c");
    grid.removeEntry(cell(L"a").entry);
    EXPECT_EQ(selectedNames(), (Words{L"c"}));
    EXPECT_EQ(grid.hoverIndex, indexOf(L"c"));
    EXPECT_EQ(grid.pressedIndex, indexOf(L"c"));
    grid.removeEntry(cell(L"d").entry);
    EXPECT_EQ(grid.hoverIndex, indexOf(L"c"));
    grid.removeEntry(cell(L"c").entry);
    EXPECT_EQ(grid.hoverCell(), nullptr);
    EXPECT_EQ(grid.pressedIndex, -1);
}

TEST_F(GridContentTest, AnUpdateCanMoveAnItemToAnotherGroup) {
    givenGroups({{L"G", 2}, {L"H", 1}});
    FileEntry entry = cell(L"G1").entry;
    entry.group = cluster(L"H");
    grid.updateEntry(entry);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0"}));
    EXPECT_EQ(orderOf(L"H"), (Words{L"G1", L"H0"}));
    entry = cell(L"G0").entry;
    entry.group = special(SpecialGroup::Downloads);
    grid.updateEntry(entry);
    EXPECT_EQ(groupNames(), (Words{L"DOWNLOADS", L"H"}));
    entry.group.reset();
    grid.updateEntry(entry);
    EXPECT_EQ(groupNames(), (Words{L"H"}));
}

TEST_F(GridContentTest, AnUpdateInTheSameGroupSortsItAnewAndAsksForTheIcon) {
    givenGroups({{L"G", 3}});
    grid.asked.clear();
    cell(L"G2").entry.metaData->timestamp = clock.unixTime + 5;
    grid.updateEntry(cell(L"G2").entry);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G2", L"G0", L"G1"}));
    EXPECT_EQ(grid.asked, (std::vector<int>{2}));
}

TEST_F(GridContentTest, AnUpdateInTheSameGroupLeavesTheGroupOpen) {
    givenGroups({{L"G", 1}});
    clickHeader(L"G");
    ASSERT_FALSE(group(L"G").collapsed);
    grid.updateEntry(cell(L"G0").entry);
    EXPECT_FALSE(group(L"G").collapsed);
}

TEST_F(GridContentTest, ARenamedItemKeepsItsGroupAndItsPlace) {
    givenGroups({{L"G", 3}});
    settle();
    FileEntry entry = cell(L"G1").entry;
    entry.pidl = idOf(L"renamed");
    entry.group = cluster(L"Elsewhere");
    grid.renameEntry(entry);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"renamed", L"G2"}));
    EXPECT_EQ(groupNames(), (Words{L"G"}));
    EXPECT_TRUE(grid.dirty);
    EXPECT_EQ(cell(L"renamed").entry.name(shell), L"renamed");
}

TEST_F(GridContentTest, ARenamedItemStillFollowsALaterUpdateToItsNewGroup) {
    givenGroups({{L"G", 3}});
    FileEntry entry = cell(L"G1").entry;
    entry.group = cluster(L"Elsewhere");
    grid.renameEntry(entry);
    grid.updateEntry(entry);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G2"}));
    EXPECT_EQ(orderOf(L"Elsewhere"), (Words{L"G1"}));
}

TEST_F(GridContentTest, ARenamedItemMovesToThePlaceOfItsNewTime) {
    givenGroups({{L"G", 3}});
    grid.asked.clear();
    FileEntry entry = cell(L"G2").entry;
    entry.metaData->timestamp = clock.unixTime;
    grid.renameEntry(entry);
    EXPECT_EQ(orderOf(L"G"), (Words{L"G2", L"G0", L"G1"}));
    EXPECT_EQ(cell(L"G2").targetX, 10);
    EXPECT_EQ(grid.asked, (std::vector<int>{2}));
}

TEST_F(GridContentTest, TheFirstItemCanBeRenamedToo) {
    givenItems({L"a", L"b"});
    FileEntry entry = cell(L"a").entry;
    entry.pidl = idOf(L"renamed");
    grid.renameEntry(entry);
    EXPECT_EQ(cellNames(), (Words{L"renamed", L"b"}));
}

TEST_F(GridContentTest, ARenameWithoutMetadataChangesNoItemThatHasNoneEither) {
    FileEntry bare;
    bare.pidl = idOf(L"bare");
    EntryList list;
    list.entries = {bare};
    grid.setEntries(list, TabKind::Desktop);
    FileEntry renamed;
    renamed.pidl = idOf(L"renamed");
    grid.renameEntry(renamed);
    EXPECT_EQ(cellNames(), (Words{L"bare"}));
}

TEST_F(GridContentTest, ARenameOfAnotherMetadataObjectChangesNothing) {
    givenItems({L"a"});
    grid.renameEntry(item(L"A"));
    EXPECT_EQ(cellNames(), (Words{L"a"}));
}

TEST_F(GridContentTest, OneIconOrAllCanBeAskedForAgain) {
    givenItems({L"a", L"b", L"c"});
    grid.asked.clear();
    grid.reloadIcon(idOf(L"B"));
    grid.reloadIcon(idOf(L"a"));
    EXPECT_EQ(grid.asked, (std::vector<int>{1, 0}));
    grid.reloadIcon(idOf(L"x"));
    grid.reloadIcon(ItemIdList());
    EXPECT_EQ(grid.asked.size(), 2u);
    grid.reloadAllIcons();
    EXPECT_EQ(grid.asked, (std::vector<int>{1, 0, 0, 1, 2}));
}

TEST_F(GridContentTest, AnItemWithoutMetadataIsShownLikeAnyOther) {
    FileEntry bare;
    bare.pidl = idOf(L"bare");
    bare.group = cluster(L"G");
    EntryList list;
    list.entries = {bare, item(L"a", cluster(L"G"), 5)};
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(orderOf(L"G"), (Words{L"a", L"bare"}));
    settle();
    hoverOver(L"bare");
    grid.onDoubleClick();
    EXPECT_EQ(actions.done, (Words{L"launch bare"}));
}

TEST_F(GridContentTest, FiveHundredItemsAtOnceAreAllThereOnce) {
    givenGroups({{L"G", 3}});
    for (int i = 0; i < 500; ++i) grid.addEntry(item(L"n" + std::to_wstring(i), cluster(L"G"), i + 1));
    EXPECT_EQ(grid.cells.size(), 503u);
    EXPECT_EQ(orderOf(L"G").size(), 503u);
    settle();
}

// A stream of single changes must end where the whole list would.
TEST_F(GridContentTest, SingleChangesEndInTheSameOrderAsTheWholeList) {
    std::mt19937 random(7);
    const auto pick = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    const std::vector<std::optional<GroupKey>> keys = {
        cluster(L"Holiday"),          cluster(L"Work"), cluster(L"Music"), special(SpecialGroup::Downloads),
        special(SpecialGroup::Older), std::nullopt};
    for (int round = 0; round < 30; ++round) {
        grid.setEntries({}, TabKind::Desktop);
        std::vector<FileEntry> model;
        for (int step = 0; step < 80; ++step) {
            const std::size_t action = pick(10);
            if (action < 6 || model.empty()) {
                model.push_back(item(L"i" + std::to_wstring(step), keys[pick(keys.size())],
                                     clock.unixTime - static_cast<std::int64_t>(pick(5000000)) - 1));
                if (pick(4) == 0) {
                    model.back().metaData->slot = static_cast<std::int32_t>(pick(6));
                    model.back().metaData->slotTime =
                        clock.unixTime - static_cast<std::int64_t>(pick(100)) * 86400;
                }
                grid.addEntry(model.back());
            } else if (action < 8) {
                const auto victim = model.begin() + static_cast<std::ptrdiff_t>(pick(model.size()));
                grid.removeEntry(*victim);
                model.erase(victim);
            } else {
                FileEntry& changed = model[pick(model.size())];
                changed.group = keys[pick(keys.size())];
                changed.metaData->timestamp = clock.unixTime - static_cast<std::int64_t>(pick(5000000)) - 1;
                grid.updateEntry(changed);
            }
            if (step % 7 == 0) frame();
        }
        // A removal leaves the order of the rest alone, an update sorts all of it.
        if (!model.empty()) grid.updateEntry(model.front());
        const auto incremental = shown();
        const LayoutMode mode = grid.layoutMode;
        EntryList list;
        list.entries = model;
        grid.setEntries(list, TabKind::Desktop);
        EXPECT_EQ(incremental, shown()) << round;
        EXPECT_EQ(mode, grid.layoutMode) << round;
    }
}

}  // namespace
}  // namespace varnelo
